#include "list_verb.h"
#include "mmachabstract.h"
#include "positions.h"
#include "targets.h"
#include "verb_host.h"

namespace zxhost {
namespace {

void move(const Settings& settings, const Streams& streams, const std::vector<std::string>& texts) {
    const MMachAxisTargets targets = parse_targets(texts, TargetForms::RelativeAndLimits);
    const std::vector<std::string> axes = names_of(targets);
    VerbHost host(settings, streams);
    host.run(
        {.name = "move",
         .class_name = MMachMoveCommand::ClassName(),
         .make =
             [&](MOutputChannel* channel) { return host.machine().NewMMachMoveCommand(channel, targets); },
         .progress = [&] { return positions_text(host.machine(), axes); }});
    show_positions(host, axes);
}

}  // namespace

void add_move(CLI::App& app, Program& program) {
    add_list_verb(
        app, program,
        {.name = "move",
         .description = "Drive axes to targets, together",
         .example = "zxhost move x=12.5 z+=-3 y=max",
         .argument = "TARGET",
         .argument_help =
             "AXIS=VALUE, AXIS+=VALUE from where it stands, AXIS=min or AXIS=max for a limit of travel",
         .needs_one = true},
        move);
}

}  // namespace zxhost
