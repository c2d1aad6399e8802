// Base64 of whole groups, three bytes and four characters each, in one buffer or two. Encoding goes from the
// last group to the first, decoding from the first to the last, so that in one buffer nothing is overwritten
// before it was read.
#pragma once

#include <cstddef>
#include <cstdint>

namespace base64 {

// What a character stands for.
constexpr int illegal = -1;
constexpr int padding = 64;
int value_of(char c);

// One group, of 24 bits.
void encode_group(char* target, std::uint32_t bits);

// All groups. Reads the two bytes behind the source without using them.
void encode_plain(char* target, const char* source, std::size_t groups);

// Returns how many groups it decoded: all of them, or those in front of one with an illegal character. A '='
// has one bit too many, and spoils the sextet before its own. Writes one byte more than the groups give.
std::size_t decode_plain(char* target, const char* source, std::size_t groups);

// With the vector instructions of this machine: as many as go in whole vectors, none if it has no such
// instructions. Returns how many groups are left, the first ones. Reads four bytes behind the source.
std::size_t encode_vector(char* target, const char* source, std::size_t groups);

// Returns how many groups it decoded; there is no '=' nor an illegal character among them. Writes only where
// the groups give bytes.
std::size_t decode_vector(char* target, const char* source, std::size_t groups);

}  // namespace base64
