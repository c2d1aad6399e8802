#include "numbers.h"

#include <array>
#include <charconv>
#include <system_error>

namespace wire {

namespace {

// All powers of ten that a double holds exactly.
constexpr std::array<double, 23> powers_of_ten = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                                  1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                                  1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
constexpr std::uint64_t exact_integers = std::uint64_t{1} << 53;

bool is_digit(char c) noexcept { return static_cast<unsigned char>(c - '0') < 10; }

const char* scan_any(const char* begin, const char* end, double& value) noexcept {
    const std::from_chars_result result = std::from_chars(begin, end, value);
    return result.ec == std::errc() ? result.ptr : nullptr;
}

}  // namespace

const char* scan_number(const char* begin, const char* end, double& value) noexcept {
    const char* p = begin;
    const bool negative = p != end && *p == '-';
    if (negative) ++p;
    const char* const digits = p;
    std::uint64_t mantissa = 0;
    while (p != end && is_digit(*p)) mantissa = mantissa * 10 + static_cast<unsigned>(*p++ - '0');
    std::size_t count = static_cast<std::size_t>(p - digits);
    std::size_t decimals = 0;
    if (p != end && *p == '.') {
        const char* const point = p++;
        while (p != end && is_digit(*p)) mantissa = mantissa * 10 + static_cast<unsigned>(*p++ - '0');
        decimals = static_cast<std::size_t>(p - point) - 1;
        count += decimals;
    }
    // Up to 18 digits can't have overflowed. A quotient of two exact doubles is the nearest to the text.
    const bool exponent = p != end && (*p == 'e' || *p == 'E');
    if (count == 0 || count > 18 || exponent || mantissa >= exact_integers)
        return scan_any(begin, end, value);
    const double magnitude = static_cast<double>(mantissa) / powers_of_ten[decimals];
    value = negative ? -magnitude : magnitude;
    return p;
}

bool scan_numbers(std::string_view text, std::vector<double>& values) {
    const char* p = text.data();
    const char* const end = p + text.size();
    for (;;) {
        while (p != end && *p == ' ') ++p;
        if (p == end) return true;
        double value = 0.0;
        p = scan_number(p, end, value);
        if (p == nullptr || (p != end && *p != ' ')) return false;
        values.push_back(value);
    }
}

bool parse_number(std::string_view text, double& value) noexcept {
    const char* const end = text.data() + text.size();
    return !text.empty() && scan_number(text.data(), end, value) == end;
}

bool parse_integer(std::string_view text, std::int64_t low, std::int64_t high, std::int64_t& value) noexcept {
    const char* const end = text.data() + text.size();
    std::int64_t read = 0;
    const std::from_chars_result result = std::from_chars(text.data(), end, read);
    if (result.ec != std::errc() || result.ptr != end || read < low || read > high) return false;
    value = read;
    return true;
}

void append_shortest(std::string& out, double value) {
    std::array<char, 32> text;
    const std::to_chars_result result = std::to_chars(text.data(), text.data() + text.size(), value);
    std::string_view written(text.data(), static_cast<std::size_t>(result.ptr - text.data()));
    if (written == "-nan") written.remove_prefix(1);
    out.append(written);
}

void append_integer(std::string& out, std::int64_t value) {
    std::array<char, 24> text;
    const std::to_chars_result result = std::to_chars(text.data(), text.data() + text.size(), value);
    out.append(text.data(), result.ptr);
}

}  // namespace wire
