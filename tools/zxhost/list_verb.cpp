#include "list_verb.h"

#include <CLI/CLI.hpp>
#include <memory>

namespace zxhost {

void add_list_verb(CLI::App& app, Program& program, const ListVerb& verb, RunListVerb run) {
    const auto list = std::make_shared<std::vector<std::string>>();
    CLI::App* const part = app.add_subcommand(verb.name, verb.description);
    if (verb.argument) {
        CLI::Option* const option = part->add_option(verb.argument, *list, verb.argument_help);
        option->required(verb.needs_one);
    }
    part->footer(std::string("example: ") + verb.example);
    part->callback([&program, list, run] {
        program.verb = [&program, list, run](const Streams& streams) {
            run(program.settings, streams, *list);
        };
    });
}

CLI::App& add_verb_group(CLI::App& app, const char* name, const char* description) {
    CLI::App* const group = app.add_subcommand(name, description);
    group->require_subcommand(1);
    return *group;
}

}  // namespace zxhost
