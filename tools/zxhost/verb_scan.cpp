#include <CLI/CLI.hpp>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>

#include "axis_labels.h"
#include "circle_options.h"
#include "mmachabstract.h"
#include "number_text.h"
#include "scan_results.h"
#include "scan_run.h"
#include "targets.h"
#include "verb_host.h"
#include "verbs.h"

namespace zxhost {
namespace {

struct ScanOptions {
    std::vector<std::string> targets;
    CircleOptions circle;
    std::vector<std::string> data{"x", "y", "z", "time"};
    std::string csv;
    ScanResults results;
};

// Keeps the points for the table, or writes them to the file as they come.
class PointStore {
public:
    PointStore(VerbHost& host, const ScanOptions& options, const std::string& what) {
        if (options.csv.empty() || host.settings().rehearsal) return;
        m_file.emplace(options.csv,
                       ScanHeader{machine_text(host.machine()), probe_text(host.machine()), time_text(), what,
                                  options.data, units_of(host.machine(), options.data)});
    }

    PointSink sink() {
        if (!m_file) return {[this](const std::vector<double>& point) { m_points.push_back(point); }};
        return {[this](const std::vector<double>& point) { m_file->add(point); },
                [this] { m_file->flush(); }};
    }

    // Runs the scan that fills it.
    void fill(const std::function<void()>& scan) {
        if (m_file)
            fill_scan_file(*m_file, scan);
        else
            scan();
    }

    void show(VerbHost& host, const std::vector<std::string>& names, const ScanResults& results) {
        if (m_file) {
            show_file(host, make_results(m_file->file(), results, host.err()));
        } else if (host.wants_json()) {
            write_json(
                host.out(),
                {{"columns", names}, {"units", units_of(host.machine(), names)}, {"points", m_points}});
        } else {
            write_table(host.out(), columns(labels_of(host.machine(), names)), rows(names));
        }
    }

private:
    void show_file(VerbHost& host, const Json& results) {
        Json row{{"points", m_file->points()}, {"file", m_file->file()}};
        if (host.wants_json()) row.update(results);
        host.show({{"points", "points"}, {"file", "file"}}, Json::array({row}));
        if (host.wants_json() || (results["files"].empty() && !results.contains("fit"))) return;
        host.out() << "\n";
        write_results(host.out(), results);
    }

    static std::vector<Column> columns(const std::vector<AxisLabel>& labels) {
        std::vector<Column> result{{"point", "point"}};
        for (const AxisLabel& label : labels) result.push_back({label.name, head_text(label), 4});
        return result;
    }

    Json rows(const std::vector<std::string>& names) const {
        Json result = Json::array();
        for (const std::vector<double>& point : m_points) {
            Json row{{"point", result.size() + 1}};
            for (std::size_t i = 0; i < names.size() && i < point.size(); ++i) row[names[i]] = point[i];
            result.push_back(std::move(row));
        }
        return result;
    }

    std::optional<ScanWriter> m_file;
    std::vector<std::vector<double>> m_points;
};

template <class Scan>
void scan(VerbHost& host, const ScanOptions& options, const HostLoop::MakeCommand& make, const char* name) {
    select_scan_data(host, options.data);
    PointStore store(host, options, name);
    store.fill([&] { run_scan<Scan>(host, name, make, store.sink()); });
    store.show(host, options.data, options.results);
}

void scan_line(const Program& program, const Streams& streams, const ScanOptions& options) {
    const MMachAxisTargets targets = parse_targets(options.targets, TargetForms::RelativeAndNames);
    parse_axis_list(options.data);
    VerbHost host(program.settings, streams);
    scan<MMachScanCommand>(
        host, options,
        [&](MOutputChannel* channel) { return host.machine().NewMMachScanCommand(channel, targets); },
        "scan");
}

void scan_circle(const Program& program, const Streams& streams, const ScanOptions& options) {
    circle_record(options.circle, 0.0);  // wrong usage shows before the machine is asked
    parse_axis_list(options.data);
    VerbHost host(program.settings, streams);
    const MMachCircle circle = circle_record(options.circle, host.machine().GetAxisValue("z"));
    scan<MMachScancircleCommand>(
        host, options,
        [&](MOutputChannel* channel) { return host.machine().NewMMachScancircleCommand(channel, circle); },
        "scancircle");
}

void add_output_options(CLI::App& verb, ScanOptions& options) {
    verb.add_option("--data", options.data, "what each point holds: axis names, time, deflection")
        ->delimiter(',')
        ->capture_default_str();
    CLI::Option* const csv =
        verb.add_option("--csv", options.csv, "write the points to this scan file as they arrive");
    add_export_options(verb, options.results);
    add_picture_options(verb, options.results);
    for (const char* name : {"--ply", "--xyz", "--picture", "--fit", "--deviations", "--axes"})
        verb.get_option(name)->needs(csv);
}

}  // namespace

void add_scan(CLI::App& app, Program& program) {
    const auto options = std::make_shared<ScanOptions>();
    CLI::App* const verb =
        app.add_subcommand("scan", "Measure along a line, or along a circle, on the workpiece");
    verb->add_option(
        "TARGET", options->targets,
        "AXIS=VALUE, AXIS+=VALUE from where it stands, or AXIS alone to take part without a target");
    add_output_options(*verb, *options);
    verb->footer("example: zxhost scan x=30 --data x,y,z,time --csv line.csv");

    CLI::App* const circle =
        verb->add_subcommand("circle", "Measure along a circular arc in the plane of x and y");
    add_circle_options(*circle, options->circle);
    add_output_options(*circle, *options);
    circle->footer("example: zxhost scan circle --centre 10 -5 20 --radius 25 --csv ring.csv");
    circle->callback([&program, options] {
        program.verb = [&program, options](const Streams& streams) {
            scan_circle(program, streams, *options);
        };
    });
    add_scan_files(*verb, program);
    verb->callback([&program, options, verb] {
        if (!verb->get_subcommands().empty()) return;
        if (options->targets.empty()) throw CLI::RequiredError("TARGET");
        program.verb = [&program, options](const Streams& streams) { scan_line(program, streams, *options); };
    });
}

}  // namespace zxhost
