// Measures in processes of their own, so that one way's heap and caches are not another's. POSIX only.
#pragma once

#include <functional>

#include "comparison.h"

namespace bench {

// Makes a measure that does its work in a process which `make` finds as it is now: call this before the
// program itself has used much memory. The process makes its measure at the first call, waits between calls,
// and ends with the last copy of the result.
Measure in_own_process(std::function<Measure()> make);

// A measure of its own that is `make`'s first and only one, each time in a new process.
Measure in_new_process(std::function<Measure()> make);

// The most memory that this process had in use so far, in bytes.
double peak_memory();

}  // namespace bench
