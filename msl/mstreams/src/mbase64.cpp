#include "mbase64.h"

#include <array>
#include <cstdint>
#include <cstring>
#include <limits>

#include "errtrace.h"

namespace {

constexpr const char* source_name = "msl/mstreams/src/mbase64";

constexpr char alphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::int8_t illegal = -1;
constexpr std::int8_t padding = 64;

// Two characters for each twelve bits: half the look-ups.
constexpr auto pairs = [] {
    std::array<std::array<char, 2>, 4096> table{};
    for (std::size_t bits = 0; bits < table.size(); ++bits) {
        table[bits] = {alphabet[bits >> 6], alphabet[bits & 0x3F]};
    }
    return table;
}();

constexpr auto values = [] {
    std::array<std::int8_t, 128> table{};
    table.fill(illegal);
    for (std::int8_t value = 0; value < 64; ++value) {
        table[static_cast<std::size_t>(alphabet[value])] = value;
    }
    table['='] = padding;
    return table;
}();

struct Length {
    std::size_t bytes;
    bool terminated;
};

Length plain(std::size_t length) {
    const bool terminated = length < std::numeric_limits<std::size_t>::max() / 2;
    return {terminated ? length : ~length, terminated};
}

std::uint32_t byte_at(const char* p) { return static_cast<unsigned char>(*p); }

int value_of(char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte < values.size() ? values[byte] : illegal;
}

void put_group(char* target, std::uint32_t bits) {
    std::memcpy(target, pairs[bits >> 12].data(), 2);
    std::memcpy(target + 2, pairs[bits & 0xFFF].data(), 2);
}

void take_group(char* target, std::uint32_t bits, std::size_t count) {
    const char bytes[] = {static_cast<char>(bits >> 16), static_cast<char>(bits >> 8),
                          static_cast<char>(bits)};
    std::memcpy(target, bytes, count);
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
        const int value = value_of(source[i]);
        if (value < 0 || (value == padding && i < 2)) return refuse(value);
        if (value == padding) --count;
        bits = bits << 6 | (static_cast<std::uint32_t>(value) & 0x3F);
    }
    take_group(target, bits, count);
    return static_cast<std::ptrdiff_t>(count);
}

}  // namespace

std::size_t MBase64_EncodedSize(std::size_t length) {
    const auto [bytes, terminated] = plain(length);
    return (bytes + 2) / 3 * 4 + (terminated ? 1 : 0);
}

std::ptrdiff_t MBase64_Encode(char* target, const char* source, std::size_t length) {
    const auto [bytes, terminated] = plain(length);
    const std::size_t groups = bytes / 3;
    const std::size_t rest = bytes % 3;
    const std::size_t size = (bytes + 2) / 3 * 4;
    // From the end, so that in one buffer no source byte is overwritten before it was read.
    if (terminated) target[size] = '\0';
    if (rest > 0) {
        const char* const last = source + 3 * groups;
        put_group(target + 4 * groups, byte_at(last) << 16 | (rest == 2 ? byte_at(last + 1) << 8 : 0));
        target[size - 1] = '=';
        if (rest == 1) target[size - 2] = '=';
    }
    for (std::size_t i = groups; i-- > 0;) {
        const char* const group = source + 3 * i;
        put_group(target + 4 * i, byte_at(group) << 16 | byte_at(group + 1) << 8 | byte_at(group + 2));
    }
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
    for (std::size_t at = 0; at + 4 < bytes; at += 4, out += 3) {
        std::uint32_t bits = 0;
        for (std::size_t i = at; i < at + 4; ++i) {
            const int value = value_of(source[i]);
            if (value < 0) return refuse(value);
            // A '=' in here has one bit too many, and spoils the sextet before its own.
            bits = bits << 6 | static_cast<std::uint32_t>(value);
        }
        take_group(out, bits, 3);
    }
    if (bytes > 0) {
        const std::ptrdiff_t last = decode_last(out, source + bytes - 4);
        if (last < 0) return -1;
        out += last;
    }
    if (terminated) *out = '\0';
    return out - target;
}
