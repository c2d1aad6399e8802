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
    m_expected = m_prefix + "1 ";
}

// To the next number, in both of its forms.
void ScanTrack::step() {
    ++m_next;
    std::size_t digit = m_expected.size() - 2;
    while (m_expected[digit] == '9') m_expected[digit--] = '0';
    if (digit >= m_prefix.size()) {
        ++m_expected[digit];
    } else {
        m_expected.insert(m_prefix.size(), 1, '1');
    }
}

std::size_t ScanTrack::take_line(std::string_view bytes, std::vector<double>& values, std::size_t& count) {
    if (m_failed || !bytes.starts_with(m_expected)) return 0;
    const std::size_t before = values.size();
    const char* const end = bytes.data() + bytes.size();
    const char* p = bytes.data() + m_expected.size();
    for (double value = 0.0;; ++p) {
        p = wire::scan_number(p, end, value);
        if (p == nullptr || p == end) break;
        values.push_back(value);
        if (*p == ' ') continue;
        if (*p != '\r' || p + 1 == end || p[1] != '\n') break;
        step();
        count = values.size() - before;
        return static_cast<std::size_t>(p + 2 - bytes.data());
    }
    values.resize(before);
    return 0;
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
        step();
        return values.size() - before;
    }
    values.resize(before);
    m_failed = true;
    error = number == m_next || number == 0 ? point_broken : number < m_next ? point_twice : points_lost;
    return 0;
}

}  // namespace serverdll
