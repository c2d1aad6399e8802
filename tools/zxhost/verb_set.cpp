#include "list_verb.h"
#include "mmachabstract.h"
#include "positions.h"
#include "targets.h"
#include "verb_host.h"

namespace zxhost {
namespace {

void set(const Settings& settings, const Streams& streams, const std::vector<std::string>& texts) {
    const std::map<std::string, double> values = parse_values(texts);
    std::vector<std::string> axes;
    for (const auto& [axis, value] : values) axes.push_back(axis);
    VerbHost host(settings, streams);
    host.run(
        {.name = "set", .class_name = MMachSetCommand::ClassName(), .make = [&](MOutputChannel* channel) {
             return host.machine().NewMMachSetCommand(channel, values);
         }});
    show_positions(host, axes);
}

}  // namespace

void add_set(CLI::App& app, Program& program) {
    add_list_verb(app, program,
                  {.name = "set",
                   .description = "Write values of axes and pseudo-axes, without a motion",
                   .example = "zxhost set speed=20 scanstep=0.1",
                   .argument = "AXIS=VALUE",
                   .argument_help = "as in: speed=20 scanstep=0.1",
                   .needs_one = true},
                  set);
}

}  // namespace zxhost
