#include "positions.h"

#include <cstddef>
#include <nlohmann/json.hpp>

#include "axis_labels.h"
#include "mmachabstract.h"
#include "number_text.h"
#include "verb_host.h"

namespace zxhost {
namespace {

Json position_rows(const std::vector<AxisLabel>& axes, const std::vector<double>& values) {
    Json rows = Json::array();
    for (std::size_t i = 0; i < axes.size(); ++i)
        rows.push_back({{"axis", axes[i].name},
                        {"value", i < values.size() ? Json(values[i]) : Json()},
                        {"unit", axes[i].unit}});
    return rows;
}

}  // namespace

std::vector<std::string> active_axes(MMachAbstract& machine) {
    std::vector<std::string> axes;
    for (const MMachAxisInfo* axis = machine.GetFirstAxisInfo(); axis; axis = machine.GetNextAxisInfo())
        if (!(axis->flags & MMACH_AXIS_INACTIVE)) axes.push_back(axis->name);
    return axes;
}

std::vector<std::string> names_of(const MMachAxisTargets& targets) {
    std::vector<std::string> axes;
    for (const auto& [name, target] : targets.m_targets) axes.push_back(name);
    axes.insert(axes.end(), targets.m_axes.begin(), targets.m_axes.end());
    return axes;
}

std::string positions_text(MMachAbstract& machine, const std::vector<std::string>& axes) {
    std::string text;
    for (const std::string& axis : axes)
        text += (text.empty() ? "" : "  ") + printable(axis) + " " +
                fixed_text(machine.GetAxisValue(axis.c_str()), 3);
    return text;
}

void show_positions(VerbHost& host, const std::vector<std::string>& axes) {
    std::vector<double> values;
    for (const std::string& axis : axes) values.push_back(host.machine().GetAxisValue(axis.c_str()));
    host.poll();  // values that are unknown because the machine is gone shall not look like a result
    show_values(host, axes, values);
}

void show_values(VerbHost& host, const std::vector<std::string>& axes, const std::vector<double>& values) {
    host.show({{"axis", "axis"}, {"value", "value", 4}, {"unit", "unit"}},
              position_rows(labels_of(host.machine(), axes), values));
}

}  // namespace zxhost
