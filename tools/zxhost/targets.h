// Axes and targets as they stand on the command line.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "mmachaxistargets.h"

namespace zxhost {

// Which forms a verb takes beside NAME=VALUE, which all take.
enum class TargetForms {
    Absolute,           // no other
    Relative,           // NAME+=VALUE
    RelativeAndLimits,  // NAME+=VALUE, NAME=min, NAME=max
    RelativeAndNames    // NAME+=VALUE, and NAME alone: an axis without a target
};

// All of these throw HostError (wrong usage) for a text that they can't read, a number that isn't finite,
// and an axis named twice.
MMachAxisTargets parse_targets(const std::vector<std::string>& texts, TargetForms forms);
std::map<std::string, double> parse_values(const std::vector<std::string>& texts);
AxisSet parse_axis_set(const std::vector<std::string>& names);
std::vector<std::string> parse_axis_list(const std::vector<std::string>& names);

}  // namespace zxhost
