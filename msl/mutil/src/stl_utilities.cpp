#include "stl_utilities.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>

#include "ascii.h"
#include "errtrace.h"
#include "mbase64.h"
#include "os/error.h"
#include "os/number.h"

namespace {

constexpr const char* source = "msl/mutil/src/stl_utilities";

// Formats once into a buffer on the stack, and a second time only what didn't fit. Returns the text up to its
// first NUL, or false, with the reason in errno, if the format can't be carried out.
OS_PRINTF_FORMAT(2, 0)
bool format_to(std::string& out, const char* format, va_list args) {
    std::array<char, 1024> buffer;
    va_list again;
    va_copy(again, args);
    int length = std::vsnprintf(buffer.data(), buffer.size(), format, args);
    if (length < 0) {
        va_list measured;
        va_copy(measured, again);
        length = std::vsnprintf(nullptr, 0, format, measured);
        va_end(measured);
    }
    if (length >= static_cast<int>(buffer.size())) {
        std::string text(static_cast<std::size_t>(length) + 1, '\0');
        std::vsnprintf(text.data(), text.size(), format, again);
        out = text.c_str();
    } else if (length >= 0) {
        out = buffer.data();
    }
    va_end(again);
    return length >= 0;
}

template <class Number>
void append_integer(std::string& s, Number number) {
    std::array<char, 24> digits;
    const auto result = std::to_chars(digits.data(), digits.data() + digits.size(), number);
    s.append(digits.data(), result.ptr);
}

// The end of a conversion, judged as the callers of stl_string_to_... asked for.
bool converted(const std::string& s, const char* end, bool whole) {
    return whole ? end == s.c_str() + s.size() : end != s.c_str();
}

}  // namespace

std::string stl_string_format_va(const char* format, va_list args) {
    std::string text;
    if (!format_to(text, format, args)) {
        MERRLOG_REPORT(source, "%s(): stl_string_format_va() failed: %s", "stl_string_format_va",
                       os::errno_text().c_str());
    }
    return text;
}

std::string stl_string_format(const char* format, ...) {
    std::string text;
    va_list args;
    va_start(args, format);
    if (!format_to(text, format, args)) {
        MERRLOG_REPORT(source, "%s(): stl_string_format() failed: %s", "stl_string_format",
                       os::errno_text().c_str());
    }
    va_end(args);
    return text;
}

void stl_string_printf(std::string& s, const char* format, ...) {
    va_list args;
    va_start(args, format);
    std::string text = stl_string_format_va(format, args);
    va_end(args);
    s = std::move(text);
}

void stl_string_toupper(std::string& s) { std::transform(s.begin(), s.end(), s.begin(), ascii::to_upper); }
void stl_string_tolower(std::string& s) { std::transform(s.begin(), s.end(), s.begin(), ascii::to_lower); }

void stl_string_tokenize(const std::string& text, const char* delimiters, std::vector<std::string>& out) {
    std::size_t begin = text.find_first_not_of(delimiters);
    while (begin != text.npos) {
        const std::size_t end = text.find_first_of(delimiters, begin);
        out.push_back(text.substr(begin, end - begin));
        begin = text.find_first_not_of(delimiters, end);
    }
}

void stl_string_strip_comment(std::string& s) {
    for (const char* const start : {"//", "/*", ";"}) {
        const std::size_t found = s.find(start);
        if (found == s.npos) continue;
        s.erase(found);
        return;
    }
}

void stl_string_strip(std::string& s) {
    stl_string_strip_comment(s);
    s.erase(std::remove_if(s.begin(), s.end(), ascii::is_space), s.end());
}

void stl_string_join(std::string& out, const char* separator, const std::vector<std::string>& items) {
    if (!separator) separator = "";
    const std::size_t separator_size = std::strlen(separator);
    std::size_t size = 0;
    for (const std::string& item : items) size += item.size() + separator_size;
    out.clear();
    out.reserve(size);
    for (const std::string& item : items) {
        if (&item != &items.front()) out.append(separator, separator_size);
        out += item;
    }
}

std::size_t stl_string_replace_all(std::string& s, const std::string& from, const std::string& to) {
    if (from.empty()) return 0;
    std::size_t count = 0;
    for (std::size_t at = s.find(from); at != s.npos; at = s.find(from, at + to.size())) {
        s.replace(at, from.size(), to);
        ++count;
    }
    return count;
}

