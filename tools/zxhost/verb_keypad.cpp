// zxhost keypad list|active|enable|disable.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <nlohmann/json.hpp>

#include "known_names.h"
#include "list_verb.h"
#include "mmachabstract.h"
#include "settle.h"
#include "targets.h"
#include "verb_host.h"

namespace zxhost {
namespace {

using List = std::vector<std::string>;

List walk(MMachAbstract& machine, const char* (MMachAbstract::*first)(),
          const char* (MMachAbstract::*next)()) {
    List names;
    for (const char* name = (machine.*first)(); name; name = (machine.*next)()) names.emplace_back(name);
    return names;
}

struct KeypadFacts {
    List axes;
    AxisSet active;  // the keypad has them
};

AxisSet active_on_keypad(MMachAbstract& machine) {
    const List names =
        walk(machine, &MMachAbstract::GetFirstActiveKeypadAxis, &MMachAbstract::GetNextActiveKeypadAxis);
    return {names.begin(), names.end()};
}

KeypadFacts keypad_facts(VerbHost& host) {
    MMachAbstract& machine = host.machine();
    check_has(machine.HasKeypad(), "keypad");
    return host.ask("the keypad's axes", [&] {
        return KeypadFacts{
            walk(machine, &MMachAbstract::GetFirstKeypadAxis, &MMachAbstract::GetNextKeypadAxis),
            active_on_keypad(machine)};
    });
}

enum class Shown { All, Active };

void show_keypad(VerbHost& host, Shown shown) {
    const KeypadFacts facts = keypad_facts(host);
    AxisSet axes(facts.axes.begin(), facts.axes.end());
    axes.insert(facts.active.begin(), facts.active.end());
    Json rows = Json::array();
    for (const std::string& axis : axes)
        if (const bool is_active = facts.active.contains(axis); is_active || shown == Shown::All)
            rows.push_back({{"axis", axis}, {"active", is_active}});
    host.show({{"axis", "axis"}, {"active", "keypad has it"}}, rows);
}

// Does the driver's picture have these axes on the keypad, or off it?
bool is_switched(VerbHost& host, const AxisSet& axes, bool on) {
    const AxisSet active = host.ask("the keypad's axes", [&] { return active_on_keypad(host.machine()); });
    return std::all_of(axes.begin(), axes.end(),
                       [&](const std::string& axis) { return active.contains(axis) == on; });
}

template <class Command>
void add_switch(CLI::App& group, Program& program, const ListVerb& verb,
                Command* (MMachAbstract::*make)(MOutputChannel*, const AxisSet&), bool on) {
    const std::string name = std::string("keypad ") + verb.name;
    add_list_verb(
        group, program, verb, [=](const Settings& settings, const Streams& streams, const List& names) {
            const AxisSet axes = parse_axis_set(names);
            VerbHost host(settings, streams);
            run_known(
                host,
                {.name = name,
                 .class_name = Command::ClassName(),
                 .make = [&](MOutputChannel* channel) { return (host.machine().*make)(channel, axes); }},
                [&] {
                    check_known({"keypad axis", keypad_facts(host).axes, "keypad list"}, names);
                });
            settle(host, [&] { return is_switched(host, axes, on); });
            show_keypad(host, Shown::All);
        });
}

void list(const Settings& settings, const Streams& streams, const List&) {
    VerbHost host(settings, streams);
    show_keypad(host, Shown::All);
}

void active(const Settings& settings, const Streams& streams, const List&) {
    VerbHost host(settings, streams);
    show_keypad(host, Shown::Active);
}

}  // namespace

void add_keypad(CLI::App& app, Program& program) {
    CLI::App& group = add_verb_group(app, "keypad", "The manual keypad: which axes it may drive, and does");
    add_list_verb(group, program,
                  {.name = "list",
                   .description = "Show the axes that the keypad may drive, and which of them it has",
                   .example = "zxhost keypad list"},
                  list);
    add_list_verb(group, program,
                  {.name = "active",
                   .description = "Show the axes that the keypad has",
                   .example = "zxhost keypad active"},
                  active);
    add_switch<MMachKeypadEnableCommand>(group, program,
                                         {.name = "enable",
                                          .description = "Give axes to the keypad, all of its axes or some",
                                          .example = "zxhost keypad enable x z",
                                          .argument = "AXIS",
                                          .argument_help = "names; none means all"},
                                         &MMachAbstract::NewMMachKeypadEnableCommand, true);
    add_switch<MMachKeypadDisableCommand>(
        group, program,
        {.name = "disable",
         .description = "Take axes back from the keypad, all of its axes or some",
         .example = "zxhost keypad disable",
         .argument = "AXIS",
         .argument_help = "names; none means all"},
        &MMachAbstract::NewMMachKeypadDisableCommand, false);
}

}  // namespace zxhost
