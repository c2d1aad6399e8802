// Base64 with AVX2, for a machine that has it: encode_vector and decode_vector of mbase64_groups.h.
#pragma once

#include <cstddef>

namespace base64::avx2 {

std::size_t encode(char* target, const char* source, std::size_t groups);
std::size_t decode(char* target, const char* source, std::size_t groups);

}  // namespace base64::avx2
