#include <nlohmann/json.hpp>

#include "known_names.h"
#include "list_verb.h"
#include "machine_facts.h"
#include "mmachabstract.h"
#include "verb_host.h"

namespace zxhost {
namespace {

// MMachComponentInfo::state in words.
const char* kind_of(std::int32_t state) {
    switch (state) {
        case 0:
            return "option";
        case 1:
            return "driver";
        default:
            return "machine";
    }
}

using Next = const MMachComponentInfo* (MMachAbstract::*)();

void add_rows(Json& rows, MMachAbstract& machine, Next first, Next next) {
    for (const MMachComponentInfo* info = (machine.*first)(); info; info = (machine.*next)())
        rows.push_back({{"name", info->name},
                        {"version", info->version},
                        {"of", kind_of(info->state)},
                        {"state", info->state}});
}

Json all_rows(MMachAbstract& machine) {
    Json rows = Json::array();
    add_rows(rows, machine, &MMachAbstract::GetFirstComponentInfo, &MMachAbstract::GetNextComponentInfo);
    add_rows(rows, machine, &MMachAbstract::GetFirstOptionInfo, &MMachAbstract::GetNextOptionInfo);
    return rows;
}

void components(const Settings& settings, const Streams& streams, const std::vector<std::string>& names) {
    VerbHost host(settings, streams);
    const Json all = host.ask("the list of components", [&] { return all_rows(host.machine()); });
    KnownNames known{"component", {}, "components"};
    for (const Json& row : all) known.names.push_back(row["name"]);
    check_known(known, names);
    host.show({{"name", "component"}, {"version", "version"}, {"of", "of the"}, {"state", "state"}},
              chosen_rows(all, "name", names));
}

}  // namespace

void add_components(CLI::App& app, Program& program) {
    add_list_verb(
        app, program,
        {.name = "components",
         .description = "Show what the machine and the driver are made of, and the machine's options",
         .example = "zxhost components",
         .argument = "NAME",
         .argument_help = "only these; none means all"},
        components);
}

}  // namespace zxhost
