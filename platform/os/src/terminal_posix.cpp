#include <poll.h>
#include <unistd.h>

#include <cerrno>

#include "os/terminal.h"

namespace os {

bool input_is_terminal() { return isatty(STDIN_FILENO) == 1; }

bool wait_for_input(std::chrono::milliseconds at_most) {
    pollfd input{STDIN_FILENO, POLLIN, 0};
    return poll(&input, 1, static_cast<int>(at_most.count())) > 0;
}

std::ptrdiff_t read_input(char* bytes, std::size_t size) { return read(STDIN_FILENO, bytes, size); }

bool write_output(const char* bytes, std::size_t size) {
    while (size > 0) {
        const ssize_t done = write(STDOUT_FILENO, bytes, size);
        if (done < 0 && errno != EINTR) return false;
        if (done <= 0) continue;
        bytes += done;
        size -= static_cast<std::size_t>(done);
    }
    return true;
}

}  // namespace os
