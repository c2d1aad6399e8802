#include <nlohmann/json.hpp>

#include "list_verb.h"
#include "machine_facts.h"
#include "verb_host.h"

namespace zxhost {
namespace {

void write_facts(VerbHost& host, const MachineFacts& facts) {
    const Json rows{{{"what", "machine"}, {"is", facts.name}},
                    {{"what", "revision"}, {"is", facts.revision}},
                    {{"what", "serial number"}, {"is", facts.serial}},
                    {{"what", "connection"}, {"is", host.address()}},
                    {{"what", "simulated"}, {"is", facts.simulated}},
                    {{"what", "initialized"}, {"is", facts.initialized}}};
    write_table(host.out(), {{"what", "machine"}, {"is", ""}}, rows);
    host.out() << "\n";
    write_table(host.out(), {{"name", "component"}, {"version", "version"}}, facts.components);
    host.out() << "\n";
    write_table(host.out(), {{"name", "option"}, {"version", "version"}}, facts.options);
    host.out() << "\ncommands: ";
    for (std::size_t i = 0; i < facts.commands.size(); ++i)
        host.out() << (i ? ", " : "") << facts.commands[i].get<std::string>();
    host.out() << "\n";
}

void info(const Settings& settings, const Streams& streams, const std::vector<std::string>&) {
    VerbHost host(settings, streams);
    const MachineFacts facts = host.ask("info", [&] { return facts_of(host.machine()); });
    host.poll();
    if (!host.wants_json()) return write_facts(host, facts);
    write_json(host.out(), {{"name", facts.name},
                            {"revision", facts.revision},
                            {"serial", facts.serial},
                            {"connection", host.address()},
                            {"simulated", facts.simulated},
                            {"initialized", facts.initialized},
                            {"components", facts.components},
                            {"options", facts.options},
                            {"commands", facts.commands}});
}

}  // namespace

void add_info(CLI::App& app, Program& program) {
    add_list_verb(app, program,
                  {.name = "info",
                   .description = "Show what the machine is: name, revision, components, options, commands",
                   .example = "zxhost --host 127.0.0.1 info"},
                  info);
}

}  // namespace zxhost
