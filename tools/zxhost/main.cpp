#include <iostream>

#include "command_line.h"
#include "os/program.h"
#include "os/streams.h"
#include "verb_host.h"

int main(int count, char** arguments) {
    os::make_standard_streams_binary();
    const zxhost::Streams streams{std::cout, std::cerr, os::output_is_terminal(),
                                  os::error_output_is_terminal()};
    return static_cast<int>(zxhost::run_command_line({arguments + (count > 0), arguments + count}, streams));
}
