// The program from its arguments to its exit status.
#pragma once

#include <string>
#include <vector>

#include "exit_status.h"

namespace zxhost {

struct Streams;

// `arguments` without the program's name.
ExitStatus run_command_line(std::vector<std::string> arguments, const Streams& streams);

}  // namespace zxhost
