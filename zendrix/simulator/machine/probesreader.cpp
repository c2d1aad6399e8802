#include "machine/probesreader.h"

#include <limits>
#include <string_view>

#include "numbers.h"
#include "stl_utilities.h"

namespace zendrix::sim {

namespace {

constexpr double any = 1e9;  // beyond every length of a machine
constexpr double hour = 3600.0;
constexpr std::int64_t max_probe = 1000;
constexpr std::int64_t max_tip = 100;
constexpr std::string_view id_prefix = "id ";

void read_int(IniSection& section, const char* key, std::int32_t& value, std::int64_t low,
              std::int64_t high = std::numeric_limits<std::int32_t>::max()) {
    std::int64_t read = value;
    section.integer(key, read, low, high);
    value = static_cast<std::int32_t>(read);
}

// "P T", both from 1 on.
bool parse_tip(const std::string& text, TipId& id) {
    std::vector<std::string> parts;
    stl_string_tokenize(text, " ", parts);
    std::int64_t probe = 0;
    std::int64_t tip = 0;
    if (parts.size() != 2 || !wire::parse_integer(parts[0], 1, max_probe, probe) ||
        !wire::parse_integer(parts[1], 1, max_tip, tip)) {
        return false;
    }
    id = {static_cast<std::int32_t>(probe), static_cast<std::int32_t>(tip)};
    return true;
}

// `id N=X1 X2 X3 X4 X5 X6`
void read_id(IniSection& section, const std::string& key, ProbesystemDescription& system) {
    std::int64_t id = 0;
    const bool is_id = wire::parse_integer(std::string_view(key).substr(id_prefix.size()), 1,
                                           std::numeric_limits<std::int32_t>::max(), id);
    if (!is_id) section.complain(key, "an id is a whole number from 1 on");
    std::vector<double> numbers;
    section.numbers(key.c_str(), numbers);
    ProbesystemNumbers is{};
    if (numbers.size() != is.size()) section.complain(key, "there are six numbers");
    for (std::size_t i = 0; i < is.size(); ++i) {
        if (!(numbers[i] >= -any && numbers[i] <= any)) section.complain(key, "that is no number of a head");
        is[i] = numbers[i];
    }
    if (!system.ids.try_emplace(static_cast<std::int32_t>(id), is).second) {
        section.complain(key, "this id is there already");
    }
}

}  // namespace

void read_probes(IniSection& section, MachineDescription& machine) {
    ProbesDescription& probes = machine.probes;
    read_int(section, "highest_probe", probes.highest_probe, 1, max_probe);
    read_int(section, "highest_tip", probes.highest_tip, 1, max_tip);
    if ((probes.highest_probe > 0) != (probes.highest_tip > 0)) {
        section.complain("highest_tip", "goes with highest_probe");
    }
    section.flag("changer", probes.has_changer);
    section.number("seconds", probes.seconds, 0.0, hour);
    std::string loaded;
    section.text("loaded", loaded);
    if (!loaded.empty() && !parse_tip(loaded, probes.loaded)) {
        section.complain("loaded", "\"" + loaded + "\" is not PROBE TIP");
    }
}

void read_tip(IniSection& section, const std::string& numbers, MachineDescription& machine) {
    TipId id;
    if (!parse_tip(numbers, id) || id.probe > machine.probes.highest_probe ||
        id.tip > machine.probes.highest_tip) {
        section.complain("", "\"" + numbers + "\" is not PROBE TIP within the highest of [probe]");
    }
    TipNumbers is{};
    section.number("x", is[0], -any, any);
    section.number("y", is[1], -any, any);
    section.number("z", is[2], -any, any);
    section.number("diameter", is[3], 0.0, any);
    if (!machine.probes.tips.try_emplace(id, is).second) section.complain("", "this tip is there already");
}

void read_probesystem(IniSection& section, const std::string& name, MachineDescription& machine) {
    if (name.empty()) section.complain("", "a probe system has a name");
    ProbesystemDescription& system = machine.probesystems.supported[name];
    read_int(section, "kind", system.kind, 1, 2);
    read_int(section, "a", system.a, 0);
    read_int(section, "b", system.b, 0);
    section.number("c", system.c, -any, any);
    section.number("d", system.d, -any, any);
    for (const std::string& key : section.keys()) {
        if (key.starts_with(id_prefix)) read_id(section, key, system);
    }
    if (!section.has("loaded")) return;
    ProbesystemsDescription& all = machine.probesystems;
    if (!all.loaded.empty()) section.complain("loaded", "\"" + all.loaded + "\" is loaded already");
    read_int(section, "loaded", all.loaded_id, 1);
    if (!system.ids.contains(all.loaded_id)) section.complain("loaded", "there is no such id");
    all.loaded = name;
}

void check_probes(const IniSection& section, const MachineDescription& machine) {
    const ProbesDescription& probes = machine.probes;
    if (probes.loaded != TipId() && !probes.tips.contains(probes.loaded)) {
        section.complain("loaded", "there is no such [tip PROBE TIP]");
    }
    if (probes.has_changer && probes.highest_probe == 0) section.complain("changer", "needs highest_probe");
}

}  // namespace zendrix::sim
