// From the host's arguments to the client's position lists.
//
// A list borrows the axis names of the argument it was made from, which must outlive it.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "czendrixcom.h"
#include "mmachaxistargets.h"

// The names of a set, in its order.
std::vector<std::string> axis_names(const AxisSet& axes);

// One plain entry per name, with the value 0.
std::vector<Position> plain_positions(const std::vector<std::string>& axes);

// One plain entry per value.
std::vector<Position> plain_positions(const std::map<std::string, double>& values);

// One entry per target, flagged or plain.
std::vector<Position> target_positions(const AxisTargetMap& targets);

// The same, but a flagged target at either end of the range of double stands for that limit of travel.
std::vector<Position> limit_positions(const AxisTargetMap& targets);

// One entry per target of each point, and behind each point a separator: an entry without a name.
std::vector<Position> polygon_positions(const std::vector<AxisTargetMap>& points);

// One entry per target, and behind them one per further axis, which has no target.
std::vector<Position> scan_positions(const MMachAxisTargets& targets);

// Null for a list without entries.
Position* records_or_null(std::vector<Position>& positions);
