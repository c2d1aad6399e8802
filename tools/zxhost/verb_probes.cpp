// zxhost probes, and zxhost probe load|unload|change|define|delete|offset.
#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

#include "exit_status.h"
#include "known_names.h"
#include "list_verb.h"
#include "mmachabstract.h"
#include "number_text.h"
#include "probe_facts.h"
#include "targets.h"
#include "verb_host.h"

namespace zxhost {
namespace {

using List = std::vector<std::string>;

constexpr const char* tip_form = "its number, and that of the tip";

void check_count(const List& list, std::size_t least, std::size_t most, const char* form) {
    if (list.size() < least || list.size() > most)
        throw HostError(ExitStatus::WrongUsage, "the numbers of a probe and its tip are expected",
                        std::string("write: zxhost ") + form);
}

Json tip_json(Tip tip) { return tip.probe == 0 ? Json() : Json{{"probe", tip.probe}, {"tip", tip.tip}}; }

Json tip_rows(const ProbeFacts& facts, Tip wanted) {
    Json rows = Json::array();
    for (const CProbe& tip : facts.tips)
        if ((wanted.probe == 0 || wanted.probe == tip.probe) && (wanted.tip == 0 || wanted.tip == tip.tip))
            rows.push_back({{"probe", tip.probe},
                            {"tip", tip.tip},
                            {"x", tip.x1},
                            {"y", tip.x2},
                            {"z", tip.x3},
                            {"d", tip.x4},
                            {"loaded", facts.is_loaded(tip)}});
    return rows;
}

void write_probes(VerbHost& host, const ProbeFacts& facts, const Json& rows) {
    write_table(host.out(),
                {{"probe", "probe"},
                 {"tip", "tip"},
                 {"x", "x", 4},
                 {"y", "y", 4},
                 {"z", "z", 4},
                 {"d", "d", 4},
                 {"loaded", "loaded"}},
                rows);
    host.out() << "\nloaded: ";
    if (facts.loaded.probe == 0)
        host.out() << "none";
    else
        host.out() << "probe " << facts.loaded.probe << " with tip " << facts.loaded.tip;
    host.out() << "; highest numbers: probe " << facts.highest.probe << ", tip " << facts.highest.tip << "\n";
}

void show_probes(VerbHost& host, Tip wanted) {
    const ProbeFacts facts = probe_facts(host);
    if (wanted.probe != 0) check_known_tip(facts.tips, wanted);
    const Json rows = tip_rows(facts, wanted);
    if (!host.wants_json()) return write_probes(host, facts, rows);
    write_json(host.out(),
               {{"loaded", tip_json(facts.loaded)}, {"highest", tip_json(facts.highest)}, {"probes", rows}});
}

void probes(const Settings& settings, const Streams& streams, const List& numbers) {
    check_count(numbers, 0, 2, "probes [PROBE [TIP]]");
    const Tip wanted = parse_tip(numbers);
    VerbHost host(settings, streams);
    show_probes(host, wanted);
}

void show_loaded(VerbHost& host) {
    const Tip tip = loaded_tip(host);
    const Json row = tip.probe == 0 ? Json{{"probe", nullptr}, {"tip", nullptr}} : tip_json(tip);
    host.show({{"probe", "loaded probe"}, {"tip", "tip"}}, Json::array({row}));
}

void run_on_tip(VerbHost& host, const Action& action, Tip tip) {
    run_known(host, action, [&] {
        if (host.machine().HasProbes())
            check_known_tip(host.ask("the list of probes", [&] { return host.machine().ListProbes(0, 0); }),
                            tip);
    });
}

// A part of `probe` whose command takes a probe and a tip, which must be defined.
template <class Command>
void add_tip_verb(CLI::App& group, Program& program, const ListVerb& verb,
                  Command* (MMachAbstract::*make)(MOutputChannel*, long, long), std::size_t least_numbers,
                  void (*show)(VerbHost&)) {
    const std::string name = std::string("probe ") + verb.name;
    add_list_verb(group, program, verb,
                  [=](const Settings& settings, const Streams& streams, const List& numbers) {
                      check_count(numbers, least_numbers, 2,
                                  (name + (least_numbers == 2 ? " PROBE TIP" : " PROBE [TIP]")).c_str());
                      const Tip tip = parse_tip(numbers);
                      VerbHost host(settings, streams);
                      run_on_tip(host,
                                 {.name = name,
                                  .class_name = Command::ClassName(),
                                  .make =
                                      [&](MOutputChannel* channel) {
                                          return (host.machine().*make)(channel, tip.probe, tip.tip);
                                      }},
                                 tip);
                      show(host);
                  });
}

void unload(const Settings& settings, const Streams& streams, const List&) {
    VerbHost host(settings, streams);
    host.run({.name = "probe unload",
              .class_name = MMachProbeUnloadCommand::ClassName(),
              .make = [&](MOutputChannel* channel) {
                  return host.machine().NewMMachProbeUnloadCommand(channel);
              }});
    show_loaded(host);
}

std::map<std::string, double> parse_definition(const List& texts) {
    const std::map<std::string, double> values = parse_values(texts);
    for (const auto& [name, value] : values)
        if (name != "x" && name != "y" && name != "z" && name != "d")
            throw HostError(ExitStatus::WrongUsage, "a tip has no '" + printable(name) + "'",
                            "a tip is defined by x, y, z (where it is) and d (its diameter)");
    return values;
}

void define(const Settings& settings, const Streams& streams, const List& words) {
    check_count(words, 2, 6, "probe define PROBE TIP x=VALUE y=VALUE z=VALUE d=VALUE");
    const Tip tip = parse_tip(words);
    const std::map<std::string, double> values = parse_definition({words.begin() + 2, words.end()});
    VerbHost host(settings, streams);
    host.run({.name = "probe define",
              .class_name = MMachProbeDefineCommand::ClassName(),
              .make = [&](MOutputChannel* channel) {
                  return host.machine().NewMMachProbeDefineCommand(channel, tip.probe, tip.tip, values);
              }});
    show_probes(host, {tip.probe, 0});
}

void offset(const Settings& settings, const Streams& streams, const List& texts) {
    const MMachAxisTargets targets = parse_targets(texts, TargetForms::Relative);
    VerbHost host(settings, streams);
    host.run({.name = "probe offset",
              .class_name = MMachProbeOffsetCommand::ClassName(),
              .make = [&](MOutputChannel* channel) {
                  return host.machine().NewMMachProbeOffsetCommand(channel, targets.m_targets);
              }});
    show_probes(host, loaded_tip(host));
}

}  // namespace

void add_probes(CLI::App& app, Program& program) {
    add_list_verb(app, program,
                  {.name = "probes",
                   .description = "Show the probes and tips that are defined, and which of them is loaded",
                   .example = "zxhost probes",
                   .argument = "PROBE",
                   .argument_help = "only this probe; a second number: only this tip of it"},
                  probes);
}

void add_probe(CLI::App& app, Program& program) {
    CLI::App& group = add_verb_group(app, "probe", "Load, change, define and delete probes and their tips");
    add_tip_verb<MMachProbeLoadCommand>(group, program,
                                        {.name = "load",
                                         .description = "Take up a probe; without TIP, with its first tip",
                                         .example = "zxhost probe load 3 1",
                                         .argument = "PROBE",
                                         .argument_help = tip_form,
                                         .needs_one = true},
                                        &MMachAbstract::NewMMachProbeLoadCommand, 1, show_loaded);
    add_tip_verb<MMachProbeChangeCommand>(
        group, program,
        {.name = "change",
         .description = "Put down the loaded probe and take up another one; without TIP, with its first tip",
         .example = "zxhost probe change 4",
         .argument = "PROBE",
         .argument_help = tip_form,
         .needs_one = true},
        &MMachAbstract::NewMMachProbeChangeCommand, 1, show_loaded);
    add_list_verb(
        group, program,
        {.name = "unload", .description = "Put down the loaded probe", .example = "zxhost probe unload"},
        unload);
    add_list_verb(
        group, program,
        {.name = "define",
         .description = "Define a tip of a probe: where it is, and its diameter; what isn't told is 0",
         .example = "zxhost probe define 3 2 x=0 y=0 z=-45 d=3",
         .argument = "PROBE",
         .argument_help = "the numbers of probe and tip, then x=, y=, z= and d= in mm",
         .needs_one = true},
        define);
    add_tip_verb<MMachProbeDeleteCommand>(
        group, program,
        {.name = "delete",
         .description = "Forget a tip of a probe; tip 0 means all of its tips",
         .example = "zxhost probe delete 3 2",
         .argument = "PROBE",
         .argument_help = tip_form,
         .needs_one = true},
        &MMachAbstract::NewMMachProbeDeleteCommand, 2, [](VerbHost& host) { show_probes(host, {}); });
    add_list_verb(group, program,
                  {.name = "offset",
                   .description = "Correct where the loaded tip is",
                   .example = "zxhost probe offset z=-45.02 x+=0.01",
                   .argument = "COORDINATE",
                   .argument_help = "x, y or z: NAME=VALUE, or NAME+=VALUE to add to what it is",
                   .needs_one = true},
                  offset);
}

}  // namespace zxhost
