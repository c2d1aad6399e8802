// The machine's motions: what a request asks for is checked and laid out as stretches of travel.
#include <cmath>
#include <limits>

#include "machine/machine.h"

namespace zendrix::sim {

namespace {

constexpr double unbounded = std::numeric_limits<double>::infinity();
constexpr double max_sweep = 360000.0;  // degrees of one arc
constexpr double max_speed = 100000.0;  // mm/s along one arc
constexpr std::size_t max_corners = 10000;

void require_finite(std::initializer_list<double> numbers) {
    for (const double number : numbers) {
        if (!std::isfinite(number)) throw Refused{Error::invalid_argument};
    }
}

}  // namespace

// Checks on what the whole machine is doing come after those on the request itself.

void Machine::require_idle() const {
    if (is_busy()) throw Refused{Error::wrong_state};
}

void Machine::require_scanning() const {
    if (!has_scanning()) throw Refused{Error::wrong_state};
    if (m_probes.exists() && !m_probes.is_loaded()) throw Refused{Error::probe_not_loaded};
    for (const std::size_t axis : {m_x, m_y, m_z}) require_ready(axis);
}

void Machine::require_ready(std::size_t axis) const {
    if (!m_axes[axis].is_ready()) throw Refused{Error::not_initialized};
    require_free(axis);
}

void Machine::require_free(std::size_t axis) const {
    if (m_axes[axis].is_on_hand) throw Refused{Error::keypad_enabled};
    if (m_axes[axis].spin != 0.0) throw Refused{Error::wrong_state};
}

Machine::Positions Machine::standing() const {
    Positions positions;
    for (const Axis& axis : m_axes) positions.push_back(axis.position);
    return positions;
}

double Machine::goal_of(std::size_t axis, const wire::Target& target, double from) const {
    const Axis& moved = m_axes[axis];
    double goal = from;
    switch (target.form) {
        case wire::TargetForm::absolute:
            goal = target.value - moved.offset;
            break;
        case wire::TargetForm::relative:
            goal = from + target.value;
            break;
        case wire::TargetForm::none:
            return from;
        case wire::TargetForm::lowest:
            goal = moved.is.has_limits ? moved.is.lower : -unbounded;
            break;
        case wire::TargetForm::highest:
            goal = moved.is.has_limits ? moved.is.upper : unbounded;
            break;
        case wire::TargetForm::end_of_point:
            throw Refused{Error::syntax_invalid};
    }
    const bool is_limit = target.form == wire::TargetForm::lowest || target.form == wire::TargetForm::highest;
    if (!is_limit) require_finite({target.value});
    if (!std::isfinite(goal) || !moved.reaches(goal)) throw Refused{Error::argument_out_of_range};
    return goal;
}

Machine::Positions Machine::reach(Positions from, std::span<const wire::Target> targets, Use use) const {
    std::vector<bool> seen(m_axes.size());
    for (const wire::Target& target : targets) {
        if (target.form == wire::TargetForm::end_of_point) throw Refused{Error::syntax_invalid};
        const std::size_t axis = index(target.name);
        const bool is_usable = m_axes[axis].is_driven() && (use == Use::moving || m_axes[axis].is.can_scan);
        if (!is_usable || seen[axis]) throw Refused{Error::invalid_axis};
        seen[axis] = true;
        if (use == Use::moving && target.form == wire::TargetForm::none)
            throw Refused{Error::missing_argument};
        from[axis] = goal_of(axis, target, from[axis]);
        require_ready(axis);
    }
    return from;
}

std::vector<Machine::Positions> Machine::corners(const Targets& points, Use use) const {
    std::vector<Positions> result;
    Positions here = standing();
    bool has_axis = false;
    const auto is_end = [](const wire::Target& target) {
        return target.form == wire::TargetForm::end_of_point;
    };
    for (auto begin = points.begin(); begin != points.end();) {
        const auto end = std::find_if(begin, points.end(), is_end);
        has_axis = has_axis || begin != end;
        here = reach(here, {begin, end}, use);
        if (result.size() == max_corners) throw Refused{Error::too_many_points};
        result.push_back(here);
        begin = end == points.end() ? end : end + 1;
    }
    if (!has_axis) throw Refused{Error::no_axis_specified};
    return result;
}

Segment Machine::straight(Positions from, Positions to, double speed) const {
    return {m_axes, std::move(from), std::move(to), speed};
}

void Machine::start(Motion motion, Goal goal) {
    require_idle();
    if (m_has_emergency) throw Refused{Error::emergency};
    m_motion = std::move(motion);
    m_goal = goal;
    m_result = Error::none;
    m_points_sent = 0;
    m_has_begun = false;
}

void Machine::start_scan(Motion motion) {
    motion.place_points(m_scan_step);
    if (motion.point_count() > m_description.max_points) throw Refused{Error::too_many_points};
    start(std::move(motion), Goal::travel);
}

void Machine::init(const Names& names) {
    std::vector<std::size_t> chosen;
    if (!names.empty()) chosen = indices(names);
    for (std::size_t i = 0; names.empty() && i < m_axes.size(); ++i) {
        if (m_axes[i].needs_init()) chosen.push_back(i);
    }
    Positions to = standing();
    for (const std::size_t i : chosen) {
        const Axis& axis = m_axes[i];
        if (!axis.needs_init()) throw Refused{Error::invalid_axis};
        require_free(i);
        if (!axis.is_driven()) continue;
        to[i] = axis.is.reference;
        // A spindle's mark comes round once a turn.
        if (axis.is.kind == AxisKind::spindle) to[i] += 360.0 * std::round((axis.position - to[i]) / 360.0);
    }
    Motion motion;
    motion.add(straight(standing(), to, unbounded));
    start(std::move(motion), Goal::initialize);
    m_to_initialize = std::move(chosen);
}

void Machine::home() {
    Positions to = standing();
    for (std::size_t i = 0; i < m_axes.size(); ++i) {
        if (!m_axes[i].is_driven() || m_axes[i].spin != 0.0) continue;
        require_ready(i);
        to[i] = m_axes[i].is.home;
    }
    Motion motion;
    motion.add(straight(standing(), to, m_speed));
    start(std::move(motion), Goal::travel);
}

void Machine::move(const Targets& targets) {
    if (targets.empty()) throw Refused{Error::no_axis_specified};
    Motion motion;
    motion.add(straight(standing(), reach(standing(), targets, Use::moving), m_speed));
    start(std::move(motion), Goal::travel);
}

void Machine::move_to_contact(const Targets& targets) {
    if (targets.empty()) throw Refused{Error::no_axis_specified};
    Segment segment = straight(standing(), reach(standing(), targets, Use::moving), m_scan_speed);
    require_scanning();
    require_idle();
    const std::optional<double> contact = contact_on(segment);
    if (contact) segment.shorten(*contact);
    Motion motion;
    motion.add(std::move(segment));
    start(std::move(motion), Goal::contact);
    m_has_contact = contact.has_value();
}

// Where the probe first passes through the surface, as a length on the way.
std::optional<double> Machine::contact_on(const Segment& segment) {
    const double uncertainty = m_description.workpiece.noise * m_noise.next();
    Positions positions;
    const auto height = [&](double at) {
        segment.positions_at(at, positions);
        const Workpiece::View view = m_workpiece.look(probe_at(positions), spindle_turn(positions));
        return view.is_beside ? std::nan("") : view.height - uncertainty;
    };
    // Fine enough for any part that one can hold; a comparison with not-a-number is false.
    const double steps = std::clamp(std::ceil(segment.length() / 0.05), 1.0, 200000.0);
    double low = 0.0;
    const double first = height(0.0);
    for (double step = 1.0; step <= steps; ++step) {
        double high = segment.length() * step / steps;
        const double before = height(low);
        if (before * height(high) > 0.0 || std::isnan(before * height(high))) {
            low = high;
            continue;
        }
        for (int i = 0; i < 60; ++i) {
            const double middle = 0.5 * (low + high);
            (before * height(middle) > 0.0 ? low : high) = middle;
        }
        return high;
    }
    if (first == 0.0) return 0.0;
    return std::nullopt;
}

void Machine::move_polygon(const Targets& points) {
    Motion motion;
    Positions here = standing();
    for (const Positions& corner : corners(points, Use::moving)) {
        motion.add(straight(here, corner, m_speed));
        here = corner;
    }
    start(std::move(motion), Goal::travel);
}

Arc Machine::checked_arc(const ArcRequest& request) const {
    const Vector3& c = request.center;
    require_finite({c.x, c.y, c.z, request.radius, request.start, request.sweep, request.speed,
                    request.height, request.end_radius});
    if (m_x == no_axis || m_y == no_axis || m_z == no_axis) throw Refused{Error::unknown_axis};
    const Arc arc{m_x,
                  m_y,
                  c.x - m_axes[m_x].offset,
                  c.y - m_axes[m_y].offset,
                  request.radius,
                  request.end_radius,
                  request.start,
                  request.sweep};
    const bool is_sane = arc.radius >= 0.0 && arc.end_radius >= 0.0 && arc.radius + arc.end_radius > 0.0 &&
                         std::abs(arc.sweep) <= max_sweep && std::abs(arc.start) <= max_sweep &&
                         request.speed >= 0.0 && request.speed <= max_speed;
    if (!is_sane) throw Refused{Error::argument_out_of_range};
    const auto check = [&](double fraction) {
        const Arc::Point point = arc.at(fraction);
        if (!m_axes[m_x].reaches(point.first) || !m_axes[m_y].reaches(point.second)) {
            throw Refused{Error::argument_out_of_range};
        }
    };
    check(0.0);
    check(1.0);
    // In between it is farthest out where it crosses the directions of the axes.
    const double low = std::min(arc.start, arc.start + arc.sweep);
    const double high = std::max(arc.start, arc.start + arc.sweep);
    for (double angle = 90.0 * std::ceil(low / 90.0); angle <= high && arc.sweep != 0.0; angle += 90.0) {
        check((angle - arc.start) / arc.sweep);
    }
    return arc;
}

Motion Machine::along_arc(const ArcRequest& request, const Targets& others, Use use) const {
    const Arc arc = checked_arc(request);
    for (const std::size_t axis : {m_x, m_y, m_z}) {
        if (use == Use::scanning && !m_axes[axis].is.can_scan) throw Refused{Error::invalid_axis};
        if (!m_axes[axis].is_driven()) throw Refused{Error::invalid_axis};
        require_ready(axis);
    }
    Positions begin = standing();
    begin[m_x] = arc.at(0.0).first;
    begin[m_y] = arc.at(0.0).second;
    begin[m_z] = request.center.z - m_axes[m_z].offset;
    Positions end = reach(begin, others, use);
    for (const std::size_t axis : {m_x, m_y, m_z}) {
        // The arc itself says where these go.
        if (end[axis] != begin[axis]) throw Refused{Error::invalid_axis};
    }
    end[m_x] = arc.at(1.0).first;
    end[m_y] = arc.at(1.0).second;
    end[m_z] += request.height;
    if (!m_axes[m_z].reaches(begin[m_z]) || !m_axes[m_z].reaches(end[m_z])) {
        throw Refused{Error::argument_out_of_range};
    }
    const double own_speed = use == Use::scanning ? m_scan_speed : m_speed;
    Motion motion;
    motion.add(straight(standing(), begin, m_speed));
    Segment round(m_axes, begin, end, request.speed > 0.0 ? request.speed : own_speed, arc);
    round.is_measured = use == Use::scanning;
    motion.add(std::move(round));
    return motion;
}

void Machine::move_arc(const ArcRequest& arc, const Targets& others) {
    start(along_arc(arc, others, Use::moving), Goal::travel);
}

void Machine::scan_arc(const ArcRequest& arc, const Targets& others) {
    Motion motion = along_arc(arc, others, Use::scanning);
    require_scanning();
    start_scan(std::move(motion));
}

void Machine::scan(const Targets& targets) {
    if (targets.empty()) throw Refused{Error::no_axis_specified};
    const bool has_target = std::any_of(targets.begin(), targets.end(), [](const wire::Target& target) {
        return target.form != wire::TargetForm::none;
    });
    if (!has_target) throw Refused{Error::missing_argument};
    Segment segment = straight(standing(), reach(standing(), targets, Use::scanning), m_scan_speed);
    segment.is_measured = true;
    require_scanning();
    Motion motion;
    motion.add(std::move(segment));
    start_scan(std::move(motion));
}

void Machine::scan_point(const Targets& targets) {
    if (targets.empty()) throw Refused{Error::no_axis_specified};
    const Positions there = reach(standing(), targets, Use::scanning);
    require_scanning();
    Motion motion;
    motion.add(straight(standing(), there, m_speed));
    Segment point = straight(there, there, m_scan_speed);
    point.is_measured = true;
    motion.add(std::move(point));
    start_scan(std::move(motion));
}

void Machine::scan_polygon(const Targets& points) {
    const std::vector<Positions> path = corners(points, Use::scanning);
    require_scanning();
    Motion motion;
    motion.add(straight(standing(), path.front(), m_speed));
    for (std::size_t i = 0; i < path.size(); ++i) {
        if (i == 0 && path.size() > 1) continue;
        Segment segment = straight(path[i == 0 ? 0 : i - 1], path[i], m_scan_speed);
        segment.is_measured = true;
        motion.add(std::move(segment));
    }
    start_scan(std::move(motion));
}

}  // namespace zendrix::sim
