#include <algorithm>
#include <nlohmann/json.hpp>

#include "axes_table.h"
#include "exit_status.h"
#include "list_verb.h"
#include "machine_facts.h"
#include "mmachabstract.h"
#include "number_text.h"
#include "targets.h"
#include "verb_host.h"

namespace zxhost {
namespace {

void check_known(const Json& rows, const std::vector<std::string>& names) {
    for (const std::string& name : names)
        if (std::none_of(rows.begin(), rows.end(), [&](const Json& row) { return row["axis"] == name; }))
            throw HostError(ExitStatus::MachineError, "this machine has no axis '" + printable(name) + "'",
                            "see all of its axes with: zxhost axes");
}

Json chosen(const Json& rows, const std::vector<std::string>& names) {
    Json result = Json::array();
    for (const Json& row : rows)
        if (names.empty() || std::find(names.begin(), names.end(), row["axis"]) != names.end())
            result.push_back(row);
    return result;
}

void axes(const Settings& settings, const Streams& streams, const std::vector<std::string>& names) {
    parse_axis_list(names);
    VerbHost host(settings, streams);
    const Json all = axis_rows(host.machine());
    check_known(all, names);
    Json rows = chosen(all, names);
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
