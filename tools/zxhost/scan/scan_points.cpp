#include "scan_points.h"

#include <fmt/format.h>

#include <algorithm>

#include "exit_status.h"

namespace zxhost {
namespace {

std::string listed(const std::vector<std::string>& names) {
    std::string all;
    for (const std::string& name : names) all += (all.empty() ? "" : ", ") + name;
    return all;
}

}  // namespace

bool is_usable(double number) { return std::abs(number) <= 1e100; }

std::string verdict_text(const std::string& file, const ScanVerdict& verdict) {
    return fmt::format("{}: {} at line {}, byte {}: {}", file, word_of(verdict.state), verdict.line,
                       verdict.byte, verdict.why);
}

void refuse_damaged(const ScanVerdict& verdict, const std::string& file) {
    if (verdict.state == ScanState::NoScan)
        throw HostError(ExitStatus::WrongUsage, verdict_text(file, verdict),
                        "name a scan file, as zxhost scan --csv FILE writes it");
    if (verdict.state == ScanState::Damaged)
        throw HostError(ExitStatus::MachineError, verdict_text(file, verdict),
                        "its numbers can't be trusted: measure again, or take another copy of it");
}

std::vector<std::size_t> columns_of(const ScanReader& scan, const std::string& file,
                                    const std::vector<std::string>& axes) {
    refuse_damaged(scan.verdict(), file);
    std::vector<std::size_t> columns;
    for (const std::string& axis : axes) {
        const auto column = column_of(scan.header(), axis);
        if (!column)
            throw HostError(ExitStatus::WrongUsage, file + " has no column '" + axis + "'",
                            "choose with --axes among: " + listed(scan.header().columns));
        if (std::find(columns.begin(), columns.end(), *column) != columns.end())
            throw HostError(ExitStatus::WrongUsage, "the axis '" + axis + "' is named twice", "");
        columns.push_back(*column);
    }
    return columns;
}

ScanPoints read_points(const std::string& file, const std::vector<std::string>& axes) {
    ScanReader reader(file);
    const std::vector<std::size_t> columns = columns_of(reader, file, axes);
    ScanPoints result;
    result.header = reader.header();
    result.axes = axes;
    for (const std::size_t column : columns) result.units.push_back(reader.header().units[column]);
    std::uint64_t number = 0;
    for (std::vector<double> all; reader.next(all);) {
        ++number;
        Point<3> point{};
        for (std::size_t i = 0; i < columns.size(); ++i) point[i] = all[columns[i]];
        if (!std::all_of(point.begin(), point.end(), is_usable)) {
            ++result.left_out;
            continue;
        }
        result.points.push_back(point);
        result.numbers.push_back(number);
    }
    result.verdict = reader.verdict();
    refuse_damaged(result.verdict, file);
    return result;
}

}  // namespace zxhost
