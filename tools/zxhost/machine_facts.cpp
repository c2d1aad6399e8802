#include "machine_facts.h"

#include <algorithm>
#include <array>
#include <functional>
#include <nlohmann/json.hpp>

#include "axis_labels.h"
#include "mmachabstract.h"
#include "number_text.h"

namespace zxhost {
namespace {

using Next = const MMachComponentInfo* (MMachAbstract::*)();

Json entries(MMachAbstract& machine, Next first, Next next) {
    Json rows = Json::array();
    for (const MMachComponentInfo* info = (machine.*first)(); info; info = (machine.*next)())
        rows.push_back({{"name", info->name}, {"version", info->version}});
    return rows;
}

bool has_simulation(const Json& rows) {
    return std::any_of(rows.begin(), rows.end(), [](const Json& row) { return row["name"] == "simulation"; });
}

struct KnownCommand {
    const char* class_name;
    const char* name;
};

constexpr std::array known_commands{KnownCommand{"MMachGetCommand", "get"},
                                    KnownCommand{"MMachInitCommand", "init"},
                                    KnownCommand{"MMachKeypadDisableCommand", "keypad disable"},
                                    KnownCommand{"MMachKeypadEnableCommand", "keypad enable"},
                                    KnownCommand{"MMachModuloCommand", "modulo"},
                                    KnownCommand{"MMachMoveCommand", "move"},
                                    KnownCommand{"MMachMovebaseCommand", "movebase"},
                                    KnownCommand{"MMachMovepolyCommand", "movepoly"},
                                    KnownCommand{"MMachMovecircleCommand", "movecircle"},
                                    KnownCommand{"MMachMoveconeCommand", "movecone"},
                                    KnownCommand{"MMachMovehomeCommand", "movehome"},
                                    KnownCommand{"MMachMovezeroCommand", "movezero"},
                                    KnownCommand{"MMachProbeChangeCommand", "probe change"},
                                    KnownCommand{"MMachProbeDefineCommand", "probe define"},
                                    KnownCommand{"MMachProbeDeleteCommand", "probe delete"},
                                    KnownCommand{"MMachProbeLoadCommand", "probe load"},
                                    KnownCommand{"MMachProbeOffsetCommand", "probe offset"},
                                    KnownCommand{"MMachProbeUnloadCommand", "probe unload"},
                                    KnownCommand{"MMachProbesystemDefineCommand", "probesystem define"},
                                    KnownCommand{"MMachProbesystemDeleteCommand", "probesystem delete"},
                                    KnownCommand{"MMachProbesystemLoadCommand", "probesystem load"},
                                    KnownCommand{"MMachProbesystemUnloadCommand", "probesystem unload"},
                                    KnownCommand{"MMachReceiveCommand", "receive"},
                                    KnownCommand{"MMachScancircleCommand", "scancircle"},
                                    KnownCommand{"MMachScanconeCommand", "scancone"},
                                    KnownCommand{"MMachScanCommand", "scan"},
                                    KnownCommand{"MMachScanbaseCommand", "scanbase"},
                                    KnownCommand{"MMachScandataCommand", "scandata"},
                                    KnownCommand{"MMachScanpointCommand", "scanpoint"},
                                    KnownCommand{"MMachScanpolyCommand", "scanpoly"},
                                    KnownCommand{"MMachSendCommand", "send"},
                                    KnownCommand{"MMachSetCommand", "set"},
                                    KnownCommand{"MMachSpinEnableCommand", "spin enable"},
                                    KnownCommand{"MMachSpinDisableCommand", "spin disable"},
                                    KnownCommand{"MMachWobbleCommand", "wobble"}};

Json enabled_commands(MMachAbstract& machine) {
    Json names = Json::array();
    for (const KnownCommand& command : known_commands)
        if (machine.IsCommandEnabled(command.class_name)) names.push_back(command.name);
    return names;
}

Json flag_words(std::uint32_t flags) {
    struct Word {
        std::uint32_t flag;
        const char* word;
    };
    // In the words of docs/protocol.md: two of the numbers are speed and acceleration, without which an axis
    // has no drive.
    constexpr std::array words{
        Word{MMACH_AXIS_KIND_3, "value"},       Word{MMACH_AXIS_KIND_0_2, "turning"},
        Word{MMACH_AXIS_UNBOUNDED, "undriven"}, Word{MMACH_AXIS_BOUNDED, "driven"},
        Word{MMACH_AXIS_INACTIVE, "inactive"},  Word{MMACH_AXIS_ROTARY_NAME, "rotary"},
        Word{MMACH_AXIS_ON_KEYPAD, "keypad"},
    };
    Json named = Json::array();
    for (const Word& word : words)
        if (flags & word.flag) named.push_back(word.word);
    return named;
}

Json axis_row(const MMachAxisInfo& axis) {
    return {{"axis", axis.name},       {"unit", unit_of(axis)},
            {"flags", axis.flags},     {"is", flag_words(axis.flags)},
            {"number1", axis.number1}, {"number2", axis.number2},
            {"number3", axis.number3}, {"number4", axis.number4},
            {"number5", axis.number5}, {"step", axis.step},
            {"values", axis.values}};
}

}  // namespace

MachineFacts facts_of(MMachAbstract& machine) {
    MachineFacts facts;
    facts.name = machine.GetMachineName();
    facts.revision = machine.GetMachineRevision();
    facts.serial = machine.GetSerialNumber();
    facts.components =
        entries(machine, &MMachAbstract::GetFirstComponentInfo, &MMachAbstract::GetNextComponentInfo);
    facts.options = entries(machine, &MMachAbstract::GetFirstOptionInfo, &MMachAbstract::GetNextOptionInfo);
    facts.commands = enabled_commands(machine);
    facts.simulated = has_simulation(facts.components) || has_simulation(facts.options);
    facts.initialized = machine.IsInitialized();
    return facts;
}

std::string one_line(const MachineFacts& facts) {
    return facts.name + ", revision " + facts.revision + ", serial " + facts.serial +
           (facts.simulated ? ", simulated" : ", a real machine");
}

Json axis_rows(MMachAbstract& machine) {
    Json rows = Json::array();
    for (const MMachAxisInfo* axis = machine.GetFirstAxisInfo(); axis; axis = machine.GetNextAxisInfo())
        rows.push_back(axis_row(*axis));
    return rows;
}

}  // namespace zxhost
