#include "os/error.h"
#include "os/path.h"
#include "os/serial.h"
#include "windows_api.h"

namespace os {

// "COM3" is the system's own name for the line.
std::string serial_device(const std::string& name) {
    return native_path(name.starts_with("COM:") ? name.substr(4) : name);
}

void serial_discard(SerialHandle line) noexcept {
    ::PurgeComm(reinterpret_cast<HANDLE>(line), PURGE_RXCLEAR | PURGE_TXCLEAR);
}

// The system has no such thing.
PseudoTerminal::~PseudoTerminal() = default;

bool PseudoTerminal::open() {
    set_last_error(ERROR_NOT_SUPPORTED);
    return false;
}

SerialHandle PseudoTerminal::share() const { return m_ours; }

void PseudoTerminal::close() noexcept {}

}  // namespace os
