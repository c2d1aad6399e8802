#include "axis_labels.h"

#include "mmachabstract.h"
#include "number_text.h"

namespace zxhost {

std::string head_text(const AxisLabel& label) {
    return label.unit.empty() ? label.name : label.name + " [" + label.unit + "]";
}

std::string unit_of(const MMachAxisInfo& axis) {
    if (axis.flags & MMACH_AXIS_INACTIVE) return std::string(unit_of(axis.name));
    if (axis.flags & MMACH_AXIS_KIND_3) return "";
    return axis.flags & MMACH_AXIS_KIND_0_2 ? "deg" : "mm";
}

AxisLabel label_of(MMachAbstract& machine, const std::string& name) {
    const MMachAxisInfo* const axis = machine.GetAxisInfo(name);
    return {name, axis ? unit_of(*axis) : std::string(unit_of(name))};
}

std::vector<AxisLabel> labels_of(MMachAbstract& machine, const std::vector<std::string>& names) {
    std::vector<AxisLabel> result;
    for (const std::string& name : names) result.push_back(label_of(machine, name));
    return result;
}

std::vector<std::string> units_of(MMachAbstract& machine, const std::vector<std::string>& names) {
    std::vector<std::string> result;
    for (const std::string& name : names) result.push_back(label_of(machine, name).unit);
    return result;
}

}  // namespace zxhost
