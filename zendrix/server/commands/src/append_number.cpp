#include "append_number.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>

namespace {

constexpr double half_of_last = 5e-7;

// Nearer than this to a whole number the scaled fraction may differ from the digits told one by one; both are
// within 2e-10 of the true value.
constexpr double tie_guard = 1e-9;

// "00" to "99", one behind the other.
constexpr auto digit_pairs = [] {
    std::array<char, 200> pairs{};
    for (std::size_t i = 0; i < 100; ++i) {
        pairs[2 * i] = static_cast<char>('0' + i / 10);
        pairs[2 * i + 1] = static_cast<char>('0' + i % 10);
    }
    return pairs;
}();

// How many zeros end such a pair.
constexpr auto zeros_of_pair = [] {
    std::array<std::uint8_t, 100> zeros{};
    for (std::size_t i = 0; i < 100; ++i) zeros[i] = i == 0 ? 2 : i % 10 == 0 ? 1 : 0;
    return zeros;
}();

void put_pair(char* at, std::uint32_t pair) { std::memcpy(at, &digit_pairs[2 * pair], 2); }

char digit_of(std::uint32_t digit) { return static_cast<char>('0' + digit); }

char* put_whole(char* at, std::uint32_t whole) {
    if (whole >= 1000) return std::to_chars(at, at + 10, whole).ptr;
    if (whole >= 100) *at++ = digit_of(whole / 100);
    if (whole >= 10) {
        put_pair(at, whole % 100);
        return at + 2;
    }
    *at = digit_of(whole);
    return at + 1;
}

// Each digit is the whole part of ten times what is left: the rule, near ties too.
std::uint32_t digits_one_by_one(double fraction) {
    std::uint32_t digits = 0;
    for (int i = 0; i < 6; ++i) {
        fraction *= 10.0;
        const auto digit = static_cast<std::uint32_t>(fraction);
        digits = 10 * digits + digit;
        fraction -= digit;
    }
    return digits;
}

// The same six digits, by one multiplication wherever that can't differ.
std::uint32_t six_digits(double fraction) {
    const double scaled = fraction * 1e6;
    const auto digits = static_cast<std::uint32_t>(scaled);
    const double rest = scaled - digits;
    return rest > tie_guard && rest < 1.0 - tie_guard ? digits : digits_one_by_one(fraction);
}

// Writes the point and the digits, which are not all zero; returns the end without the zeros behind them.
char* put_fraction(char* at, std::uint32_t digits) {
    const std::uint32_t first = digits / 10000;
    const std::uint32_t middle = digits / 100 % 100;
    const std::uint32_t last = digits % 100;
    *at = '.';
    put_pair(at + 1, first);
    put_pair(at + 3, middle);
    put_pair(at + 5, last);
    // A sum without jumps: measured values end in zeros too irregularly to be foreseen.
    int zeros = zeros_of_pair[last];
    zeros += last == 0 ? zeros_of_pair[middle] : 0;
    zeros += last == 0 && middle == 0 ? zeros_of_pair[first] : 0;
    return at + 7 - zeros;
}

// For magnitudes from half_of_last to 2^31.
void append_plain(std::string& text, double value) {
    char buffer[24];  // blank, sign, ten digits, point, six digits
    const double sum = value < 0.0 ? value - half_of_last : value + half_of_last;
    const double magnitude = std::fabs(sum);
    const auto whole = static_cast<std::uint32_t>(magnitude);
    char* end = buffer;
    *end++ = ' ';
    if (sum < 0.0) *end++ = '-';
    end = put_whole(end, whole);
    const std::uint32_t digits = six_digits(magnitude - whole);
    if (digits != 0) end = put_fraction(end, digits);
    text.append(buffer, static_cast<std::size_t>(end - buffer));
}

void append_rounded(std::string& text, double value) {
    char buffer[32];
    char* end = std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed, 6).ptr;
    while (end[-1] == '0') --end;
    if (end[-1] == '.') --end;
    text.append(buffer, end);
}

void append_precise(std::string& text, double value) {
    char buffer[32];
    text.append(buffer,
                std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::general, 17).ptr);
}

}  // namespace

// Nothing here is printf's: that would write the decimal point of the host's locale.
void append_number(std::string& text, double value) {
    const double magnitude = std::fabs(value);
    if (value == 0.0) {
        text += " 0";
    } else if (value >= -2147483648.0 && value <= 2147483647.0 && magnitude >= half_of_last) {
        append_plain(text, value);
    } else if (std::isnan(value)) {
        text += " nan";
    } else {
        text += ' ';
        magnitude < 1e11 ? append_rounded(text, value) : append_precise(text, value);
    }
}
