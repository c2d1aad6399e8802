// The vector instructions of this machine: chosen when the program runs.
#include "mbase64_avx2.h"
#include "mbase64_groups.h"
#include "os/cpu_features.h"

namespace base64 {

std::size_t encode_vector(char* target, const char* source, std::size_t groups) {
    return os::cpu_has_avx2() ? avx2::encode(target, source, groups) : groups;
}

std::size_t decode_vector(char* target, const char* source, std::size_t groups) {
    return os::cpu_has_avx2() ? avx2::decode(target, source, groups) : 0;
}

}  // namespace base64
