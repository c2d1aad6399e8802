#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>
#include <string_view>
#include <system_error>

#include "os/number.h"

namespace os {

namespace {

// Whether a number that no double holds is too large for one, and not too small.
bool is_large(std::string_view number, bool is_hexadecimal) {
    const std::size_t mark = number.find_first_of(is_hexadecimal ? "pP" : "eE");
    const std::string_view digits = number.substr(0, mark);
    const std::size_t point = std::min(digits.find('.'), digits.size());
    const std::size_t first = std::min(digits.find_first_not_of("0."), digits.size());
    const auto before_point = static_cast<long long>(point) - static_cast<long long>(first);
    if (mark == number.npos) return before_point > 0;
    const bool is_signed = number[mark + 1] == '+';
    long long exponent = 0;
    const auto [end, error] =
        std::from_chars(number.data() + mark + 1 + is_signed, number.data() + number.size(), exponent);
    if (error != std::errc()) return number[mark + 1] != '-';
    return (is_hexadecimal ? 4 : 1) * before_point + exponent > 0;
}

bool is_hexadecimal(const char* text) {
    if (text[0] != '0' || (text[1] != 'x' && text[1] != 'X')) return false;
    const char* const digit = text[2] == '.' ? text + 3 : text + 2;
    return *digit != '\0' && std::strchr("0123456789abcdefABCDEF", *digit);
}

}  // namespace

// The C library's own function knows the process's locale alone, and not every one of them knows all forms.
double string_to_double(const char* text, char** end) {
    const char* start = text + std::strspn(text, " \t\n\v\f\r");
    const bool is_negative = *start == '-';
    if (is_negative || *start == '+') ++start;
    const bool hexadecimal = is_hexadecimal(start);
    if (hexadecimal) start += 2;
    double value = 0.0;
    std::from_chars_result result{start, std::errc::invalid_argument};
    if (*start != '-') {
        // Nothing of a number stands behind two signs, but not every library sees that.
        const char* const two_signs = std::strstr(start, "+-");
        const char* const last = two_signs ? two_signs : start + std::strlen(start);
        result = std::from_chars(start, last, value,
                                 hexadecimal ? std::chars_format::hex : std::chars_format::general);
    }
    const bool found = result.ec != std::errc::invalid_argument;
    if (end) *end = const_cast<char*>(found ? result.ptr : text);
    if (!found) return 0.0;
    if (result.ec == std::errc::result_out_of_range) {
        const std::string_view number(start, static_cast<std::size_t>(result.ptr - start));
        value = is_large(number, hexadecimal) ? HUGE_VAL : 0.0;
    }
    return is_negative ? -value : value;
}

}  // namespace os
