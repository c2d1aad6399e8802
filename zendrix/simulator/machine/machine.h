// The simulated machine: axes, one motion at a time, a probe and the part that it touches. A pure model: no
// threads, no sockets, and time comes in with advance().
//
// Requests that can't be carried out throw Refused and change nothing. A motion that was taken up reports to
// the listener, and ended() is the last that it says.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "machine/axis.h"
#include "machine/error.h"
#include "machine/motion.h"
#include "machine/noise.h"
#include "machine/workpiece.h"
#include "tokens.h"

namespace zendrix::sim {

// What a motion reports, out of start and advance(). It may not call the machine back.
class Listener {
public:
    virtual ~Listener() = default;
    virtual void on_event(Event event) = 0;
    // A measured point; `number` counts from 1 within the scan.
    virtual void on_point(std::size_t number, const std::vector<double>& values) = 0;
    virtual void on_end(Error error) = 0;
};

// An arc in the plane of x and y, on the way from one height and radius to another.
struct ArcRequest {
    Vector3 center;
    double radius = 0.0;
    double start = 0.0;  // degrees
    double sweep = 0.0;
    double speed = 0.0;  // mm/s; 0: the machine's own
    double height = 0.0;
    double end_radius = 0.0;
};

class Machine {
public:
    using Names = std::vector<std::string>;
    using Targets = std::vector<wire::Target>;

    // The listener outlives the machine.
    Machine(const MachineDescription& description, Listener& listener);

    const MachineDescription& description() const { return m_description; }
    const std::vector<Axis>& axes() const { return m_axes; }

    // Values and pseudo-axes.
    double value(const std::string& name) const;
    struct Pseudo {
        std::string name;
        double lower;
        double upper;
        double step;
        double value;
        bool is_settable;
    };
    std::vector<Pseudo> pseudo_axes() const;
    void set(const Targets& values);
    void modulo(const Names& names);  // into 0 to 360 degrees
    void set_move_base(const Names& names);
    void set_scan_base(const Names& names);

    // May these be used so, all of them together? Throws for unknown names and for none at all.
    bool can_scan(const Names& names) const;
    bool can_move(const Names& names) const;
    bool can_move_to_limit(const Names& names) const;
    // Are there a probe and a surface to touch, and axes to bring one to the other?
    bool has_scanning() const;

    // What every point holds: axis names, "time", "deflection". Empty: x y z.
    void select_data(const Names& names);

    // Motions. One at a time.
    void init(const Names& names);  // empty: all that need it
    void home();
    void move(const Targets& targets);
    void move_to_contact(const Targets& targets);
    void move_polygon(const Targets& points);
    void move_arc(const ArcRequest& arc, const Targets& others);
    void scan(const Targets& targets);
    void scan_point(const Targets& targets);
    void scan_polygon(const Targets& points);
    void scan_arc(const ArcRequest& arc, const Targets& others);

    bool is_busy() const { return m_motion.has_value(); }
    bool is_measuring() const { return m_motion && m_motion->point_count() > 0 && m_result == Error::none; }
    // Slows down to a stand; the motion then ends with this error.
    void stop(Error error);
    // The same without slowing down.
    void stop_at_once(Error error);
    // Stops at once and refuses motions until reset().
    void emergency();
    void reset();

    // Goes on to this time. A scan halts for good, not only until the next call, where the points would be
    // more than `max_points`: a scan waits for its reader, whatever the clock says.
    void advance(double now, std::size_t max_points);
    // When the present motion ends if nobody stops it.
    double end_time() const;

private:
    using Positions = std::vector<double>;
    enum class Goal { travel, initialize, contact };
    enum class Use { moving, scanning };
    static constexpr std::size_t no_axis = static_cast<std::size_t>(-1);

    // machine_axes.cpp
    std::size_t find(const std::string& name) const;
    std::size_t index(const std::string& name) const;
    std::vector<std::size_t> indices(const Names& names) const;
    double* settable_pseudo(const std::string& name);
    bool all_initialized() const;
    void check_set(const Targets& values);

    // machine_motions.cpp
    Positions standing() const;
    void require_idle() const;
    void require_scanning() const;
    void require_ready(std::size_t axis) const;
    double goal_of(std::size_t axis, const wire::Target& target, double from) const;
    Positions reach(Positions from, std::span<const wire::Target> targets, Use use) const;
    std::vector<Positions> corners(const Targets& points, Use use) const;
    Arc checked_arc(const ArcRequest& request) const;
    Motion along_arc(const ArcRequest& request, const Targets& others, Use use) const;
    Segment straight(Positions from, Positions to, double speed) const;
    std::optional<double> contact_on(const Segment& segment);
    void start(Motion motion, Goal goal);
    void start_scan(Motion motion);

    // machine.cpp
    Vector3 probe_at(const Positions& positions) const;
    double spindle_turn(const Positions& positions) const;
    bool measure();
    void take_positions();
    void end_measuring();
    void end(Error error);
    void finish();

    MachineDescription m_description;
    Listener& m_listener;
    std::vector<Axis> m_axes;
    Workpiece m_workpiece;
    Noise m_noise;
    std::size_t m_x, m_y, m_z, m_spindle;  // indices, no_axis if there is none

    double m_speed;
    double m_scan_speed;
    double m_scan_step;
    Names m_move_base;
    Names m_scan_base;
    bool m_has_emergency = false;

    static constexpr std::size_t select_time = static_cast<std::size_t>(-2);
    static constexpr std::size_t select_deflection = static_cast<std::size_t>(-3);
    std::vector<std::size_t> m_selection;  // axis indices and the two above

    double m_now = 0.0;
    std::optional<Motion> m_motion;
    Goal m_goal = Goal::travel;
    bool m_has_begun = false;
    bool m_has_contact = false;
    Error m_result = Error::none;  // what the motion will end with
    std::vector<std::size_t> m_to_initialize;
    std::size_t m_points_sent = 0;
    double m_measuring_since = 0.0;
    Positions m_positions;         // scratch, one per axis
    std::vector<double> m_values;  // scratch, a point
};

}  // namespace zendrix::sim
