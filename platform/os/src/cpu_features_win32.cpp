#include "os/cpu_features.h"
#include "windows_api.h"

namespace os {

bool cpu_has_avx2() {
    // PF_AVX2_INSTRUCTIONS_AVAILABLE, which older headers lack.
    constexpr DWORD avx2_instructions = 40;
    static const bool has = IsProcessorFeaturePresent(avx2_instructions) != 0;
    return has;
}

}  // namespace os
