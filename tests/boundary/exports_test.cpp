#include <gtest/gtest.h>

#include <cstdio>
#include <set>
#include <sstream>
#include <string>

namespace {

std::string defined_symbols() {
    FILE* const pipe = popen("nm -D --defined-only " PLUGIN, "r");
    std::string output;
    for (int c; pipe && (c = std::fgetc(pipe)) != EOF;) output += static_cast<char>(c);
    return pipe && pclose(pipe) == 0 ? output : "nm failed";
}

TEST(PluginExports, AreThreeNamesAndNotOneSymbolMore) {
    std::istringstream lines(defined_symbols());
    std::set<std::string> names;
    for (std::string line; std::getline(lines, line);) names.insert(line.substr(line.rfind(' ') + 1));
    EXPECT_EQ(names, (std::set<std::string>{"IsProxy", "NewMMachAbstract", "SetDefaultTracelevel"}));
}

}  // namespace
