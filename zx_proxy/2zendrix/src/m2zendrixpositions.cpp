#include "m2zendrixpositions.h"

#include <limits>

namespace {

void append_targets(std::vector<Position>& positions, const AxisTargetMap& targets) {
    for (const auto& [axis, target] : targets)
        positions.push_back(
            {axis.c_str(), target.value, target.has_flag ? ZX_POSITION_FLAGGED : ZX_POSITION_PLAIN});
}

std::int32_t limit_flag(const MMachAxisTarget& target) {
    if (!target.has_flag) return ZX_POSITION_PLAIN;
    if (target.value == std::numeric_limits<double>::max()) return ZX_POSITION_HIGHEST;
    if (target.value == std::numeric_limits<double>::lowest()) return ZX_POSITION_LOWEST;
    return ZX_POSITION_FLAGGED;
}

}  // namespace

std::vector<std::string> axis_names(const AxisSet& axes) { return {axes.begin(), axes.end()}; }

std::vector<Position> plain_positions(const std::vector<std::string>& axes) {
    std::vector<Position> positions;
    positions.reserve(axes.size());
    for (const std::string& axis : axes) positions.push_back({axis.c_str(), 0.0, ZX_POSITION_PLAIN});
    return positions;
}

std::vector<Position> plain_positions(const std::map<std::string, double>& values) {
    std::vector<Position> positions;
    positions.reserve(values.size());
    for (const auto& [axis, value] : values) positions.push_back({axis.c_str(), value, ZX_POSITION_PLAIN});
    return positions;
}

std::vector<Position> target_positions(const AxisTargetMap& targets) {
    std::vector<Position> positions;
    positions.reserve(targets.size());
    append_targets(positions, targets);
    return positions;
}

std::vector<Position> limit_positions(const AxisTargetMap& targets) {
    std::vector<Position> positions;
    positions.reserve(targets.size());
    for (const auto& [axis, target] : targets)
        positions.push_back({axis.c_str(), target.value, limit_flag(target)});
    return positions;
}

std::vector<Position> polygon_positions(const std::vector<AxisTargetMap>& points) {
    std::vector<Position> positions;
    for (const AxisTargetMap& point : points) {
        append_targets(positions, point);
        positions.push_back({"", 0.0, ZX_POSITION_FLAGGED});
    }
    return positions;
}

std::vector<Position> scan_positions(const MMachAxisTargets& targets) {
    std::vector<Position> positions;
    positions.reserve(targets.m_targets.size() + targets.m_axes.size());
    append_targets(positions, targets.m_targets);
    for (const std::string& axis : targets.m_axes)
        positions.push_back({axis.c_str(), 0.0, ZX_POSITION_NO_TARGET});
    return positions;
}

Position* records_or_null(std::vector<Position>& positions) {
    return positions.empty() ? nullptr : positions.data();
}
