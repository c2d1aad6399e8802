// One axis of the machine: what it is and where it stands.
#pragma once

#include <algorithm>
#include <cmath>

#include "machine/description.h"

namespace zendrix::sim {

struct Axis {
    AxisDescription is;
    double position = 0.0;  // of the machine itself, which limits and the workpiece go by
    double offset = 0.0;    // what `set` and `modulo` add to it for everyone outside
    bool initialized = false;
    bool is_on_hand = false;    // enabled on the keypad: the operator drives it, nobody else
    double spin = 0.0;          // degrees per second, negative for reverse; 0: stands
    AxisKind fitted = is.kind;  // what it is while it is in use

    double value() const { return position + offset; }
    bool is_active() const { return is.kind != AxisKind::inactive; }
    bool is_driven() const { return is_active() && is.speed > 0.0 && is.acceleration > 0.0; }
    bool is_length() const { return is.kind == AxisKind::linear; }
    bool needs_init() const { return is.needs_init && is_active(); }
    bool is_ready() const { return initialized || !needs_init(); }

    // May it be sent there? In the machine's own positions.
    bool reaches(double target) const {
        constexpr double slack = 1e-9;  // what adding and taking away an offset may cost
        if (is.has_limits && (target < is.lower - slack || target > is.upper + slack)) return false;
        return is.step != 0.0 || std::any_of(is.values.begin(), is.values.end(), [=](double allowed) {
                   return std::abs(target - allowed) <= slack;
               });
    }
};

}  // namespace zendrix::sim
