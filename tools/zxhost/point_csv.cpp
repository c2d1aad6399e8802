#include "point_csv.h"

#include <fmt/format.h>

#include <iterator>

#include "number_text.h"

namespace zxhost {
namespace {

// A field in quotes if it needs them.
std::string field(const std::string& text) {
    if (text.find_first_of(",\"\r\n") == std::string::npos) return text;
    std::string quoted = "\"";
    for (const char c : text) {
        if (c == '"') quoted += '"';
        quoted += c;
    }
    return quoted + '"';
}

}  // namespace

PointCsv::PointCsv(std::ostream& out, const CsvHeader& header) : m_out(out) {
    m_out << "# machine: " << printable(header.machine) << "\n# time: " << printable(header.time)
          << "\n# action: " << printable(header.what) << "\n";
    for (std::size_t i = 0; i < header.columns.size(); ++i) {
        const std::string_view unit = unit_of(header.columns[i]);
        const std::string name =
            unit.empty() ? header.columns[i] : fmt::format("{} [{}]", header.columns[i], unit);
        m_out << (i ? "," : "") << field(printable(name));
    }
    m_out << std::endl;
}

void PointCsv::add(const std::vector<double>& point) {
    for (std::size_t i = 0; i < point.size(); ++i) {
        if (i) m_lines += ',';
        fmt::format_to(std::back_inserter(m_lines), "{}", point[i]);
    }
    m_lines += '\n';
    constexpr std::size_t enough = 1 << 20;
    if (m_lines.size() > enough) flush();
}

void PointCsv::flush() {
    m_out.write(m_lines.data(), static_cast<std::streamsize>(m_lines.size()));
    m_out.flush();
    m_lines.clear();
}

}  // namespace zxhost
