// The simulated machine: axes, probes, a keypad, one action at a time, and the part that it touches. A pure
// model: no threads, no sockets, and time comes in with advance().
//
// Requests that can't be carried out throw Refused and change nothing. An action that was taken up, a motion
// or something else that takes time, reports to the listener, and on_end() is the last that it says.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "machine/axis.h"
#include "machine/error.h"
#include "machine/handling.h"
#include "machine/motion.h"
#include "machine/noise.h"
#include "machine/probestore.h"
#include "machine/probesystemstore.h"
#include "machine/workpiece.h"
#include "tokens.h"

namespace zendrix::sim {

// What the machine reports, out of any operation that changes it. It may not call the machine back.
class Listener {
public:
    virtual ~Listener() = default;
    virtual void on_event(Event event) = 0;
    virtual void on_warning(Warning warning) = 0;  // about the present action
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

    // Probes and probe systems. What takes time is an action, as a motion is.
    ProbeStore& probes() { return m_probes; }
    const ProbeStore& probes() const { return m_probes; }
    ProbesystemStore& probesystems() { return m_probesystems; }
    const ProbesystemStore& probesystems() const { return m_probesystems; }
    void load_probe(TipId id);
    void change_probe(TipId id);
    void unload_probe();
    void offset_probe(const Targets& offsets);  // of x, y and z
    void load_probesystem(const std::string& name, std::int32_t id);
    void unload_probesystem();

    // The keypad. An axis that is enabled there is in the operator's hand, and moves for nobody else.
    bool has_keypad() const;
    void switch_keypad(bool on, const Names& names);  // empty: all axes of the keypad. An action
    // The effect of a key, by what follows "keypad: " in its event.
    void press_key(std::string_view key);

    // Spindles that turn by themselves.
    struct Spin {
        std::string name;
        bool is_reverse;
    };
    void start_spin(const std::vector<Spin>& axes);
    void stop_spin(const Names& names);  // empty: all

    using Wobble = std::array<double, 6>;
    const std::optional<Wobble>& wobble() const { return m_wobble; }
    void set_wobble(const Wobble& wobble);

    // What somebody at the machine does.
    void put_out_of_use(const std::string& axis);
    void put_into_use(const std::string& axis);
    void fit_changer(bool is_there);
    // Takes a command word out of the machine's vocabulary, or puts it back.
    void withdraw(const std::string& words);
    void restore(const std::string& words);
    const std::set<std::string, std::less<>>& withdrawn() const { return m_withdrawn; }
    // By hand: an axis without a drive, or one that is enabled on the keypad.
    void place(const Targets& positions);

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

    bool is_busy() const { return m_motion.has_value() || m_handling.has_value(); }
    bool is_in_emergency() const { return m_has_emergency; }
    bool is_measuring() const { return m_motion && m_motion->point_count() > 0 && m_result == Error::none; }
    // Slows down to a stand; the action then ends with this error.
    void stop(Error error);
    // The same without slowing down.
    void stop_at_once(Error error);
    // Stops at once, spindles too, and refuses actions until reset().
    void emergency();
    void reset();

    // Goes on to this time. A scan halts for good, not only until the next call, where the points would be
    // more than `max_points`: a scan waits for its reader, whatever the clock says.
    void advance(double now, std::size_t max_points);
    // When the present action ends if nobody stops it.
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
    void require_free(std::size_t axis) const;
    double goal_of(std::size_t axis, const wire::Target& target, double from) const;
    Positions reach(Positions from, std::span<const wire::Target> targets, Use use) const;
    std::vector<Positions> corners(const Targets& points, Use use) const;
    Arc checked_arc(const ArcRequest& request) const;
    Motion along_arc(const ArcRequest& request, const Targets& others, Use use) const;
    Segment straight(Positions from, Positions to, double speed) const;
    std::optional<double> contact_on(const Segment& segment);
    void start(Motion motion, Goal goal);
    void start_scan(Motion motion);

    // machine_handling.cpp
    void begin_handling(std::vector<Handling::Step> steps);
    Handling::Step put_down();
    Handling::Step take_up(TipId id);
    void warn_if(bool is_needed, Warning warning);

    // machine_keypad.cpp
    bool hand_over(const std::vector<std::size_t>& axes, bool to_keypad);
    std::vector<std::size_t> keypad_axes() const;
    void stop_spins();
    void turn(double seconds);

    // machine.cpp
    void advance_motion(double seconds, std::size_t max_points);
    void begin_motion();
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
    bool m_touches = false;  // the probe rests on the part
    ProbeStore m_probes;
    ProbesystemStore m_probesystems;
    std::optional<Wobble> m_wobble;
    std::set<std::string, std::less<>> m_withdrawn;

    static constexpr std::size_t select_time = static_cast<std::size_t>(-2);
    static constexpr std::size_t select_deflection = static_cast<std::size_t>(-3);
    std::vector<std::size_t> m_selection;  // axis indices and the two above

    double m_now = 0.0;
    std::optional<Handling> m_handling;
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
