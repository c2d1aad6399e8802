#include <fcntl.h>
#include <stdlib.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <charconv>

#include "os/path.h"
#include "os/serial.h"

namespace os {
namespace {

constexpr std::string_view prefix = "COM";

int descriptor(SerialHandle handle) { return static_cast<int>(handle); }

void close_handle(SerialHandle& handle) noexcept {
    if (handle >= 0) ::close(descriptor(handle));
    handle = -1;
}

bool make_raw(int terminal) {
    termios settings{};
    if (::tcgetattr(terminal, &settings) != 0) return false;
    ::cfmakeraw(&settings);
    return ::tcsetattr(terminal, TCSANOW, &settings) == 0;
}

}  // namespace

std::string serial_device(const std::string& name) {
    if (!name.starts_with(prefix)) return native_path(name);
    const std::string_view rest = std::string_view(name).substr(prefix.size());
    if (rest.starts_with(':')) return native_path(std::string(rest.substr(1)));
    unsigned number = 0;
    const auto [end, error] = std::from_chars(rest.data(), rest.data() + rest.size(), number);
    const bool is_number = error == std::errc() && end == rest.data() + rest.size();
    // The first one is number 0 here.
    return is_number && number > 0 ? "/dev/ttyS" + std::to_string(number - 1) : native_path(name);
}

void serial_discard(SerialHandle line) noexcept { ::tcflush(descriptor(line), TCIOFLUSH); }

PseudoTerminal::~PseudoTerminal() { close(); }

bool PseudoTerminal::open() {
    close();
    m_ours = ::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
    char name[128];
    if (m_ours < 0 || ::grantpt(descriptor(m_ours)) != 0 || ::unlockpt(descriptor(m_ours)) != 0 ||
        ::ptsname_r(descriptor(m_ours), name, sizeof name) != 0) {
        return false;
    }
    m_device = name;
    m_theirs = ::open(name, O_RDWR | O_NOCTTY | O_CLOEXEC);
    return m_theirs >= 0 && make_raw(descriptor(m_theirs));
}

SerialHandle PseudoTerminal::share() const { return ::fcntl(descriptor(m_ours), F_DUPFD_CLOEXEC, 0); }

void PseudoTerminal::close() noexcept {
    close_handle(m_ours);
    close_handle(m_theirs);
}

}  // namespace os