bool stl_string_to_double(const std::string& s, double& out, bool whole) {
    char* end = nullptr;
    out = os::string_to_double(s.c_str(), &end);
    return converted(s, end, whole);
}

bool stl_string_to_long(const std::string& s, long& out, bool whole) {
    char* end = nullptr;
    const long value = std::strtol(s.c_str(), &end, 10);
    out = std::clamp<long>(value, std::numeric_limits<std::int32_t>::min(),
                           std::numeric_limits<std::int32_t>::max());
    return converted(s, end, whole);
}

void stl_string_append(std::string& s, int number) { append_integer(s, number); }
void stl_string_append(std::string& s, unsigned int number) { append_integer(s, number); }
void stl_string_append(std::string& s, long number) { append_integer(s, number); }
void stl_string_append(std::string& s, unsigned long number) { append_integer(s, number); }
void stl_string_append(std::string& s, long long number) { append_integer(s, number); }
void stl_string_append(std::string& s, unsigned long long number) { append_integer(s, number); }

void stl_string_append(std::string& s, double value, int precision) {
    constexpr int default_precision = 6;
    const int places = precision < 0 ? default_precision : precision;
    // Sign, up to 309 digits, point and places.
    std::string text(static_cast<std::size_t>(places) + 312, '\0');
    const auto result =
        std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed, places);
    text.resize(static_cast<std::size_t>(result.ptr - text.data()));
    if (text.find('.') != text.npos) {
        text.erase(text.find_last_not_of('0') + 1);
        if (text.back() == '.') text.pop_back();
    }
    s += text;
}

void stl_string_quote_space(std::string& s) {
    if (s.find_first_of("\"\\ ") == s.npos) return;
    const char* const quote = s.find(' ') == s.npos ? "" : "\"";
    std::string out;
    out.reserve(2 * s.size());
    out += quote;
    for (const char c : s) {
        if (c == '"' || c == '\\') out += '\\';
        out += c;
    }
    out += quote;
    s = std::move(out);
}

bool stl_string_unquote_space(std::string& s) {
    const std::size_t first = s.find_first_of("\"\\ ");
    if (first == s.npos) return true;
    if (s[first] == ' ') {
        MERRTRACE_REPORT(source, "stl_string_unquote_space(): found unquoted space");
        return false;
    }
    std::string out(s, 0, first);
    bool quoted = false;
    for (std::size_t i = first; i < s.size(); ++i) {
        if (s[i] == '"') {
            quoted = !quoted;
            continue;
        }
        if (s[i] == '\\' && (++i == s.size() || (s[i] != '"' && s[i] != '\\'))) {
            MERRTRACE_REPORT(source, "stl_string_unquote_space(): can't unquote a lonely backslash");
            return false;
        }
        out += s[i];
    }
    if (quoted) {
        MERRTRACE_REPORT(source, "stl_string_unquote_space(): no closing quote found");
        return false;
    }
    s = std::move(out);
    return true;
}

bool stl_encode_base64(std::string& s) {
    const std::size_t length = s.size();
    const std::size_t size = MBase64_EncodedSize(~length);
    s.resize(size);
    const std::ptrdiff_t count = MBase64_Encode(s.data(), s.data(), ~length);
    if (count >= 0) return true;
    MERRTRACE_REPORT(source, "stl_encode_base64(): MBase64_Encode() returned %td instead of %zu", count,
                     size);
    s.clear();
    return false;
}

bool stl_decode_base64(std::string& s) {
    // Texts from fields of a fixed size end in NULs.
    const std::size_t length = s.find_last_not_of('\0') + 1;
    const std::size_t size = MBase64_DecodedSize(s.data(), ~length);
    if (MBase64_Decode(s.data(), s.data(), ~length) >= 0) {
        s.resize(size);
        return true;
    }
    MERRTRACE_REPORT(source, "stl_decode_base64(): MBase64_Decode(%zu) failed (%zu)", ~length, size);
    s.clear();
    return false;
}

std::string stl_decode_base64(const std::string& s) {
    std::string decoded = s;
    stl_decode_base64(decoded);
    return decoded;
}
