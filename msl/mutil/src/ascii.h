// Kinds of bytes as the "C" locale has them, whatever the process's locale is.
#pragma once

namespace ascii {

constexpr bool is_space(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }
constexpr bool is_lower(char c) { return c >= 'a' && c <= 'z'; }
constexpr bool is_upper(char c) { return c >= 'A' && c <= 'Z'; }
constexpr char to_lower(char c) { return is_upper(c) ? static_cast<char>(c - 'A' + 'a') : c; }
constexpr char to_upper(char c) { return is_lower(c) ? static_cast<char>(c - 'a' + 'A') : c; }

}  // namespace ascii
