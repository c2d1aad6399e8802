#include <CLI/CLI.hpp>
#include <memory>

#include "circle_options.h"
#include "mmachabstract.h"
#include "positions.h"
#include "verb_host.h"
#include "verbs.h"

namespace zxhost {
namespace {

void circle(const Program& program, const Streams& streams, const CircleOptions& options) {
    circle_record(options, 0.0);  // wrong usage shows before the machine is asked
    VerbHost host(program.settings, streams);
    const MMachCircle record = circle_record(options, host.machine().GetAxisValue("z"));
    const std::vector<std::string> axes = active_axes(host.machine());
    host.run({.name = "movecircle",
              .class_name = MMachMovecircleCommand::ClassName(),
              .make =
                  [&](MOutputChannel* channel) {
                      return host.machine().NewMMachMovecircleCommand(channel, record);
                  },
              .progress = [&] { return positions_text(host.machine(), axes); }});
    show_positions(host, axes);
}

}  // namespace

void add_circle(CLI::App& app, Program& program) {
    const auto options = std::make_shared<CircleOptions>();
    CLI::App* const verb =
        app.add_subcommand("circle", "Travel along a circular arc in the plane of x and y");
    add_circle_options(*verb, *options);
    verb->footer("example: zxhost circle --centre 0 0 100 --radius 20 --sweep 90 c=45");
    verb->callback([&program, options] {
        program.verb = [&program, options](const Streams& streams) { circle(program, streams, *options); };
    });
}

}  // namespace zxhost
