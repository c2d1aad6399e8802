#include <poll.h>
#include <unistd.h>

#include "os/terminal.h"

namespace os {

bool input_is_terminal() { return isatty(STDIN_FILENO) == 1; }

bool wait_for_input(std::chrono::milliseconds at_most) {
    pollfd input{STDIN_FILENO, POLLIN, 0};
    return poll(&input, 1, static_cast<int>(at_most.count())) > 0;
}

std::ptrdiff_t read_input(char* bytes, std::size_t size) { return read(STDIN_FILENO, bytes, size); }

}  // namespace os
