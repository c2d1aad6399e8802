// What a machine is made of. docs/simulator.md tells how an ini file says it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "machine/workpiece.h"

namespace zendrix::sim {

// The numbers are those of the `capabilities` answer.
enum class AxisKind : int {
    spindle = 0,   // turns without end, in degrees
    linear = 1,    // mm
    rotary = 2,    // turns between limits, in degrees
    value = 3,     // neither a length nor an angle: a switch, a pressure, a turret's place
    inactive = 4,  // fitted, but out of use
};

struct AxisDescription {
    std::string name;
    AxisKind kind = AxisKind::linear;
    bool has_limits = false;
    double lower = 0.0;
    double upper = 0.0;
    double resolution = 0.0;
    double speed = 0.0;  // units per second; with 0 speed and acceleration the axis has no drive
    double acceleration = 0.0;
    double step = 0.0;           // between settable positions; 0: only `values`
    std::vector<double> values;  // if step is 0
    double start = 0.0;          // where the axis stands when the machine is switched on
    double home = 0.0;
    double reference = 0.0;  // where its reference mark is
    bool needs_init = false;
    bool on_keypad = false;
    bool can_scan = false;
    bool can_spin = false;
    double spinning = 0.0;  // degrees per second, negative for reverse; 0: stands
};

struct MachineDescription {
    std::string name = "Simulated machine";
    std::string revision = "1.0";
    std::string serial = "SIM-0000";
    bool starts_initialized = false;
    std::map<std::string, std::string> components;  // name to version
    std::map<std::string, std::string> options;
    double speed = 50.0;       // mm/s of motions
    double scan_speed = 20.0;  // mm/s of scans and of probing
    double scan_step = 0.1;    // mm between points
    bool has_probe = false;
    double probing_range = 1.0;  // mm to either side of the nominal path
    std::size_t max_points = 10000000;
    std::uint64_t seed = 1;
    std::vector<AxisDescription> axes;
    WorkpieceDescription workpiece;
};

}  // namespace zendrix::sim
