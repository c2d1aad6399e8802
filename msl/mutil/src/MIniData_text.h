// How a line of an ini file is taken apart. Blank means space or tab.
#pragma once

#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace minidata {

constexpr const char* source = "msl/mutil/src/MIniData_template_core";
constexpr const char* blanks = " \t";

inline bool is_comment_start(char c) { return c == '#' || c == '*' || c == '/' || c == ';'; }

inline std::string_view trim_right(std::string_view text) {
    return text.substr(0, text.find_last_not_of(blanks) + 1);
}

// The name of an entry that begins at `begin`, with its '=' at `equals` or, if that is npos, without one.
inline std::string_view entry_name(std::string_view line, std::size_t begin, std::size_t equals) {
    return trim_right(line.substr(begin, equals == line.npos ? line.npos : equals - begin));
}

// The texts of values: as "%.17g" and "%ld" print them, the latter of 32 bits.
inline std::string double_text(double value) {
    std::array<char, 32> text;
    const auto result =
        std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::general, 17);
    return {text.data(), result.ptr};
}

inline std::string long_text(long value) { return std::to_string(static_cast<std::int32_t>(value)); }

}  // namespace minidata
