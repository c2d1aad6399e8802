#include "truth.h"

#include <algorithm>

using namespace zendrix::sim;

const Axis& Truth::axis(const std::string& name) const {
    return *std::find_if(axes.begin(), axes.end(), [&](const Axis& axis) { return axis.is.name == name; });
}

Truth truth_of(Server& server) {
    Truth truth;
    server.invoke([&](Hub& hub, Clock& clock) {
        const Machine& machine = hub.machine();
        truth.axes = machine.axes();
        for (const auto& pseudo : machine.pseudo_axes()) truth.pseudo_axes[pseudo.name] = pseudo.value;
        truth.tips = machine.probes().tips();
        truth.tip = machine.probes().loaded();
        truth.probesystems = machine.probesystems().supported();
        truth.probesystem = machine.probesystems().loaded_name();
        truth.probesystem_id = machine.probesystems().loaded_id();
        truth.wobble = machine.wobble();
        truth.withdrawn.insert(machine.withdrawn().begin(), machine.withdrawn().end());
        truth.has_changer = machine.probes().has_changer();
        truth.is_in_emergency = machine.is_in_emergency();
        truth.time = clock.now();
    });
    return truth;
}
