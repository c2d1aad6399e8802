// How a line of an ini file is taken apart. Blank means space or tab.
#pragma once

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace minidata {

constexpr const char* source = "msl/mutil/src/MIniData_template_core";

inline bool is_comment_start(char c) { return c == '#' || c == '*' || c == '/' || c == ';'; }

inline bool is_blank(char c) { return c == ' ' || c == '\t'; }

// Where the first byte that is no blank stands, else npos.
inline std::size_t find_text(std::string_view line) {
    const auto found = std::find_if_not(line.begin(), line.end(), is_blank);
    return found == line.end() ? line.npos : static_cast<std::size_t>(found - line.begin());
}

inline std::string_view trim_right(std::string_view text) {
    while (!text.empty() && is_blank(text.back())) text.remove_suffix(1);
    return text;
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
