#include "scan_export.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <system_error>

#include "exit_status.h"
#include "output_file.h"
#include "scan_points.h"

namespace zxhost {
namespace {

using Take = std::function<void(const Point<3>&)>;

// Reads the scan's points one by one, without keeping them.
ExportResult for_each_point(const std::string& file, const std::vector<std::string>& axes, const Take& take) {
    ScanReader reader(file);
    const std::vector<std::size_t> columns = columns_of(reader, file, axes);
    ExportResult result;
    for (std::vector<double> all; reader.next(all);) {
        const Point<3> point{all[columns[0]], all[columns[1]], all[columns[2]]};
        const bool usable = std::all_of(point.begin(), point.end(), is_usable);
        ++(usable ? result.points : result.left_out);
        if (usable) take(point);
    }
    refuse_damaged(reader.verdict(), file);
    result.verdict = reader.verdict();
    return result;
}

void need_three(const std::vector<std::string>& axes) {
    if (axes.size() != 3)
        throw HostError(ExitStatus::WrongUsage, "x, y and z of a point need three axes",
                        "name them, as in --axes x,y,z");
}

// What goes to `target` by way of a neighbour of it.
void write_beside(const std::string& target, const std::function<void(std::ostream&)>& write) {
    const std::string part = target + ".part";
    std::error_code error;
    try {
        std::ofstream out = open_output(part);
        write(out);
        close_output(out, part);
    } catch (const HostError&) {
        std::filesystem::remove(part, error);
        throw;
    }
    std::filesystem::rename(part, target, error);
    if (!error) return;
    const std::string why = error.message();
    std::filesystem::remove(part, error);
    throw HostError(ExitStatus::WrongUsage, "the file " + target + " can't be written: " + why,
                    "name a file in a directory where you may write");
}

// A line of its own, of bytes that every reader takes.
std::string comment(const std::string& key, const std::string& value) {
    return "comment " + key + ": " + value + "\n";
}

std::string ply_header(const ScanHeader& header, const std::vector<std::string>& axes,
                       const ExportResult& counts) {
    std::string text = "ply\nformat ascii 1.0\n" + comment("machine", header.machine) +
                       comment("probe", header.probe) + comment("time", header.time) +
                       comment("action", header.action);
    for (std::size_t i = 0; i < 3; ++i)
        text += comment(std::string(1, static_cast<char>('x' + i)),
                        axes[i] + " [" + header.units[*column_of(header, axes[i])] + "]");
    if (counts.verdict.state == ScanState::Cut) text += comment("scan", "cut");
    return text + fmt::format(
                      "element vertex {}\nproperty double x\nproperty double y\nproperty double z\n"
                      "end_header\n",
                      counts.points);
}

void write_point(std::ostream& out, const Point<3>& point) {
    out << fmt::format("{} {} {}\n", point[0], point[1], point[2]);
}

}  // namespace

// The head of the form holds the count, so the file is read twice.
ExportResult export_ply(const std::string& scan_file, const std::string& target,
                        const std::vector<std::string>& axes) {
    need_three(axes);
    const ExportResult counts = for_each_point(scan_file, axes, [](const Point<3>&) {});
    const ScanHeader header = ScanReader(scan_file).header();
    write_beside(target, [&](std::ostream& out) {
        out << ply_header(header, axes, counts);
        const ExportResult again =
            for_each_point(scan_file, axes, [&](const Point<3>& point) { write_point(out, point); });
        if (again.points != counts.points)
            throw HostError(ExitStatus::WrongUsage, "the file " + scan_file + " changed while it was read",
                            "wait for the end of the scan");
    });
    return counts;
}

ExportResult export_xyz(const std::string& scan_file, const std::string& target,
                        const std::vector<std::string>& axes) {
    need_three(axes);
    ExportResult result;
    write_beside(target, [&](std::ostream& out) {
        result = for_each_point(scan_file, axes, [&](const Point<3>& point) { write_point(out, point); });
    });
    return result;
}

}  // namespace zxhost
