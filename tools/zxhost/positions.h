// Where axes stand.
#pragma once

#include <string>
#include <vector>

#include "mmachaxistargets.h"

class MMachAbstract;

namespace zxhost {

class VerbHost;

// All axes of the machine that are active, by name.
std::vector<std::string> active_axes(MMachAbstract& machine);

std::vector<std::string> names_of(const MMachAxisTargets& targets);

// "x 12.500  y -3.000" in the units of the axes.
std::string positions_text(MMachAbstract& machine, const std::vector<std::string>& axes);

// Asks the machine and shows the rows.
void show_positions(VerbHost& host, const std::vector<std::string>& axes);
void show_values(VerbHost& host, const std::vector<std::string>& axes, const std::vector<double>& values);

}  // namespace zxhost
