// zxhost probesystems, and zxhost probesystem load|unload|define|delete.
#include <CLI/CLI.hpp>
#include <cmath>
#include <iterator>
#include <nlohmann/json.hpp>

#include "exit_status.h"
#include "known_names.h"
#include "list_verb.h"
#include "mmachabstract.h"
#include "number_text.h"
#include "verb_host.h"

namespace zxhost {
namespace {

using List = std::vector<std::string>;

struct SystemId {
    std::string name;
    long id = 0;
};

[[noreturn]] void wrong_usage(const std::string& text, const char* form) {
    throw HostError(ExitStatus::WrongUsage, text, std::string("write: zxhost probesystem ") + form);
}

SystemId parse_system(const List& words, const char* form) {
    if (words.size() < 2) wrong_usage("the name of a probe system and an id are expected", form);
    const auto id = whole_number_from(words[1]);
    if (!id) wrong_usage("'" + printable(words[1]) + "' is not the id of a probe system", form);
    return {words[0], *id};
}

SystemId parse_only_system(const List& words, const char* form) {
    const SystemId system = parse_system(words, form);
    if (words.size() > 2) wrong_usage("'" + printable(words[2]) + "' is one word too many", form);
    return system;
}

MMachProbesystemDefinition parse_definition(const List& words) {
    constexpr const char* form = "define NAME ID [NUMBER ...]";
    const SystemId system = parse_system(words, form);
    MMachProbesystemDefinition definition{system.name, static_cast<std::int32_t>(system.id), {}};
    const std::size_t count = words.size() - 2;
    if (count > std::size(definition.values)) wrong_usage("a probe system has six numbers at most", form);
    for (std::size_t i = 0; i < count; ++i) {
        const auto number = number_from(words[i + 2]);
        if (!number || !std::isfinite(*number))
            wrong_usage("'" + printable(words[i + 2]) + "' is not a finite number", form);
        definition.values[i] = *number;
    }
    return definition;
}

struct SystemFacts {
    List names;  // that the machine supports
    std::vector<CProbesystemEntry> entries;
    bool is_loaded = false;
    SystemId loaded;
    MMachProbesystemType type;
};

List supported_names(MMachAbstract& machine) {
    List names;
    for (const std::string* name = machine.GetFirstSupportedProbesystem(); name;
         name = machine.GetNextSupportedProbesystem())
        names.push_back(*name);
    return names;
}

SystemFacts system_facts(VerbHost& host) {
    MMachAbstract& machine = host.machine();
    check_has(machine.HasProbesystems(), "probe systems");
    return host.ask("the list of probe systems", [&] {
        SystemFacts facts;
        facts.names = supported_names(machine);
        facts.entries = machine.ListProbesystems("", 0);
        facts.is_loaded = machine.IsProbesystemLoaded();
        if (!facts.is_loaded) return facts;
        facts.loaded = {machine.GetActiveProbesystemName(), machine.GetActiveProbesystemIdNum()};
        facts.type = machine.GetActiveProbesystemType();
        return facts;
    });
}

Json loaded_json(const SystemFacts& facts) {
    if (!facts.is_loaded) return {};
    Json json{{"name", facts.loaded.name}, {"id", facts.loaded.id}, {"type", facts.type.type}};
    const bool has_first = facts.type.type == 2 || facts.type.type == 3;
    const bool has_all = facts.type.type == 3;
    json["a"] = has_first ? Json(facts.type.a) : Json();
    json["b"] = has_all ? Json(facts.type.b) : Json();
    json["c"] = has_first ? Json(facts.type.c) : Json();
    json["d"] = has_all ? Json(facts.type.d) : Json();
    return json;
}

Json entry_row(const SystemFacts& facts, const CProbesystemEntry& entry) {
    return {{"name", entry.name},
            {"id", entry.id},
            {"numbers", {entry.x1, entry.x2, entry.x3, entry.x4, entry.x5, entry.x6}},
            {"loaded", facts.is_loaded && facts.loaded.name == entry.name && facts.loaded.id == entry.id}};
}

// A system without an id has a row too: it can be defined.
Json system_rows(const SystemFacts& facts, const List& wanted) {
    Json rows = Json::array();
    for (const std::string& name : wanted.empty() ? facts.names : wanted) {
        const std::size_t before = rows.size();
        for (const CProbesystemEntry& entry : facts.entries)
            if (entry.name == name) rows.push_back(entry_row(facts, entry));
        if (rows.size() == before)
            rows.push_back({{"name", name}, {"id", nullptr}, {"numbers", nullptr}, {"loaded", false}});
    }
    return rows;
}

void write_systems(VerbHost& host, const SystemFacts& facts, const Json& rows) {
    write_table(host.out(),
                {{"name", "probe system"}, {"id", "id"}, {"numbers", "numbers", 4}, {"loaded", "loaded"}},
                rows);
    if (!facts.is_loaded) {
        host.out() << "\nloaded: none\n";
        return;
    }
    const Json loaded = loaded_json(facts);
    host.out() << "\n";
    write_table(host.out(),
                {{"name", "loaded"},
                 {"id", "id"},
                 {"type", "type"},
                 {"a", "a"},
                 {"b", "b"},
                 {"c", "c", 4},
                 {"d", "d", 4}},
                Json::array({loaded}));
}

void show_systems(VerbHost& host, const List& wanted) {
    const SystemFacts facts = system_facts(host);
    check_known({"probe system", facts.names, "probesystems"}, wanted);
    const Json rows = system_rows(facts, wanted);
    if (host.wants_json())
        write_json(host.out(), {{"loaded", loaded_json(facts)}, {"probesystems", rows}});
    else
        write_systems(host, facts, rows);
}

// Says which system, or which id of it, isn't known, and what there is.
void check_known_system(VerbHost& host, const SystemId& wanted) {
    if (!host.machine().HasProbesystems()) return;
    const SystemFacts facts = system_facts(host);
    check_known({"probe system", facts.names, "probesystems"}, {wanted.name});
    KnownNames ids{"id of probe system '" + printable(wanted.name) + "'", {}, "probesystems"};
    for (const CProbesystemEntry& entry : facts.entries)
        if (entry.name == wanted.name) ids.names.push_back(std::to_string(entry.id));
    check_known(ids, {std::to_string(wanted.id)});
}

// A part of `probesystem` whose command takes a name and an id, which must be defined.
template <class Command>
void add_system_verb(CLI::App& group, Program& program, const ListVerb& verb, const char* form,
                     Command* (MMachAbstract::*make)(MOutputChannel*, const std::string&, long)) {
    const std::string name = std::string("probesystem ") + verb.name;
    add_list_verb(group, program, verb,
                  [=](const Settings& settings, const Streams& streams, const List& words) {
                      const SystemId system = parse_only_system(words, form);
                      VerbHost host(settings, streams);
                      run_known(host,
                                {.name = name,
                                 .class_name = Command::ClassName(),
                                 .make =
                                     [&](MOutputChannel* channel) {
                                         return (host.machine().*make)(channel, system.name, system.id);
                                     }},
                                [&] { check_known_system(host, system); });
                      show_systems(host, {});
                  });
}

void probesystems(const Settings& settings, const Streams& streams, const List& names) {
    VerbHost host(settings, streams);
    show_systems(host, names);
}

void unload(const Settings& settings, const Streams& streams, const List&) {
    VerbHost host(settings, streams);
    host.run({.name = "probesystem unload",
              .class_name = MMachProbesystemUnloadCommand::ClassName(),
              .make = [&](MOutputChannel* channel) {
                  return host.machine().NewMMachProbesystemUnloadCommand(channel);
              }});
    show_systems(host, {});
}

void define(const Settings& settings, const Streams& streams, const List& words) {
    const MMachProbesystemDefinition definition = parse_definition(words);
    VerbHost host(settings, streams);
    run_known(
        host,
        {.name = "probesystem define",
         .class_name = MMachProbesystemDefineCommand::ClassName(),
         .make =
             [&](MOutputChannel* channel) {
                 return host.machine().NewMMachProbesystemDefineCommand(channel, definition);
             }},
        [&] {
            if (host.machine().HasProbesystems())
                check_known({"probe system", system_facts(host).names, "probesystems"}, {definition.name});
        });
    show_systems(host, {definition.name});
}

}  // namespace

void add_probesystems(CLI::App& app, Program& program) {
    add_list_verb(
        app, program,
        {.name = "probesystems",
         .description = "Show the probe systems that the machine supports, their ids, and which is loaded",
         .example = "zxhost probesystems",
         .argument = "NAME",
         .argument_help = "only these; none means all"},
        probesystems);
}

void add_probesystem(CLI::App& app, Program& program) {
    CLI::App& group = add_verb_group(app, "probesystem", "Load, define and delete probe systems");
    add_system_verb<MMachProbesystemLoadCommand>(group, program,
                                                 {.name = "load",
                                                  .description = "Load a probe system",
                                                  .example = "zxhost probesystem load \"Fixed head\" 1",
                                                  .argument = "NAME",
                                                  .argument_help = "its name and id",
                                                  .needs_one = true},
                                                 "load NAME ID",
                                                 &MMachAbstract::NewMMachProbesystemLoadCommand);
    add_list_verb(
        group, program,
        {.name = "unload", .description = "Unload the probe system", .example = "zxhost probesystem unload"},
        unload);
    add_list_verb(group, program,
                  {.name = "define",
                   .description = "Define an id of a probe system; numbers that aren't told are 0",
                   .example = "zxhost probesystem define \"Fixed head\" 2 0 0 120 0 0 90",
                   .argument = "NAME",
                   .argument_help = "its name, the id, and up to six numbers",
                   .needs_one = true},
                  define);
    add_system_verb<MMachProbesystemDeleteCommand>(group, program,
                                                   {.name = "delete",
                                                    .description = "Forget an id of a probe system",
                                                    .example = "zxhost probesystem delete \"Fixed head\" 2",
                                                    .argument = "NAME",
                                                    .argument_help = "its name and id",
                                                    .needs_one = true},
                                                   "delete NAME ID",
                                                   &MMachAbstract::NewMMachProbesystemDeleteCommand);
}

}  // namespace zxhost
