#include "os/cpu_features.h"

namespace os {

#if defined(__x86_64__) || defined(__i386__)
bool cpu_has_avx2() {
    static const bool has = __builtin_cpu_supports("avx2") != 0;
    return has;
}
#else
bool cpu_has_avx2() { return false; }
#endif

}  // namespace os
