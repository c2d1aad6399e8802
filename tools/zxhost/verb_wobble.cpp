// zxhost wobble show|set.
#include <CLI/CLI.hpp>
#include <cmath>
#include <iterator>
#include <nlohmann/json.hpp>

#include "exit_status.h"
#include "list_verb.h"
#include "mmachabstract.h"
#include "number_text.h"
#include "verb_host.h"

namespace zxhost {
namespace {

using List = std::vector<std::string>;

MMachWobbleParameters parse_wobble(const List& texts) {
    MMachWobbleParameters wobble;
    constexpr const char* way_out = "write six numbers, as in: zxhost wobble set 1 0.5 0 0 0 0";
    if (texts.size() != std::size(wobble.values))
        throw HostError(ExitStatus::WrongUsage,
                        "a wobble has six numbers, and not " + std::to_string(texts.size()), way_out);
    for (std::size_t i = 0; i < texts.size(); ++i) {
        const auto number = number_from(texts[i]);
        if (!number || !std::isfinite(*number))
            throw HostError(ExitStatus::WrongUsage, "'" + printable(texts[i]) + "' is not a finite number",
                            way_out);
        wobble.values[i] = *number;
    }
    return wobble;
}

void show_wobble(VerbHost& host) {
    if (!host.machine().IsCommandEnabled(MMachWobbleCommand::ClassName()))
        throw HostError(ExitStatus::MachineError, "this machine has no wobble",
                        "see what it knows with: zxhost info");
    const MMachWobbleParameters wobble = host.ask("the wobble", [&] {
        MMachWobbleParameters parameters;
        host.machine().GetWobbleParameters(parameters);
        return parameters;
    });
    Json rows = Json::array();
    for (const double value : wobble.values) rows.push_back({{"number", rows.size() + 1}, {"value", value}});
    host.show({{"number", "number"}, {"value", "value", 6}}, rows);
}

void show(const Settings& settings, const Streams& streams, const List&) {
    VerbHost host(settings, streams);
    show_wobble(host);
}

void set(const Settings& settings, const Streams& streams, const List& texts) {
    const MMachWobbleParameters wobble = parse_wobble(texts);
    VerbHost host(settings, streams);
    host.run({.name = "wobble",
              .class_name = MMachWobbleCommand::ClassName(),
              .make = [&](MOutputChannel* channel) {
                  return host.machine().NewMMachWobbleCommand(channel, wobble);
              }});
    show_wobble(host);
}

}  // namespace

void add_wobble(CLI::App& app, Program& program) {
    CLI::App& group = add_verb_group(app, "wobble", "The six numbers of the wobble motion");
    add_list_verb(group, program,
                  {.name = "show", .description = "Show them", .example = "zxhost wobble show"}, show);
    add_list_verb(group, program,
                  {.name = "set",
                   .description = "Set all six",
                   .example = "zxhost wobble set 1 0.5 0 0 0 0",
                   .argument = "NUMBER",
                   .argument_help = "six of them, in the machine's order",
                   .needs_one = true},
                  set);
}

}  // namespace zxhost
