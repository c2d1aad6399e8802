// What the processor that the program runs on can do beyond what the program was compiled for.
#pragma once

namespace os {

// False on processors of another kind. Any thread.
bool cpu_has_avx2();

}  // namespace os
