#include "list_verb.h"
#include "mmachabstract.h"
#include "positions.h"
#include "targets.h"
#include "verb_host.h"

namespace zxhost {
namespace {

void zero(const Settings& settings, const Streams& streams, const std::vector<std::string>& texts) {
    const MMachAxisTargets targets = parse_targets(texts, TargetForms::Relative);
    const std::vector<std::string> axes = names_of(targets);
    VerbHost host(settings, streams);
    host.run({.name = "movezero",
              .class_name = MMachMovezeroCommand::ClassName(),
              .make =
                  [&](MOutputChannel* channel) {
                      return host.machine().NewMMachMovezeroCommand(channel, targets);
                  },
              .progress = [&] { return positions_text(host.machine(), axes); }});
    show_positions(host, axes);
}

}  // namespace

void add_zero(CLI::App& app, Program& program) {
    add_list_verb(app, program,
                  {.name = "zero",
                   .description = "Drive towards targets until the probe touches",
                   .example = "zxhost zero x=10",
                   .argument = "TARGET",
                   .argument_help = "AXIS=VALUE, or AXIS+=VALUE from where it stands",
                   .needs_one = true},
                  zero);
}

}  // namespace zxhost
