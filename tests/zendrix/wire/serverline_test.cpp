#include "serverline.h"

#include <gtest/gtest.h>

namespace {

struct Row {
    const char* line;
    std::int64_t id;
    wire::Keyword keyword;
    const char* body;
};

TEST(ServerLine, HasAnIdAKeywordAndABody) {
    const Row rows[] = {{"0007\taccepted", 7, wire::Keyword::accepted, ""},
                        {"12345\tdata 1 2 3", 12345, wire::Keyword::data, "1 2 3"},
                        {"0007\tpoint 1 0.5", 7, wire::Keyword::point, "1 0.5"},
                        {"0007\terror \"a \"b\" c\"", 7, wire::Keyword::error, "\"a \"b\" c\""},
                        {"0007\twarning \"w\"", 7, wire::Keyword::warning, "\"w\""},
                        {"0007\tready", 7, wire::Keyword::ready, ""},
                        {"0000\tevent \"e\"", 0, wire::Keyword::event, "\"e\""},
                        {"0003\twatch  1 2", 3, wire::Keyword::watch, " 1 2"},
                        {"0000\thello \"m\" 2.2 machine", 0, wire::Keyword::hello, "\"m\" 2.2 machine"},
                        {"0007\tpoints 1", 7, wire::Keyword::unknown, "1"},
                        {"0007\t", 7, wire::Keyword::unknown, ""}};
    for (const Row& row : rows) {
        wire::ServerLine parsed;
        ASSERT_TRUE(wire::parse_server_line(row.line, parsed)) << row.line;
        EXPECT_EQ(parsed.id, row.id) << row.line;
        EXPECT_EQ(parsed.keyword, row.keyword) << row.line;
        EXPECT_EQ(parsed.body, row.body) << row.line;
    }
    wire::ServerLine parsed;
    EXPECT_FALSE(wire::parse_server_line("HTTP/1.1 400 Bad Request", parsed));
}

TEST(ServerLine, AMessageStandsBetweenItsOutermostQuotes) {
    std::string_view text;
    EXPECT_TRUE(wire::message_text("\"axis \"x\" is gone\"", text));
    EXPECT_EQ(text, "axis \"x\" is gone");
    EXPECT_TRUE(wire::message_text("\"\"", text));
    EXPECT_EQ(text, "");
    EXPECT_FALSE(wire::message_text("\"", text));
    EXPECT_FALSE(wire::message_text("plain", text));
}

TEST(ServerLine, APointBeginsWithItsNumber) {
    std::int64_t number = 0;
    std::string_view values;
    EXPECT_TRUE(wire::point_number("17 1.5 2", number, values));
    EXPECT_EQ(number, 17);
    EXPECT_EQ(values, "1.5 2");
    EXPECT_TRUE(wire::point_number("18", number, values));
    EXPECT_EQ(values, "");
    for (const char* broken : {"", "0 1", "-1 1", "1.5 1", "x 1"})
        EXPECT_FALSE(wire::point_number(broken, number, values));
}

TEST(ServerLine, AHelloIsExact) {
    wire::Hello hello;
    ASSERT_TRUE(wire::parse_hello("\"Round 4\" 2.12 simulated", hello));
    EXPECT_EQ(hello.name, "Round 4");
    EXPECT_EQ(hello.major, 2);
    EXPECT_EQ(hello.minor, 12);
    EXPECT_TRUE(hello.simulated);
    ASSERT_TRUE(wire::parse_hello("\"\" 3.0 machine", hello));
    EXPECT_FALSE(hello.simulated);
    for (const char* broken :
         {"", "\"x\"", "\"x\" 2 machine", "\"x\" 2.2", "\"x\" 2.2 toy", "x 2.2 machine", "\"x\" -1.2 machine",
          "\"x\" 2.2 machine more", "\"x\" 2.2.2 machine", "\"x\" . machine"}) {
        EXPECT_FALSE(wire::parse_hello(broken, hello)) << broken;
    }
}

TEST(ServerLine, WritersGiveTheLinesOfTheReference) {
    std::string out;
    wire::append_hello(out, {"a \"b\"", 2, 2, true});
    wire::append_accepted(out, 7);
    wire::append_error(out, 7, "bad\r\nthing");
    wire::append_warning(out, 12345, "quote \" inside");
    wire::append_event(out, "movement: begin");
    wire::append_ready(out, 7);
    wire::append_point(out, 9, 3);
    out += " 1.5 2";
    wire::append_end(out);
    wire::append_data(out, 9);
    wire::append_end(out);
    wire::append_watch(out, 10);
    out += " 1";
    wire::append_end(out);
    EXPECT_EQ(out,
              "0000\thello \"a \\\"b\\\"\" 2.2 simulated\r\n"
              "0007\taccepted\r\n"
              "0007\terror \"bad  thing\"\r\n"
              "12345\twarning \"quote \" inside\"\r\n"
              "0000\tevent \"movement: begin\"\r\n"
              "0007\tready\r\n"
              "0009\tpoint 3 1.5 2\r\n"
              "0009\tdata\r\n"
              "0010\twatch 1\r\n");
}

}  // namespace
