#include "progress.h"

#include <utility>

namespace zxhost {

Progress::Progress(std::ostream& out, ProgressStyle style, Clock now)
    : m_out(out), m_style(style), m_now(std::move(now)), m_last(m_now()) {}

bool Progress::is_due() {
    using std::chrono::milliseconds;
    if (m_style == ProgressStyle::Off) return false;
    const auto now = m_now();
    if (now - m_last < (m_style == ProgressStyle::InPlace ? milliseconds(200) : milliseconds(500)))
        return false;
    m_last = now;
    return true;
}

void Progress::show(const std::string& text) {
    if (m_style == ProgressStyle::Lines) m_out << text << std::endl;
    if (m_style != ProgressStyle::InPlace) return;
    m_out << "\r\x1b[K" << text << std::flush;
    m_on_line = true;
}

void Progress::end() {
    if (m_on_line) m_out << std::endl;
    m_on_line = false;
}

}  // namespace zxhost
