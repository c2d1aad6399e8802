#include <nlohmann/json.hpp>

#include "axes_table.h"
#include "known_names.h"
#include "list_verb.h"
#include "machine_facts.h"
#include "mmachabstract.h"
#include "targets.h"
#include "verb_host.h"

namespace zxhost {
namespace {

void axes(const Settings& settings, const Streams& streams, const std::vector<std::string>& names) {
    parse_axis_list(names);
    VerbHost host(settings, streams);
    const Json all = axis_rows(host.machine());
    check_known(known_axes(host.machine()), names);
    Json rows = chosen_rows(all, "axis", names);
    for (Json& row : rows) row["value"] = host.machine().GetAxisValue(row["axis"].get<std::string>().c_str());
    host.poll();
    if (host.wants_json())
        write_json(host.out(), rows);
    else
        write_axes(host.out(), rows);
}

}  // namespace

void add_axes(CLI::App& app, Program& program) {
    add_list_verb(app, program,
                  {.name = "axes",
                   .description = "Show the axes: what they are, their numbers, their values",
                   .example = "zxhost axes x c",
                   .argument = "AXIS",
                   .argument_help = "names; none means all"},
                  axes);
}

}  // namespace zxhost
