// Numbers as the line protocol writes them: decimal with a point, an optional exponent, nan, inf, -inf.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace wire {

// Reads one number at the begin of [begin, end). Gives the place behind it, or null if none stands there.
// The result is the double nearest to the text; one too large or small for a double is refused.
const char* scan_number(const char* begin, const char* end, double& value) noexcept;

// Appends all numbers of a text, separated by blanks. False if something else stands in it; then some of them
// may have been appended.
bool scan_numbers(std::string_view text, std::vector<double>& values);

// The whole text is one number.
bool parse_number(std::string_view text, double& value) noexcept;

// The whole text is one decimal integer in the range.
bool parse_integer(std::string_view text, std::int64_t low, std::int64_t high, std::int64_t& value) noexcept;

// Appends the shortest text that gives the same double again.
void append_shortest(std::string& out, double value);

void append_integer(std::string& out, std::int64_t value);

}  // namespace wire
