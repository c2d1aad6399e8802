#include "scan_reader.h"

#include <fmt/format.h>

#include <charconv>
#include <system_error>

#include "number_text.h"
#include "scan_footer.h"

namespace zxhost {
namespace {

// Enough of a strange text to know it again.
std::string excerpt(std::string_view text) {
    constexpr std::size_t most = 40;
    return "'" + printable(text.substr(0, most)) + (text.size() > most ? "..." : "") + "'";
}

}  // namespace

ScanReader::ScanReader(const std::string& file) : m_lines(file) { read_header(); }

// The next line; false if there is none that is whole, which ends the reading.
bool ScanReader::take_line(std::string_view& line) {
    using Kind = BoundedLines::Kind;
    const Kind kind = m_lines.next(line);
    if (kind == Kind::Line) return true;
    if (kind == Kind::End)
        end(ScanState::Cut, m_lines.line() == 1 ? "the file is empty" : "it ends without a footer");
    else if (kind == Kind::Torn)
        end(ScanState::Cut, "it ends within the line " + excerpt(line));
    else
        end(ScanState::Damaged, fmt::format("the line is longer than {} bytes", BoundedLines::longest_line));
    return false;
}

void ScanReader::read_header() {
    std::string_view line;
    const bool any = take_line(line);
    // A file that was cut within its first line is cut; one that begins otherwise is another kind of file.
    const std::string_view begin = line.substr(0, scan_file_mark.size());
    if (begin != scan_file_mark.substr(0, any ? scan_file_mark.npos : begin.size()))
        return end(ScanState::NoScan,
                   fmt::format("it begins with {} in place of '{}'", excerpt(line), scan_file_mark));
    if (!any) return;
    if (line.ends_with('\r')) return end(ScanState::Damaged, "its lines end with CR LF: it was converted");
    if (line != scan_file_mark)
        return end(ScanState::NoScan, "it has a form that this program doesn't know: " + excerpt(line));
    constexpr int most_lines = 100;
    for (int i = 0; i < most_lines; ++i) {
        m_crc = crc_of("\n", crc_of(line, m_crc));
        if (!take_line(line)) return;
        if (line.starts_with('#') && !line.starts_with(footer_mark) && take_header_line(line, m_header))
            continue;
        if (line.starts_with('#') || !take_column_line(line, m_header)) break;
        m_crc = crc_of("\n", crc_of(line, m_crc));
        return;
    }
    end(ScanState::Damaged, "this is no line of a header: " + excerpt(line));
}

bool ScanReader::next(std::vector<double>& point) {
    std::string_view line;
    if (m_ended || !take_line(line)) return false;
    if (line.starts_with('#')) {
        read_footer(line);
        return false;
    }
    if (!parse(line, point)) return false;
    m_crc = crc_of("\n", crc_of(line, m_crc));
    ++m_verdict.points;
    return true;
}

bool ScanReader::parse(std::string_view line, std::vector<double>& point) {
    point.clear();
    const char* at = line.data();
    const char* const last = at + line.size();
    for (;; ++at) {
        double number = 0.0;
        const auto [behind, error] = std::from_chars(at, last, number);
        if (error != std::errc() || (behind != last && *behind != ',')) {
            end(ScanState::Damaged,
                fmt::format("number {} of the point is none: {}", point.size() + 1, excerpt(line)));
            return false;
        }
        point.push_back(number);
        at = behind;
        if (at == last) break;
    }
    if (point.size() == m_header.columns.size()) return true;
    end(ScanState::Damaged,
        fmt::format("the point has {} numbers in place of {}", point.size(), m_header.columns.size()));
    return false;
}

void ScanReader::read_footer(std::string_view line) {
    const auto footer = footer_from(line);
    if (!footer) return end(ScanState::Damaged, "this is no footer: " + excerpt(line));
    if (footer->points != m_verdict.points)
        return end(ScanState::Damaged, fmt::format("the footer tells of {} points, {} stand before it",
                                                   footer->points, m_verdict.points));
    if (footer->crc != m_crc)
        return end(
            ScanState::Damaged,
            fmt::format("the footer has checksum {:08x}, what stands before it {:08x}", footer->crc, m_crc));
    end(footer->whole ? ScanState::Whole : ScanState::Cut, footer->reason);
    std::string_view more;
    if (m_lines.next(more) != BoundedLines::Kind::End)
        end(ScanState::Damaged, "something stands behind the footer: " + excerpt(more));
}

void ScanReader::end(ScanState state, const std::string& why) {
    m_ended = true;
    m_verdict.state = state;
    m_verdict.line = m_lines.line();
    m_verdict.byte = m_lines.byte();
    m_verdict.why = why;
}

ScanVerdict verify_scan(const std::string& file) {
    ScanReader reader(file);
    std::vector<double> point;
    while (reader.next(point)) {
    }
    return reader.verdict();
}

const char* word_of(ScanState state) {
    switch (state) {
        case ScanState::Whole:
            return "whole";
        case ScanState::Cut:
            return "cut";
        case ScanState::Damaged:
            return "damaged";
        case ScanState::NoScan:
            break;
    }
    return "no scan file";
}

}  // namespace zxhost
