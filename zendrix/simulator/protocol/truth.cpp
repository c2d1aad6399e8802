#include "protocol/truth.h"

#include "protocol/dataline.h"

namespace zendrix::sim {

namespace {

void append_axes(std::string& out, std::int64_t id, const Machine& machine) {
    for (const Axis& axis : machine.axes()) {
        DataLine(out, id)
            .word("axis")
            .text(axis.is.name)
            .number(static_cast<double>(axis.is.kind))
            .number(axis.value())
            .number(axis.offset)
            .number(axis.initialized)
            .number(axis.is_on_hand)
            .number(axis.spin);
    }
    for (const Machine::Pseudo& pseudo : machine.pseudo_axes()) {
        DataLine(out, id).word("pseudo").text(pseudo.name).number(pseudo.value);
    }
}

void append_probes(std::string& out, std::int64_t id, const ProbeStore& probes) {
    if (!probes.exists()) return;
    for (const auto& [tip, numbers] : probes.tips()) {
        DataLine(out, id).word("tip").number(tip.probe).number(tip.tip).numbers(numbers);
    }
    DataLine(out, id).word("loaded").number(probes.loaded().probe).number(probes.loaded().tip);
    DataLine(out, id).word("changer").number(probes.has_changer());
}

void append_probesystems(std::string& out, std::int64_t id, const ProbesystemStore& systems) {
    if (!systems.exists()) return;
    for (const auto& [name, system] : systems.supported()) {
        DataLine(out, id)
            .word("probesystem")
            .text(name)
            .number(system.kind)
            .number(system.a)
            .number(system.b)
            .number(system.c)
            .number(system.d);
        for (const auto& [number, numbers] : system.ids) {
            DataLine(out, id).word("probesystem-id").text(name).number(number).numbers(numbers);
        }
    }
    DataLine(out, id).word("loaded-probesystem").text(systems.loaded_name()).number(systems.loaded_id());
}

}  // namespace

void append_truth(std::string& out, std::int64_t id, const Machine& machine) {
    DataLine(out, id).word("busy").number(machine.is_busy());
    DataLine(out, id).word("emergency").number(machine.is_in_emergency());
    append_axes(out, id, machine);
    append_probes(out, id, machine.probes());
    append_probesystems(out, id, machine.probesystems());
    if (machine.wobble()) DataLine(out, id).word("wobble").numbers(*machine.wobble());
    for (const std::string& words : machine.withdrawn()) DataLine(out, id).word("withdrawn").text(words);
}

}  // namespace zendrix::sim
