#include "scantrack.h"

#include "numbers.h"
#include "request.h"

namespace serverdll {

namespace {

constexpr std::string_view point_twice = "scan: point received twice";
constexpr std::string_view point_broken = "scan: point not understood";

}  // namespace

ScanTrack::ScanTrack(long id) : m_id(id) {
    wire::append_id(m_prefix, id);
    m_prefix += "point ";
}

bool ScanTrack::is_mine(std::string_view line, std::string_view& body) const noexcept {
    if (!line.starts_with(m_prefix)) return false;
    body = line.substr(m_prefix.size());
    return true;
}

std::size_t ScanTrack::take(std::string_view body, std::vector<double>& values, std::string_view& error) {
    error = {};
    if (m_failed) return 0;
    const char* p = body.data();
    const char* const end = p + body.size();
    std::int64_t number = 0;
    while (p != end && *p >= '0' && *p <= '9' && p - body.data() < 18) number = number * 10 + (*p++ - '0');
    const std::size_t before = values.size();
    const std::string_view rest = body.substr(static_cast<std::size_t>(p - body.data()));
    if (number == m_next && rest.starts_with(' ') && wire::scan_numbers(rest, values) &&
        values.size() > before) {
        ++m_next;
        return values.size() - before;
    }
    values.resize(before);
    m_failed = true;
    error = number == m_next || number == 0 ? point_broken : number < m_next ? point_twice : points_lost;
    return 0;
}

}  // namespace serverdll
