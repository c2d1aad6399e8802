#include <array>
#include <bit>
#include <cstring>

#include "mbase64_groups.h"

namespace base64 {

namespace {

constexpr char alphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

// Two characters for each twelve bits: half the look-ups.
constexpr auto pairs = [] {
    std::array<std::array<char, 2>, 4096> table{};
    for (std::size_t bits = 0; bits < table.size(); ++bits) {
        table[bits] = {alphabet[bits >> 6], alphabet[bits & 0x3F]};
    }
    return table;
}();

constexpr auto values = [] {
    std::array<std::int8_t, 256> table{};
    table.fill(illegal);
    for (std::int8_t value = 0; value < padding; ++value) {
        table[static_cast<std::size_t>(alphabet[value])] = value;
    }
    table['='] = padding;
    return table;
}();

// Three bytes as they lie in memory, and one that isn't 0 if any character was illegal.
constexpr std::uint32_t word(std::uint32_t bits, bool ok) {
    return std::bit_cast<std::uint32_t>(
        std::array{static_cast<std::uint8_t>(bits >> 16), static_cast<std::uint8_t>(bits >> 8),
                   static_cast<std::uint8_t>(bits), static_cast<std::uint8_t>(ok ? 0 : 0xFF)});
}
constexpr std::uint32_t illegal_word = word(0, false);

// For each place in a group what its character gives: the four together are the group.
constexpr auto words = [] {
    std::array<std::array<std::uint32_t, 256>, 4> tables{};
    for (std::size_t place = 0; place < 4; ++place) {
        for (std::size_t byte = 0; byte < 256; ++byte) {
            const int value = values[byte];
            tables[place][byte] = value == illegal
                                      ? illegal_word
                                      : word(static_cast<std::uint32_t>(value) << (18 - 6 * place), true);
        }
    }
    return tables;
}();

std::size_t byte_of(char c) { return static_cast<unsigned char>(c); }

constexpr std::uint64_t reversed(std::uint64_t bits) {
    bits = (bits & 0x00FF00FF00FF00FF) << 8 | (bits >> 8 & 0x00FF00FF00FF00FF);
    bits = (bits & 0x0000FFFF0000FFFF) << 16 | (bits >> 16 & 0x0000FFFF0000FFFF);
    return bits << 32 | bits >> 32;
}

// Eight bytes, the first on top.
std::uint64_t load(const char* source) {
    std::uint64_t bits = 0;
    std::memcpy(&bits, source, sizeof bits);
    return std::endian::native == std::endian::little ? reversed(bits) : bits;
}

void put_pair(char* target, std::uint64_t bits) { std::memcpy(target, pairs[bits & 0xFFF].data(), 2); }

}  // namespace

int value_of(char c) { return values[byte_of(c)]; }

void encode_group(char* target, std::uint32_t bits) {
    put_pair(target, bits >> 12);
    put_pair(target + 2, bits);
}

void encode_plain(char* target, const char* source, std::size_t groups) {
    // Two groups a step.
    for (; groups >= 2; groups -= 2) {
        const std::uint64_t bits = load(source + 3 * groups - 6);
        char* const out = target + 4 * groups - 8;
        put_pair(out, bits >> 52);
        put_pair(out + 2, bits >> 40);
        put_pair(out + 4, bits >> 28);
        put_pair(out + 6, bits >> 16);
    }
    if (groups > 0) {
        encode_group(target, static_cast<std::uint32_t>(byte_of(source[0]) << 16 | byte_of(source[1]) << 8 |
                                                        byte_of(source[2])));
    }
}

std::size_t decode_plain(char* target, const char* source, std::size_t groups) {
    for (std::size_t i = 0; i < groups; ++i, source += 4, target += 3) {
        const std::uint32_t group = words[0][byte_of(source[0])] | words[1][byte_of(source[1])] |
                                    words[2][byte_of(source[2])] | words[3][byte_of(source[3])];
        if ((group & illegal_word) != 0) return i;
        std::memcpy(target, &group, sizeof group);
    }
    return groups;
}

}  // namespace base64
