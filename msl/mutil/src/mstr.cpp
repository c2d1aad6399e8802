#include "mstr.h"

#include <algorithm>
#include <charconv>
#include <cstring>

#include "ascii.h"

namespace {

constexpr std::size_t unbounded = static_cast<std::size_t>(-1);

char as_is(char c) { return c; }

int compare(const char* a, const char* b, std::size_t length, char (*folded)(char)) {
    for (std::size_t i = 0; i < length; ++i) {
        const auto left = static_cast<signed char>(folded(a[i]));
        const auto right = static_cast<signed char>(folded(b[i]));
        if (left != right) return left < right ? -1 : 1;
        if (left == 0) return 0;
    }
    return 0;
}

std::size_t measured(const char* s, std::size_t length) { return length > 0 ? length : std::strlen(s); }

}  // namespace

int MStrCopy(char* target, const char* source, std::size_t size) {
    if (size == 0) return 0;
    const std::size_t length = std::strlen(source);
    const std::size_t copied = std::min(length, size - 1);
    std::memmove(target, source, copied);
    target[copied] = '\0';
    return copied == length ? 1 : 0;
}

int MStrCat(char* target, const char* source, std::size_t size) {
    const auto* const end = static_cast<const char*>(std::memchr(target, '\0', size));
    if (!end) return 0;
    const auto used = static_cast<std::size_t>(end - target);
    return MStrCopy(target + used, source, size - used);
}

int MStrCmp(const char* a, const char* b) { return compare(a, b, unbounded, as_is); }
int MStrNCmp(const char* a, const char* b, std::size_t length) { return compare(a, b, length, as_is); }
int MStrICmp(const char* a, const char* b) { return compare(a, b, unbounded, ascii::to_lower); }
int MStrNICmp(const char* a, const char* b, std::size_t length) {
    return compare(a, b, length, ascii::to_lower);
}

std::size_t MStrSwapCase(char* s) {
    char* p = s;
    for (; *p; ++p) *p = ascii::is_upper(*p) ? ascii::to_lower(*p) : ascii::to_upper(*p);
    return static_cast<std::size_t>(p - s);
}

void MStrToLower(char* s) {
    for (; s && *s; ++s) *s = ascii::to_lower(*s);
}

void MStrToUpper(char* s) {
    for (; s && *s; ++s) *s = ascii::to_upper(*s);
}

void MStrStrip(char* s) {
    char* out = s;
    for (const char* in = s; *in && *in != ';'; ++in) {
        if (*in == '/' && (in[1] == '/' || in[1] == '*')) break;
        if (!ascii::is_space(*in)) *out++ = *in;
    }
    *out = '\0';
}

void MStrReverse(char* s, std::size_t length) { std::reverse(s, s + length); }

std::size_t MStrFromInt(int value, char* target) {
    char* const end = std::to_chars(target, target + 11, value).ptr;
    *end = '\0';
    return static_cast<std::size_t>(end - target);
}

std::size_t MStrTrimRight(char* s, std::size_t length) {
    const std::size_t old_length = measured(s, length);
    std::size_t new_length = old_length;
    while (new_length > 0 && ascii::is_space(s[new_length - 1])) --new_length;
    if (new_length < old_length) s[new_length] = '\0';
    return new_length;
}

std::size_t MStrTrimLeft(char* s, std::size_t length) {
    const std::size_t old_length = measured(s, length);
    const char* const begin = std::find_if_not(s, s + old_length, ascii::is_space);
    const auto new_length = static_cast<std::size_t>(s + old_length - begin);
    if (new_length < old_length) {
        std::memmove(s, begin, new_length);
        s[new_length] = '\0';
    }
    return new_length;
}

std::size_t MStrTrim(char* s, std::size_t length) {
    const std::size_t right = MStrTrimRight(s, length);
    // A length of 0 would have the text measured, but a text that is all white space is empty now.
    return right == 0 ? 0 : MStrTrimLeft(s, right);
}
