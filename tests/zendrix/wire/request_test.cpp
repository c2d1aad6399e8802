#include "request.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

TEST(Request, IsOneLineWithItsIdInFront) {
    wire::RequestWriter request(7, "movecircle");
    request.number(1.0).number(-0.1).integer(3).target("x", wire::TargetForm::absolute, 12.5);
    request.target("y", wire::TargetForm::relative, -1.0).target("z", wire::TargetForm::none, 9.0);
    request.target("a", wire::TargetForm::lowest, 9.0).target("b", wire::TargetForm::highest, 9.0);
    request.target("", wire::TargetForm::end_of_point, 9.0).text("two\r\nlines").word("now");
    EXPECT_EQ(request.id(), 7);
    const std::string expected =
        "0007\tmovecircle 1 -0.1 3 \"x\"=12.5 \"y\"+=-1 \"z\" \"a\"=min \"b\"=max ; \"two\\r\\nlines\" now";
    EXPECT_EQ(request.length(), expected.size());
    EXPECT_EQ(request.finish(), expected + "\r\n");
}

TEST(Request, IdsHaveAtLeastFourDigits) {
    const std::pair<std::int64_t, const char*> rows[] = {{0, "0000\t"},    {9, "0009\t"},
                                                         {10, "0010\t"},   {999, "0999\t"},
                                                         {1000, "1000\t"}, {2147483647, "2147483647\t"}};
    for (const auto& [id, text] : rows) {
        std::string out;
        wire::append_id(out, id);
        EXPECT_EQ(out, text);
        std::int64_t read = -1;
        std::string_view rest;
        EXPECT_TRUE(wire::split_id(out, read, rest)) << text;
        EXPECT_EQ(read, id);
        EXPECT_EQ(rest, "");
    }
}

TEST(Request, ALineWithoutAProperIdIsNone) {
    std::int64_t id = 0;
    std::string_view rest;
    for (const char* line :
         {"", "0001", "001\tget", "\tget", "abcd\tget", "-001\tget", "2147483648\tget",
          "99999999999999999999\tget", "0001 get", " 0001\tget", "00000000000000000000001\tget"}) {
        EXPECT_FALSE(wire::split_id(line, id, rest)) << line;
    }
    EXPECT_TRUE(wire::split_id("0012\tget \"x\"", id, rest));
    EXPECT_EQ(id, 12);
    EXPECT_EQ(rest, "get \"x\"");
}

TEST(Request, NumbersThatAreNoneHaveTheirWords) {
    wire::RequestWriter request(1, "set");
    request.target("x", wire::TargetForm::absolute, std::numeric_limits<double>::quiet_NaN());
    request.target("y", wire::TargetForm::absolute, -std::numeric_limits<double>::infinity());
    EXPECT_EQ(request.finish(), "0001\tset \"x\"=nan \"y\"=-inf\r\n");
}

}  // namespace
