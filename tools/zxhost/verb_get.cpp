#include "list_verb.h"
#include "mmachabstract.h"
#include "positions.h"
#include "targets.h"
#include "verb_host.h"

namespace zxhost {
namespace {

void get(const Settings& settings, const Streams& streams, const std::vector<std::string>& names) {
    const std::vector<std::string> axes = parse_axis_list(names);
    VerbHost host(settings, streams);
    std::vector<double> values;
    host.run(
        {.name = "get",
         .class_name = MMachGetCommand::ClassName(),
         .make = [&](MOutputChannel* channel) { return host.machine().NewMMachGetCommand(channel, axes); },
         .take = [&](MMachCommand& command) { values = static_cast<MMachGetCommand&>(command).m_values; }});
    show_values(host, axes, values);
}

}  // namespace

void add_get(CLI::App& app, Program& program) {
    add_list_verb(app, program,
                  {.name = "get",
                   .description = "Read the values of axes and pseudo-axes",
                   .example = "zxhost get x z speed",
                   .argument = "AXIS",
                   .argument_help = "names, as in: x y speed",
                   .needs_one = true},
                  get);
}

}  // namespace zxhost
