// A program in a process of its own, and what it cost. POSIX only.
#pragma once

#include <string>
#include <vector>

namespace bench {

struct ProcessCost {
    int exit_status = -1;    // -1: ended by a signal
    double processor = 0.0;  // s, of all its threads
    double wall = 0.0;       // s, from its begin to its end
};

// Runs it to its end with standard output in this file, and standard error in one with ".err" at the end of
// its name. Throws std::runtime_error if it can't be started.
ProcessCost run_measured(const std::string& program, const std::vector<std::string>& arguments,
                         const std::string& out_file);

}  // namespace bench
