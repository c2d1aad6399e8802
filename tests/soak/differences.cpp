#include "differences.h"

#include <cmath>
#include <sstream>

#include "supportedcommands.h"

using zendrix::sim::Axis;
using zendrix::sim::AxisKind;

namespace {

constexpr double wire_precision = 1e-6;  // relative; values travel as text

bool same(double a, double b) { return std::abs(a - b) <= wire_precision * std::max(1.0, std::abs(b)); }

class Comparison {
public:
    template <class Value>
    void equal(const std::string& what, const Value& driver, const Value& machine) {
        if (!(driver == machine)) add(what, driver, machine);
    }
    void similar(const std::string& what, double driver, double machine) {
        if (!same(driver, machine)) add(what, driver, machine);
    }
    std::vector<std::string> lines;

private:
    template <class Value>
    void add(const std::string& what, const Value& driver, const Value& machine) {
        std::ostringstream text;
        text << what << ": driver " << driver << ", machine " << machine;
        lines.push_back(text.str());
    }
};

using Walk = const char* (MMachAbstract::*)();
std::string walk(MMachAbstract& driver, Walk first, Walk next) {
    std::string names;
    for (const char* name = (driver.*first)(); name; name = (driver.*next)())
        names += std::string(name) + " ";
    return names;
}

// The names of the axes with a property, in the order of a walk.
template <class Property>
std::string names_of(const Truth& truth, Property property) {
    std::set<std::string> names;
    for (const Axis& axis : truth.axes) {
        if (property(axis)) names.insert(axis.is.name);
    }
    std::string text;
    for (const std::string& name : names) text += name + " ";
    return text;
}

void compare_axes(Comparison& compare, M2ZendrixMachAbstract& driver, const Truth& truth) {
    bool all_ready = true;
    for (const Axis& axis : truth.axes) {
        const std::string& name = axis.is.name;
        all_ready = all_ready && axis.is_ready();
        const MMachAxisInfo* const info = driver.GetAxisInfo(name);
        compare.equal(name + " is known", info != nullptr, true);
        if (!info) continue;
        compare.equal(name + " is active", driver.IsAxisActive(name), axis.is_active());
        if (!axis.is_active()) continue;
        compare.equal(name + " is in the init list", driver.IsInInitList(name), axis.needs_init());
        if (axis.needs_init()) {
            compare.equal(name + " is initialized", driver.IsAxisInitialized(name), axis.initialized);
        }
        if (axis.spin == 0.0) compare.similar(name, driver.GetAxisValue(name.c_str()), axis.value());
    }
    compare.equal("all is initialized", driver.IsInitialized(), all_ready);
    for (const auto& [name, value] : truth.pseudo_axes) {
        compare.similar(name, driver.GetAxisValue(name.c_str()), value);
    }
}

void compare_lists(Comparison& compare, M2ZendrixMachAbstract& driver, const Truth& truth) {
    compare.equal("keypad",
                  walk(driver, &MMachAbstract::GetFirstKeypadAxis, &MMachAbstract::GetNextKeypadAxis),
                  names_of(truth, [](const Axis& axis) { return axis.is.on_keypad; }));
    compare.equal(
        "active keypad",
        walk(driver, &MMachAbstract::GetFirstActiveKeypadAxis, &MMachAbstract::GetNextActiveKeypadAxis),
        names_of(truth, [](const Axis& axis) { return axis.is_on_hand; }));
    compare.equal("spindles", walk(driver, &MMachAbstract::GetFirstSpinAxis, &MMachAbstract::GetNextSpinAxis),
                  names_of(truth, [](const Axis& axis) { return axis.is.can_spin && axis.is_active(); }));
    std::string turning;
    double value = 0.0;
    for (const char* name = driver.GetFirstActiveSpinAxis(&value); name;
         name = driver.GetNextActiveSpinAxis(&value)) {
        turning += std::string(name) + " ";
        compare.equal(std::string(name) + " turns forward", value > 0.0, truth.axis(name).spin > 0.0);
    }
    compare.equal("turning", turning, names_of(truth, [](const Axis& axis) { return axis.spin != 0.0; }));
}

void compare_probes(Comparison& compare, M2ZendrixMachAbstract& driver, const Truth& truth) {
    compare.equal("probe", driver.GetActiveProbeNum(), static_cast<int>(truth.tip.probe));
    compare.equal("tip", driver.GetActiveTipNum(), static_cast<int>(truth.tip.tip));
    const std::vector<CProbe> probes = driver.ListProbes(0, 0);
    compare.equal("tips", probes.size(), truth.tips.size());
    for (const CProbe& probe : probes) {
        const auto known = truth.tips.find({probe.probe, probe.tip});
        compare.equal("tip is known", known != truth.tips.end(), true);
        if (known == truth.tips.end()) continue;
        const double numbers[] = {probe.x1, probe.x2, probe.x3, probe.x4};
        for (std::size_t i = 0; i < 4; ++i) compare.similar("number of a tip", numbers[i], known->second[i]);
    }
}

void compare_probesystems(Comparison& compare, M2ZendrixMachAbstract& driver, const Truth& truth) {
    compare.equal("probe system", driver.GetActiveProbesystemName(), truth.probesystem);
    compare.equal("a probe system is loaded", driver.IsProbesystemLoaded(), !truth.probesystem.empty());
    if (!truth.probesystem.empty()) {
        compare.equal("probe system id", driver.GetActiveProbesystemIdNum(), long{truth.probesystem_id});
    }
    for (const auto& [name, system] : truth.probesystems) {
        compare.equal(name + " is supported", driver.IsProbesystemSupported(name), true);
        compare.equal(name + " ids", driver.ListProbesystems(name, 0).size(), system.ids.size());
        for (const auto& [id, numbers] : system.ids) {
            const auto entries = driver.ListProbesystems(name, id);
            compare.equal(name + " has the id", entries.size(), std::size_t{1});
            if (!entries.empty()) compare.similar(name + " number", entries.front().x1, numbers[0]);
        }
    }
}

void compare_commands(Comparison& compare, M2ZendrixMachAbstract& driver, const Truth& truth) {
    for (const SupportedCommand& command : supported_commands) {
        const std::string word = command.word;
        const bool is_there = word != "probe change" || truth.has_changer;
        compare.equal(word + " is enabled", driver.IsCommandEnabled(command.class_name),
                      is_there && !truth.withdrawn.contains(word));
    }
}

void compare_wobble(Comparison& compare, M2ZendrixMachAbstract& driver, const Truth& truth) {
    if (!truth.wobble) return;
    MMachWobbleParameters parameters;
    driver.GetWobbleParameters(parameters);
    for (std::size_t i = 0; i < 6; ++i) compare.similar("wobble", parameters.values[i], (*truth.wobble)[i]);
}

}  // namespace

std::vector<std::string> differences(M2ZendrixMachAbstract& driver, const Truth& truth) {
    Comparison compare;
    for (const auto part : {compare_axes, compare_lists, compare_probes, compare_probesystems,
                            compare_commands, compare_wobble}) {
        part(compare, driver, truth);
    }
    return compare.lines;
}
