// Serial lines: what asio leaves to the system.
#pragma once

#include <cstdint>
#include <string>

namespace os {

using SerialHandle = std::intptr_t;

// The device of the line that a user calls `name`. "COM3" is the third serial line of the computer,
// "COM:DEVICE" any device, and every other text is a device by itself.
std::string serial_device(const std::string& name);

// Throws away what came in and wasn't read, and what was written and hasn't left.
void serial_discard(SerialHandle line) noexcept;

// Two ends of a line that exists in software alone: one is ours, the other a device that any program opens.
class PseudoTerminal {
public:
    PseudoTerminal() = default;
    ~PseudoTerminal();
    PseudoTerminal(const PseudoTerminal&) = delete;
    PseudoTerminal& operator=(const PseudoTerminal&) = delete;

    // Makes one, in raw mode. False, with last_error() of os/error.h, if the system has none to give.
    bool open();
    const std::string& device() const { return m_device; }
    // A handle of our end, for a caller who closes it.
    SerialHandle share() const;
    // Ends the line: who has opened the device finds it gone.
    void close() noexcept;

private:
    std::string m_device;
    SerialHandle m_ours = -1;
    SerialHandle m_theirs = -1;  // while this is open the line stays, whoever comes and goes
};

}  // namespace os
