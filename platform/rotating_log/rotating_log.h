// A text file of log lines that is renamed away when it has grown too large.
//
// The file is opened at the first line. Whatever fails here is kept from the caller, who has nothing to do
// with it: lines that can't be written are lost. Any thread may call at any time.
#pragma once

#include <memory>
#include <string>

#include "os/mutex.h"

namespace spdlog {
class logger;
}

class RotatingLog {
public:
    // The file is that named by the environment's `variable`, else `default_name` in the user's state
    // directory. Both texts are kept as pointers.
    RotatingLog(const char* variable, const char* default_name, std::size_t max_bytes);

    // Later lines go to this file.
    void set_file(const std::string& path);

    // Writes the text as one line, behind the time and the thread. Line ends at its end are left out, those
    // inside are shown as '\r' and '\n'.
    void write(const std::string& text) noexcept;

private:
    std::shared_ptr<spdlog::logger> logger();
    std::string default_path() const;

    const char* const m_variable;
    const char* const m_default_name;
    const std::size_t m_max_bytes;
    os::Mutex m_mutex;
    bool m_tried OS_GUARDED_BY(m_mutex) = false;
    std::string m_path OS_GUARDED_BY(m_mutex);
    std::shared_ptr<spdlog::logger> m_logger OS_GUARDED_BY(m_mutex);
};
