#include "session.h"

#include <fmt/format.h>

#include <chrono>
#include <cmath>
#include <nlohmann/json.hpp>
#include <utility>

#include "axes_table.h"
#include "axis_labels.h"
#include "exit_status.h"
#include "machine_facts.h"
#include "mmachabstract.h"
#include "number_text.h"
#include "output_file.h"
#include "positions.h"
#include "ring_picture.h"
#include "ring_report.h"
#include "scan_run.h"
#include "targets.h"

namespace zxhost {
namespace {

Settings talkative(Settings settings) {
    settings.progress = true;
    settings.lines = true;
    return settings;
}

// The tale goes where a person reads it: beside the report for programs, else in one stream with it.
Streams tale(const Settings& settings, const Streams& streams) {
    if (settings.format == Format::AsJson)
        return {streams.err, streams.err, streams.err_is_watched, streams.err_is_watched};
    return {streams.out, streams.out, streams.out_is_watched, streams.out_is_watched};
}

std::optional<KnownRing> known_ring(const SessionOptions& options) {
    if (options.truth.empty()) return std::nullopt;
    return read_known_ring(options.truth);
}

// What isn't given is the known ring in whole millimetres: a drawing's numbers.
MMachCircle nominal_circle(CircleOptions circle, const std::optional<KnownRing>& known) {
    if (!known && (circle.centre.size() != 3 || circle.radius == 0.0))
        throw HostError(ExitStatus::WrongUsage, "the session doesn't know where the ring is",
                        "give --truth FILE, or --centre X Y Z and --radius R");
    if (circle.centre.empty()) circle.centre = {std::round(known->centre.x), std::round(known->centre.y)};
    if (circle.radius == 0.0) circle.radius = std::round(known->radius);
    return circle_record(circle, known ? known->height : 0.0);
}

std::string target(const char* axis, double value) { return fmt::format("{}={}", axis, value); }

std::string joined(const std::vector<std::string>& texts) {
    std::string all;
    for (const std::string& text : texts) all += (all.empty() ? "" : " ") + text;
    return all;
}

}  // namespace

Session::Session(const Settings& settings, const Streams& streams, SessionOptions options)
    : m_options(std::move(options)),
      m_known(known_ring(m_options)),
      m_circle(nominal_circle(m_options.nominal, m_known)),
      m_result(streams.out),
      m_host(talkative(settings), tale(settings, streams)),
      m_prose(m_host.out()) {}

void Session::run() {
    if (!m_host.settings().rehearsal) make_output_directory(m_options.out);
    introduce();
    go_to_start();
    measure();
    leave();
    report();
}

void Session::introduce() {
    const MachineFacts facts = m_host.ask("info", [&] { return facts_of(m_host.machine()); });
    m_machine = machine_text(m_host.machine());
    heading("Machine");
    m_prose << printable(one_line(facts)) << ", at " << printable(m_host.address()) << "\n";
    heading("Axes");
    Json rows = axis_rows(m_host.machine());
    for (Json& row : rows)
        row["value"] = m_host.machine().GetAxisValue(row["axis"].get<std::string>().c_str());
    m_host.poll();
    write_axes(m_prose, rows);
    for (const char* axis : {"x", "y", "z"})
        if (!m_host.machine().IsAxisDefined(axis))
            throw HostError(ExitStatus::MachineError, std::string("this machine has no axis '") + axis + "'",
                            "a ring needs x, y and z: choose another machine");
}

void Session::go_to_start() {
    MMachAbstract& machine = m_host.machine();
    const std::vector<std::string> all = active_axes(machine);
    heading("Commands");
    command("init",
            {.name = "init",
             .class_name = MMachInitCommand::ClassName(),
             .make = [&](MOutputChannel* channel) { return machine.NewMMachInitCommand(channel, {}); },
             .progress = [&] { return positions_text(machine, all); }});
    std::vector<std::string> start = aside();
    // The part is described as it lies with its turning axis at zero.
    if (m_known && machine.IsAxisActive(m_known->spindle))
        start.push_back(target(m_known->spindle.c_str(), 0.0));
    move(start);
    move({target("z", m_circle.parameters[2])});
    move({target("x", start_x(m_circle)), target("y", start_y(m_circle))});
}

// The start of the circle, and the clearance away from the ring.
std::vector<std::string> Session::aside() const {
    const double* const centre = m_circle.parameters;
    const double outside = 1.0 + m_options.clearance / m_circle.parameters[3];
    return {target("x", centre[0] + (start_x(m_circle) - centre[0]) * outside),
            target("y", centre[1] + (start_y(m_circle) - centre[1]) * outside)};
}

void Session::measure() {
    MMachAbstract& machine = m_host.machine();
    const std::vector<std::string> data{"x", "y", "z", "time"};
    command("scandata " + joined(data), {.name = "scandata",
                                         .class_name = MMachScandataCommand::ClassName(),
                                         .make = [&](MOutputChannel* channel) {
                                             return machine.NewMMachScandataCommand(channel, data);
                                         }});
    m_time = time_text();
    const double* const circle = m_circle.parameters;
    const std::string line = fmt::format("scancircle centre {} {} {} radius {} start {} sweep {}", circle[0],
                                         circle[1], circle[2], circle[3], circle[4], circle[5]);
    std::optional<ScanWriter> csv;
    if (!m_host.settings().rehearsal)
        csv.emplace(file("ring.csv"),
                    ScanHeader{m_machine, probe_text(machine), m_time, line, data, units_of(machine, data)});
    const auto scan = [&] {
        command(line,
                {.name = "scancircle",
                 .class_name = MMachScancircleCommand::ClassName(),
                 .make =
                     [&](MOutputChannel* channel) {
                         return machine.NewMMachScancircleCommand(channel, m_circle);
                     },
                 .take = draining<MMachScancircleCommand>({[&](const std::vector<double>& point) {
                                                               csv->add(point);
                                                               if (point.size() >= 2)
                                                                   m_points.push_back({point[0], point[1]});
                                                           },
                                                           [&] { csv->flush(); }}),
                 .progress = [&] { return std::to_string(m_points.size()) + " points"; }});
    };
    if (csv)
        fill_scan_file(*csv, scan);
    else
        scan();
}

// Away from the part first, then up, then home.
void Session::leave() {
    MMachAbstract& machine = m_host.machine();
    move(aside());
    move({"z=max"});
    const std::vector<std::string> all = active_axes(machine);
    command("movehome",
            {.name = "movehome",
             .class_name = MMachMovehomeCommand::ClassName(),
             .make = [&](MOutputChannel* channel) { return machine.NewMMachMovehomeCommand(channel); },
             .progress = [&] { return positions_text(machine, all); }});
}

void Session::report() {
    const auto fit = fit_ring(m_points);
    if (!fit)
        throw HostError(ExitStatus::MachineError,
                        fmt::format("no circle goes through the {} points of the scan", m_points.size()),
                        "scan more of the ring, with --sweep 360");
    write_picture(*fit);
    write_report(*fit);
    if (!within_limits(ring_rows(*fit, m_known)))
        throw HostError(ExitStatus::MachineError, "the measured ring is not the known one",
                        "is the machine's description the one that the machine was started with?");
}

void Session::write_picture(const RingFit& fit) {
    RingPicture picture;
    picture.title =
        fmt::format("Ring, radius {:.4f} mm: {:.2f} µm from round", fit.radius, fit.peak_to_valley * 1e3);
    picture.subtitle = m_machine + " · " + m_time;
    picture.points = m_points;
    picture.fit = fit;
    if (m_known) picture.known_deviation = [this](double angle) { return m_known->deviation(angle); };
    picture.numbers = ring_numbers(fit, m_points.size(), m_known);
    std::ofstream out = open_output(file("ring.svg"));
    write_ring_picture(out, picture);
    close_output(out, file("ring.svg"));
}

void Session::write_report(const RingFit& fit) {
    const Json rows = ring_rows(fit, m_known);
    heading("Result");
    m_prose << m_points.size() << " points of a ring, least-squares circle:\n\n";
    write_ring_table(m_prose, rows);
    if (m_known)
        m_prose << fmt::format("\n{} the known ring, measured with a probing noise of {:.3g} µm (1σ).\n",
                               within_limits(rows) ? "This is" : "This is NOT", m_known->noise * 1000.0);
    m_prose << "\nfiles: " << printable(file("ring.csv")) << ", " << printable(file("ring.svg")) << std::endl;
    if (m_host.wants_json())
        write_json(m_result, {{"machine", m_machine},
                              {"time", m_time},
                              {"points", m_points.size()},
                              {"ring", rows},
                              {"within", within_limits(rows)},
                              {"files", {file("ring.csv"), file("ring.svg")}}});
}

void Session::heading(const std::string& text) {
    m_prose << "\n" << text << "\n" << std::string(text.size(), '=') << "\n";
}

void Session::command(const std::string& line, const Action& action) {
    m_prose << "> " << printable(line) << std::endl;
    const auto start = std::chrono::steady_clock::now();
    m_host.run(action);
    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
    m_prose << fmt::format("  done in {:.2f} s", took.count()) << std::endl;
}

void Session::move(const std::vector<std::string>& texts) {
    MMachAbstract& machine = m_host.machine();
    const MMachAxisTargets targets = parse_targets(texts, TargetForms::RelativeAndLimits);
    const std::vector<std::string> axes = names_of(targets);
    command("move " + joined(texts),
            {.name = "move",
             .class_name = MMachMoveCommand::ClassName(),
             .make = [&](MOutputChannel* channel) { return machine.NewMMachMoveCommand(channel, targets); },
             .progress = [&] { return positions_text(machine, axes); }});
}

}  // namespace zxhost
