// Base64 with the standard alphabet and padding, and no line breaks. Source and target may be the same
// buffer, in both directions.
//
// A length below 0x7FFFFFFFFFFFFFFF is a plain one, and the target is terminated with NUL. A larger one is
// the bitwise complement of the length, and the target is not terminated. All functions may be called from
// any thread.
#pragma once

#include <cstddef>

// Bytes that the target needs, with the NUL.
std::size_t MBase64_EncodedSize(std::size_t length);

// Returns the count of characters without the NUL. Can't fail.
std::ptrdiff_t MBase64_Encode(char* target, const char* source, std::size_t length);

// Bytes that the result of a well-formed text needs, with the NUL; for others see below.
std::size_t MBase64_DecodedSize(const char* source, std::size_t length);

// Returns the count of bytes without the NUL, or -1, reported to the error trace, for a length that is no
// multiple of 4 or an illegal character. The target must have room for three bytes for every four characters,
// and the NUL: a text with '=' in a wrong place may give more bytes than MBase64_DecodedSize says.
std::ptrdiff_t MBase64_Decode(char* target, const char* source, std::size_t length);
