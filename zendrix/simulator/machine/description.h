// What a machine is made of. docs/simulator.md tells how an ini file says it.
#pragma once

#include <array>
#include <compare>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
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
    double spin_speed = 0.0;  // degrees per second
    double spinning = 0.0;    // from the start, degrees per second, negative for reverse; 0: stands
};

// One tip of one probe; both numbers from 1 on. 0 and 0: none.
struct TipId {
    std::int32_t probe = 0;
    std::int32_t tip = 0;

    friend auto operator<=>(const TipId&, const TipId&) = default;
};
using TipNumbers = std::array<double, 4>;  // x, y, z of the ball's centre, and its diameter, in mm

// The probes that the machine can take up. Without highest numbers there is no choice: one probe for good.
struct ProbesDescription {
    std::int32_t highest_probe = 0;
    std::int32_t highest_tip = 0;
    bool has_changer = false;
    double seconds = 3.0;  // to take one up or put one down
    TipId loaded;
    std::map<TipId, TipNumbers> tips;
};

using ProbesystemNumbers = std::array<double, 6>;

// A kind of probe head that the machine can work with, and the ids under which heads of it are known.
struct ProbesystemDescription {
    std::int32_t kind = 1;  // 1 or 2, as the `probesystem type` answer has them, and so the next four
    std::int32_t a = 0;
    std::int32_t b = 0;
    double c = 0.0;
    double d = 0.0;
    std::map<std::int32_t, ProbesystemNumbers> ids;
};

struct ProbesystemsDescription {
    std::map<std::string, ProbesystemDescription> supported;
    double seconds = 5.0;  // to load or unload one
    std::string loaded;    // empty: none
    std::int32_t loaded_id = 0;
};

// The blocks that the machine keeps, and the bounds of its store.
struct BlocksDescription {
    std::size_t most = 1000;
    std::size_t longest = std::size_t{128} << 20;  // bytes of one
    std::size_t total = std::size_t{512} << 20;    // bytes of all
    double restart = 2.0;                          // seconds to come back with another firmware
    std::map<std::string, std::string> blocks;     // that it begins with, by name
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
    ProbesDescription probes;
    ProbesystemsDescription probesystems;
    std::optional<std::array<double, 6>> wobble;  // without it the machine has none
    WorkpieceDescription workpiece;
    BlocksDescription blocks;
};

}  // namespace zendrix::sim
