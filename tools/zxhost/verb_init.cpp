#include "list_verb.h"
#include "mmachabstract.h"
#include "positions.h"
#include "targets.h"
#include "verb_host.h"

namespace zxhost {
namespace {

void init(const Settings& settings, const Streams& streams, const std::vector<std::string>& names) {
    const AxisSet axes = parse_axis_set(names);
    VerbHost host(settings, streams);
    const std::vector<std::string> shown = names.empty() ? active_axes(host.machine()) : names;
    host.run(
        {.name = "init",
         .class_name = MMachInitCommand::ClassName(),
         .make = [&](MOutputChannel* channel) { return host.machine().NewMMachInitCommand(channel, axes); },
         .progress = [&] { return positions_text(host.machine(), shown); }});
    show_positions(host, shown);
}

}  // namespace

void add_init(CLI::App& app, Program& program) {
    add_list_verb(app, program,
                  {.name = "init",
                   .description = "Find the reference marks of all axes, or of some",
                   .example = "zxhost init",
                   .argument = "AXIS",
                   .argument_help = "names; none means all"},
                  init);
}

}  // namespace zxhost
