// The host's argument records of motions and scans. They are carried to the machine server, not interpreted.
#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <string>

struct MMachAxisTarget {
    double value = 0.0;  // in the units of the axis (mm or degrees)
    bool has_flag = false;
};

using AxisTargetMap = std::map<std::string, MMachAxisTarget>;  // by axis name
using AxisSet = std::set<std::string>;                         // axis names

struct MMachAxisTargets {
    AxisTargetMap m_targets;  // the axes to move, and where to
    AxisSet m_axes;           // further axes named without a target; read by scan and scanpoint only
    std::string text1, text2, text3;
    std::uint64_t extra = 0;
};

// What the numbers of the next two mean is agreed between the host and the server (docs/protocol.md).
struct MMachCircle {
    double parameters[7] = {};
    MMachAxisTargets axes;
};

struct MMachCone {
    double parameters[7] = {};
    MMachAxisTargets axes;
    double more[2] = {};
};

struct MMachWobbleParameters {
    double values[6] = {};
};
