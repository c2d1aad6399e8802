#include "mbase64.h"

#include <algorithm>
#include <cstdint>
#include <limits>

#include "errtrace.h"
#include "mbase64_groups.h"

namespace {

constexpr const char* source_name = "msl/mstreams/src/mbase64";

struct Length {
    std::size_t bytes;
    bool terminated;
};

Length plain(std::size_t length) {
    const bool terminated = length < std::numeric_limits<std::size_t>::max() / 2;
    return {terminated ? length : ~length, terminated};
}

std::uint32_t byte_at(const char* p) { return static_cast<unsigned char>(*p); }

// One group of one to three bytes, with its padding.
void encode_short(char* target, const char* source, std::size_t count) {
    base64::encode_group(target, byte_at(source) << 16 | (count > 1 ? byte_at(source + 1) << 8 : 0) |
                                     (count > 2 ? byte_at(source + 2) : 0));
    for (std::size_t i = 3; i > count; --i) target[i] = '=';
}

std::ptrdiff_t refuse(int value) {
    MERRTRACE_REPORT(source_name, "MBase64_Decode(): illegal character 0x%02x read, terminating",
                     static_cast<unsigned>(value));
    return -1;
}

// The last group, with its padding: bytes put, or -1.
std::ptrdiff_t decode_last(char* target, const char* source) {
    std::uint32_t bits = 0;
    std::size_t count = 3;
    for (int i = 0; i < 4; ++i) {
        const int value = base64::value_of(source[i]);
        if (value < 0 || (value == base64::padding && i < 2)) return refuse(value);
        if (value == base64::padding) --count;
        bits = bits << 6 | (static_cast<std::uint32_t>(value) & 0x3F);
    }
    for (std::size_t i = 0; i < count; ++i) target[i] = static_cast<char>(bits >> (16 - 8 * i));
    return static_cast<std::ptrdiff_t>(count);
}

}  // namespace

std::size_t MBase64_EncodedSize(std::size_t length) {
    const auto [bytes, terminated] = plain(length);
    return (bytes + 2) / 3 * 4 + (terminated ? 1 : 0);
}

std::ptrdiff_t MBase64_Encode(char* target, const char* source, std::size_t length) {
    const auto [bytes, terminated] = plain(length);
    const std::size_t size = (bytes + 2) / 3 * 4;
    if (terminated) target[size] = '\0';
    // One by one at the end, until four bytes stand behind the rest, which goes in larger steps.
    std::size_t groups = size / 4;
    while (groups > 0 && 3 * groups + 4 > bytes) {
        --groups;
        encode_short(target + 4 * groups, source + 3 * groups, std::min<std::size_t>(bytes - 3 * groups, 3));
    }
    base64::encode_plain(target, source, base64::encode_vector(target, source, groups));
    return static_cast<std::ptrdiff_t>(size);
}

std::size_t MBase64_DecodedSize(const char* source, std::size_t length) {
    const auto [bytes, terminated] = plain(length);
    const std::size_t size = bytes * 3 / 4 + (terminated ? 1 : 0);
    if (bytes >= 2 && source[bytes - 2] == '=') return size - 2;
    return bytes >= 1 && source[bytes - 1] == '=' ? size - 1 : size;
}

std::ptrdiff_t MBase64_Decode(char* target, const char* source, std::size_t length) {
    const auto [bytes, terminated] = plain(length);
    if (bytes % 4 != 0) {
        MERRTRACE_REPORT(source_name, "MBase64_Decode(): source_len has to be multiple of 4, not %zu", bytes);
        return -1;
    }
    char* out = target;
    if (bytes > 0) {
        const std::size_t groups = bytes / 4 - 1;
        std::size_t done = base64::decode_vector(target, source, groups);
        done += base64::decode_plain(target + 3 * done, source + 4 * done, groups - done);
        if (done < groups) return refuse(base64::illegal);
        out += 3 * groups;
        const std::ptrdiff_t last = decode_last(out, source + 4 * groups);
        if (last < 0) return -1;
        out += last;
    }
    if (terminated) *out = '\0';
    return out - target;
}
