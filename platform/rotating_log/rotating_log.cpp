#include "rotating_log.h"

#include <spdlog/logger.h>
#include <spdlog/pattern_formatter.h>
#include <spdlog/sinks/rotating_file_sink.h>

#include "os/directories.h"
#include "os/environment.h"
#include "os/path.h"

namespace {

constexpr std::size_t old_files = 3;

std::shared_ptr<spdlog::logger> open_logger(const std::string& path, std::size_t max_bytes) {
    auto sink = std::make_shared<spdlog::sinks::rotating_file_sink_mt>(path, max_bytes, old_files);
    auto logger = std::make_shared<spdlog::logger>("", std::move(sink));
    // The same bytes on every system.
    logger->set_formatter(std::make_unique<spdlog::pattern_formatter>(
        "%Y-%m-%d %H:%M:%S.%e [%t] %v", spdlog::pattern_time_type::local, "\n"));
    logger->set_level(spdlog::level::trace);
    // A line shall outlive a crash right behind it.
    logger->flush_on(spdlog::level::trace);
    // The default handler speaks on the host's standard error.
    logger->set_error_handler([](const std::string&) {});
    return logger;
}

std::string one_line(const std::string& text) {
    const std::size_t last = text.find_last_not_of("\r\n");
    std::string line;
    for (std::size_t i = 0; last != text.npos && i <= last; ++i) {
        if (text[i] == '\r') {
            line += "\\r";
        } else if (text[i] == '\n') {
            line += "\\n";
        } else {
            line += text[i];
        }
    }
    return line;
}

}  // namespace

RotatingLog::RotatingLog(const char* variable, const char* default_name, std::size_t max_bytes)
    : m_variable(variable), m_default_name(default_name), m_max_bytes(max_bytes) {}

void RotatingLog::set_file(const std::string& path) {
    os::LockGuard lock(m_mutex);
    m_path = os::native_path(path);
    m_logger.reset();
    m_tried = false;
}

void RotatingLog::write(const std::string& text) noexcept {
    try {
        if (const auto log = logger()) log->info("{}", one_line(text));
    } catch (...) {
        // Nobody is left to be told.
    }
}

std::string RotatingLog::default_path() const {
    std::string path;
    if (os::get_variable(m_variable, path)) return os::native_path(path);
    const std::string directory = os::user_state_directory();
    if (directory.empty() || !os::make_directories(directory)) return {};
    return directory + "/" + m_default_name;
}

std::shared_ptr<spdlog::logger> RotatingLog::logger() {
    os::LockGuard lock(m_mutex);
    if (!m_tried) {
        m_tried = true;
        if (m_path.empty()) m_path = default_path();
        if (!m_path.empty()) m_logger = open_logger(m_path, m_max_bytes);
    }
    return m_logger;
}
