#include "table.h"

#include <gtest/gtest.h>

#include <limits>
#include <nlohmann/json.hpp>
#include <sstream>

namespace {

using namespace zxhost;

const double unknown = std::numeric_limits<double>::quiet_NaN();

std::string table(const std::vector<Column>& columns, const Json& rows) {
    std::ostringstream out;
    write_table(out, columns, rows);
    return out.str();
}

TEST(WriteTable, AlignsNumbersRightAndTextsLeft) {
    const Json rows{{{"axis", "x"}, {"value", 12.5}}, {{"axis", "long"}, {"value", -100.25}}};
    EXPECT_EQ(table({{"axis", "axis"}, {"value", "value", 2}}, rows),
              "axis    value\n"
              "----  -------\n"
              "x       12.50\n"
              "long  -100.25\n");
}

TEST(WriteTable, ShowsEveryKindOfValue) {
    const Json rows{{{"a", true}, {"b", nullptr}, {"c", {"one", "two"}}, {"d", unknown}, {"e", 7}},
                    {{"a", false}, {"c", Json::array()}, {"d", 1.0}, {"e", 1234}}};
    EXPECT_EQ(table({{"a", "a"}, {"b", "b"}, {"c", "c"}, {"d", "d", 1}, {"e", "e"}}, rows),
              "a    b  c              d     e\n"
              "---  -  -------  -------  ----\n"
              "yes  -  one two  unknown     7\n"
              "no   -  -            1.0  1234\n");
}

TEST(WriteTable, CountsCodePointsAndDisarmsControlBytes) {
    EXPECT_EQ(table({{"t", "t"}, {"u", "u"}}, {{{"t", "µm"}, {"u", "a"}}, {{"t", "a\x1b"}, {"u", "b"}}}),
              "t      u\n"
              "-----  -\n"
              "µm     a\n"
              "a\\x1b  b\n");
}

TEST(WriteTable, ShowsTheHeadOfNoRows) {
    EXPECT_EQ(table({{"a", "alpha"}}, Json::array()), "alpha\n-----\n");
}

TEST(WriteJson, MendsTextsAndUnknownNumbers) {
    std::ostringstream out;
    write_json_line(out, {{"text", "a\xff"}, {"number", unknown}, {"quote", "\"\r\n"}});
    EXPECT_EQ(out.str(), "{\"text\":\"a\xef\xbf\xbd\",\"number\":null,\"quote\":\"\\\"\\r\\n\"}\n");
    std::ostringstream whole;
    write_json(whole, {{"b", 1}, {"a", 2}});
    EXPECT_EQ(whole.str(), "{\n  \"b\": 1,\n  \"a\": 2\n}\n");
}

}  // namespace
