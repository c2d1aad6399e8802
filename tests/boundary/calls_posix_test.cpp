// How a call across the boundary is made: what docs/boundary.md says of the two binary interfaces beyond the
// order of slots.
#include <gtest/gtest.h>

#include <regex>

#include "clang_output.h"

namespace {

// The place, counted from 0, that the first function of this name reads from the table, and the line of its
// call.
struct Call {
    int place = -1;
    std::string line;
};

Call call_in(const std::string& code, const std::string& function) {
    const std::size_t begin = code.find(function);
    const std::string body = code.substr(begin, code.find("\n}\n", begin) - begin);
    Call call;
    std::smatch found;
    static const std::regex place(R"(getelementptr inbounds .*, i64 (\d+)\n)");
    static const std::regex line(R"((call [^\n]* %\d+\([^\n]*))");
    if (std::regex_search(body, found, place)) call.place = std::stoi(found[1]);
    if (std::regex_search(body, found, line)) call.line = found[1];
    return call;
}

std::string code_for(Abi abi) {
    return clang_output(abi, "-S -emit-llvm -o - " BOUNDARY_FOLDER "/boundary_calls.cpp");
}

// Is the hidden pointer to the result the first argument?
bool result_comes_first(const std::string& call) {
    const std::size_t result = call.find(" sret(");
    EXPECT_NE(result, std::string::npos) << call;
    return result < call.find(',');
}

void expect_calls(Abi abi, int place_of_open, bool result_first) {
    const std::string code = code_for(abi);
    EXPECT_EQ(call_in(code, "slot_behind_the_destructor").place, place_of_open);
    EXPECT_EQ(result_comes_first(call_in(code, "result_by_value").line), result_first);
}

TEST(CallsPosix, InTheItaniumAbiTheDestructorTakesTwoPlacesAndAResultComesFirst) {
    expect_calls(Abi::linux_itanium, 4, true);
}

TEST(CallsPosix, OnMinGWTheDestructorTakesTwoPlacesAndAResultComesFirst) {
    expect_calls(Abi::mingw, 4, true);
}

TEST(CallsPosix, InTheMicrosoftAbiTheDestructorTakesOnePlaceAndTheObjectComesFirst) {
    expect_calls(Abi::microsoft, 3, false);
}

}  // namespace
