// zxhost spin list|active|enable|disable.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <nlohmann/json.hpp>

#include "known_names.h"
#include "list_verb.h"
#include "mmachabstract.h"
#include "settle.h"
#include "spin_axes.h"
#include "targets.h"
#include "verb_host.h"

namespace zxhost {
namespace {

using List = std::vector<std::string>;
using Speeds = std::map<std::string, double>;

List spin_axes(MMachAbstract& machine) {
    List names;
    for (const char* name = machine.GetFirstSpinAxis(); name; name = machine.GetNextSpinAxis())
        names.emplace_back(name);
    return names;
}

Speeds turning_axes(MMachAbstract& machine) {
    Speeds speeds;
    double speed = 0.0;
    for (const char* name = machine.GetFirstActiveSpinAxis(&speed); name;
         name = machine.GetNextActiveSpinAxis(&speed))
        speeds[name] = speed;
    return speeds;
}

enum class Shown { All, Active };

void show_spin(VerbHost& host, Shown shown) {
    check_has(host.machine().HasSpin(), "spin axes");
    const Speeds speeds = turning_axes(host.machine());
    const List list = spin_axes(host.machine());
    AxisSet axes(list.begin(), list.end());
    for (const auto& [axis, speed] : speeds) axes.insert(axis);
    Json rows = Json::array();
    for (const std::string& axis : axes) {
        const auto found = speeds.find(axis);
        const bool is_active = found != speeds.end();
        if (is_active || shown == Shown::All)
            rows.push_back(
                {{"axis", axis}, {"active", is_active}, {"value", is_active ? Json(found->second) : Json()}});
    }
    host.poll();
    host.show({{"axis", "axis"}, {"active", "turns"}, {"value", "value", 4}}, rows);
}

void run_spin(VerbHost& host, const Action& action, const List& names) {
    run_known(host, action, [&] {
        check_known({"spin axis", spin_axes(host.machine()), "spin list"}, names);
    });
}

void enable(const Settings& settings, const Streams& streams, const List& texts) {
    const std::map<std::string, bool> axes = parse_spin_axes(texts);
    VerbHost host(settings, streams);
    List names;
    for (const auto& [axis, is_forward] : axes) names.push_back(axis);
    run_spin(host,
             {.name = "spin enable",
              .class_name = MMachSpinEnableCommand::ClassName(),
              .make =
                  [&](MOutputChannel* channel) {
                      return host.machine().NewMMachSpinEnableCommand(channel, axes);
                  }},
             names);
    settle(host, [&] {
        const Speeds speeds = turning_axes(host.machine());
        return std::all_of(axes.begin(), axes.end(), [&](const auto& axis) {
            const auto found = speeds.find(axis.first);
            return found != speeds.end() && (found->second > 0.0) == axis.second;
        });
    });
    show_spin(host, Shown::All);
}

void disable(const Settings& settings, const Streams& streams, const List& names) {
    const AxisSet axes = parse_axis_set(names);
    VerbHost host(settings, streams);
    run_spin(host,
             {.name = "spin disable",
              .class_name = MMachSpinDisableCommand::ClassName(),
              .make =
                  [&](MOutputChannel* channel) {
                      return host.machine().NewMMachSpinDisableCommand(channel, axes);
                  }},
             names);
    settle(host, [&] {
        const Speeds speeds = turning_axes(host.machine());
        return axes.empty() ? speeds.empty()
                            : std::none_of(axes.begin(), axes.end(),
                                           [&](const std::string& axis) { return speeds.contains(axis); });
    });
    show_spin(host, Shown::All);
}

void list(const Settings& settings, const Streams& streams, const List&) {
    VerbHost host(settings, streams);
    show_spin(host, Shown::All);
}

void active(const Settings& settings, const Streams& streams, const List&) {
    VerbHost host(settings, streams);
    show_spin(host, Shown::Active);
}

}  // namespace

void add_spin(CLI::App& app, Program& program) {
    CLI::App& group = add_verb_group(app, "spin", "Spindles: which axes can turn by themselves, and do");
    add_list_verb(group, program,
                  {.name = "list",
                   .description = "Show the axes that can spin, and which of them turn",
                   .example = "zxhost spin list"},
                  list);
    add_list_verb(group, program,
                  {.name = "active",
                   .description = "Show the axes that turn, with a negative value in reverse",
                   .example = "zxhost spin active"},
                  active);
    add_list_verb(group, program,
                  {.name = "enable",
                   .description = "Let axes turn",
                   .example = "zxhost spin enable c sp=-",
                   .argument = "AXIS",
                   .argument_help = "AXIS or AXIS=+ to turn forward, AXIS=- to turn in reverse",
                   .needs_one = true},
                  enable);
    add_list_verb(group, program,
                  {.name = "disable",
                   .description = "Let all axes, or some, come to rest",
                   .example = "zxhost spin disable c",
                   .argument = "AXIS",
                   .argument_help = "names; none means all"},
                  disable);
}

}  // namespace zxhost
