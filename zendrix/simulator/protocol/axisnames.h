// The machine's axes by what they have.
#pragma once

#include <string>
#include <vector>

#include "machine/machine.h"

namespace zendrix::sim {

template <class Condition>
std::vector<std::string> names_of(const Machine& machine, Condition condition) {
    std::vector<std::string> names;
    for (const Axis& axis : machine.axes()) {
        if (condition(axis)) names.push_back(axis.is.name);
    }
    return names;
}

}  // namespace zendrix::sim
