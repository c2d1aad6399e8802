// The driver's records of an axis and of a component or option.
//
// Pointers to them stay valid until the driver is destroyed. An axis record is updated in place when the
// machine's capabilities change; docs/threads.md says when.
#pragma once

#include <cstdint>
#include <set>
#include <string>

struct MMachAxisInfo {
    std::string name;
    std::uint32_t flags = 0;  // MMACH_AXIS_... bits
    double number1 = 0.0;     // number1 to number3 of the client's CAxis
    double number2 = 0.0;
    double number3 = 0.0;
    double number4 = 0.0;  // number5 of the CAxis
    double number5 = 0.0;  // number4 of the CAxis
    double step = 0.0;
    std::set<double> values;  // the allowed values of an axis whose step is zero
};

// Do the records describe the same axis? Only the fields that count for its kind are compared: two inactive
// axes of one name are equal, limits count for bounded axes, allowed values for axes without a step.
bool operator==(const MMachAxisInfo& a, const MMachAxisInfo& b);

// MMachAxisInfo::flags
enum : std::uint32_t {
    MMACH_AXIS_KIND_3 = 1,        // kind of the CAxis is 3
    MMACH_AXIS_KIND_0_2 = 2,      // kind is 0 or 2
    MMACH_AXIS_UNBOUNDED = 4,     // number4 and number5 are both zero, and kind is 1 or 2
    MMACH_AXIS_BOUNDED = 8,       // number4 and number5 are both non-zero
    MMACH_AXIS_INACTIVE = 16,     // kind is 4
    MMACH_AXIS_ROTARY_NAME = 32,  // the name is one of c, ha, hb, hc, ka, kb
    MMACH_AXIS_ON_KEYPAD = 64     // bounded, and on the keypad list
};

struct MMachComponentInfo {
    std::string name;
    std::string version;
    std::int32_t state = 0;  // 3 a component of the machine, 1 the driver's own, 0 an option
};
