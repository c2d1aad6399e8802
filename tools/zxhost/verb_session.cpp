#include <CLI/CLI.hpp>
#include <memory>

#include "session.h"
#include "verbs.h"

namespace zxhost {

void add_session(CLI::App& app, Program& program) {
    const auto options = std::make_shared<SessionOptions>();
    CLI::App* const verb = app.add_subcommand(
        "session", "Measure a ring from start to end, and compare it with what is known of it");
    verb->add_option("--truth", options->truth,
                     "description file of the simulated machine, with its [workpiece]");
    verb->add_option("--out", options->out, "directory for ring.csv and ring.svg")->capture_default_str();
    verb->add_option("--centre", options->nominal.centre, "nominal centre in mm: X Y Z")
        ->expected(3)
        ->delimiter(',');
    verb->add_option("--radius", options->nominal.radius, "nominal radius in mm")->check(CLI::PositiveNumber);
    verb->add_option("--start", options->nominal.start, "start angle in degrees")->capture_default_str();
    verb->add_option("--sweep", options->nominal.sweep, "angle to measure in degrees")->capture_default_str();
    verb->add_option("--speed", options->nominal.speed, "speed of the scan in mm/s; 0 is the machine's own")
        ->capture_default_str();
    verb->add_option("--clearance", options->clearance, "distance from the ring for the approach in mm")
        ->check(CLI::NonNegativeNumber)
        ->capture_default_str();
    verb->footer("example: zxhost --host 127.0.0.1 session --truth machines/round4.ini --out out");
    verb->callback([&program, options] {
        program.verb = [&program, options](const Streams& streams) {
            Session(program.settings, streams, *options).run();
        };
    });
}

}  // namespace zxhost
