// What a number of the machine is: its name, and the unit that it is in.
#pragma once

#include <string>
#include <vector>

class MMachAbstract;
struct MMachAxisInfo;

namespace zxhost {

struct AxisLabel {
    std::string name;
    std::string unit;  // empty: none
};

// "x [mm]", or the name alone.
std::string head_text(const AxisLabel& label);

// "mm", "deg", or nothing for an axis that is neither a length nor an angle; by its name if it is out of use.
std::string unit_of(const MMachAxisInfo& axis);

// As the driver knows the axis; what is no axis, as "time" and "speed", by its name.
AxisLabel label_of(MMachAbstract& machine, const std::string& name);
std::vector<AxisLabel> labels_of(MMachAbstract& machine, const std::vector<std::string>& names);
std::vector<std::string> units_of(MMachAbstract& machine, const std::vector<std::string>& names);

}  // namespace zxhost
