#include "day.h"

#include <cmath>

#include "day_clock.h"
#include "differences.h"

namespace {

// The part on the table: a cone that widens towards the top.
constexpr double center_x = 20.0;
constexpr double center_y = 10.0;
constexpr double center_z = 100.0;
constexpr double radius = 30.0;
const double slope = std::tan(5.0 * std::acos(-1.0) / 180.0);

constexpr double full_turn = 360.0;
constexpr int longest_block = 30000;
constexpr const char* watched_axes[] = {"x", "y", "z"};

double radius_at(double height) { return radius + slope * (height - center_z); }

MMachAxisTargets targets(const AxisTargetMap& values) {
    MMachAxisTargets result;
    result.m_targets = values;
    return result;
}

AxisTargetMap on_part(double height) {
    return {{"x", {center_x + radius_at(height)}}, {"y", {center_y}}, {"z", {height}}};
}

// What both kinds of arcs begin with.
template <class Shape>
Shape arc(double sweep) {
    Shape shape;
    const double parameters[7] = {center_x, center_y, center_z, radius, 0.0, sweep, 0.0};
    std::copy(std::begin(parameters), std::end(parameters), shape.parameters);
    return shape;
}

MMachCone spiral(double climb) {
    MMachCone cone = arc<MMachCone>(full_turn);
    cone.more[0] = climb;
    cone.more[1] = radius_at(center_z + climb);
    return cone;
}

std::string address_of(SimulatedMachine& machine) {
    std::string place = machine.server().place();
    place.at(place.find(':')) = ' ';
    return place;
}

}  // namespace

const std::vector<Day::Activity> Day::activities = {
    {12, &Day::drive},
    {4, &Day::drive_along},
    {4, &Day::drive_home_or_to_zero},
    {2, &Day::choose_bases},
    {6, &Day::set_and_get},
    {6, &Day::measure_line},
    {4, &Day::measure_arc},
    {6, &Day::handle_probe},
    {4, &Day::define_probe},
    {4, &Day::handle_probesystem},
    {4, &Day::switch_keypad},
    {4, &Day::spin},
    {2, &Day::wobble},
    {2, &Day::watch},
    {3, &Day::exchange_blocks},
    {6, &Day::ask_for_nonsense},
    {8, &Day::talk_meanwhile},
    {4, &Day::press_keys},
    {4, &Day::change_capabilities},
    {1, &Day::emergency},
};

Day::Day(SimulatedMachine& machine, std::uint64_t seed)
    : m_machine(machine),
      m_host(machine.name, machine.directory()),
      m_driver(m_host.driver()),
      m_operator(nullptr, nullptr, address_of(machine).c_str(), nullptr),
      m_random(seed) {
    m_operator.SetSync3(ZX_SYNC);
    EXPECT_TRUE(m_driver.Open());
}

bool Day::note(const std::string& name, const std::string& text) {
    const bool is_refused = text.find("\terror ") != std::string::npos;
    ++(is_refused ? m_tally[name].refused : m_tally[name].done);
    return !is_refused;
}

template <class Make>
bool Day::run(Make make) {
    MOutputChannel channel(m_next_id++);
    MMachCommand* const command = make(&channel);
    const std::string name = command->GetCommandName();
    return note(name, m_host.finish(command, channel));
}

template <class Make>
bool Day::scan(Make make) {
    MOutputChannel channel(m_next_id++);
    auto* const command = make(&channel);
    const std::string name = command->GetCommandName();
    const auto points = m_host.drain(command, [] {});
    std::string text;
    channel.take_text(text, true);
    m_points += points.size();
    const bool is_done = note(name, text);
    EXPECT_TRUE(!is_done || !points.empty()) << name;
    return is_done;
}

// `inside` runs other commands while the one that `make` hands out is on its way.
template <class Make, class Inside>
void Day::nest(Make make, Inside inside) {
    MOutputChannel channel(m_next_id++);
    MMachCommand* const outer = make(&channel);
    const std::string name = outer->GetCommandName();
    inside();
    note(name, m_host.finish(outer, channel));
}

bool Day::move(const AxisTargetMap& values) {
    return run([&](MOutputChannel* c) { return m_driver.NewMMachMoveCommand(c, targets(values)); });
}

void Day::operate(const std::string& words) {
    std::vector<std::string> reply;
    m_operator.Execute(("sim " + words).c_str(), reply, nullptr);
    ++m_deeds;
}

void Day::tidy_up() {
    run([&](MOutputChannel* c) { return m_driver.NewMMachResetCommand(c); });
    for (const std::string& word : truth().withdrawn) operate("restore \"" + word + "\"");
    for (const char* axis : {"x", "hb", "c"}) {
        if (!truth().axis(axis).is_active()) operate(std::string("activate \"") + axis + "\"");
    }
    run([&](MOutputChannel* c) { return m_driver.NewMMachKeypadDisableCommand(c, {}); });
    run([&](MOutputChannel* c) { return m_driver.NewMMachSpinDisableCommand(c, {"c", "sp"}); });
    run([&](MOutputChannel* c) { return m_driver.NewMMachInitCommand(c, {}); });
    run([&](MOutputChannel* c) { return m_driver.NewMMachModuloCommand(c, {"c"}); });
    run([&](MOutputChannel* c) {
        return m_driver.NewMMachScandataCommand(c, {"x", "y", "z", "deflection"});
    });
    move({{"c", {0.0}}});
    if (truth().tip.probe == 0) {
        run([&](MOutputChannel* c) { return m_driver.NewMMachProbeLoadCommand(c, 1, 1); });
    }
}

void Day::do_something() {
    int total = 0;
    for (const Activity& activity : activities) total += activity.weight;
    int lot = among(total);
    for (const Activity& activity : activities) {
        lot -= activity.weight;
        if (lot < 0) return (this->*activity.happens)();
    }
}

void Day::pause() {
    const double seconds = between(60.0, 1200.0);
    m_machine.server().invoke([seconds](zendrix::sim::Hub&, zendrix::sim::Clock& clock) {
        dynamic_cast<DayClock&>(clock).skip(seconds);
    });
}

void Day::reopen() {
    m_driver.Close();
    EXPECT_TRUE(m_driver.Open());
}

// Events are on their way for a while; what differs after that differs.
std::vector<std::string> Day::differences() {
    const Truth truth = this->truth();
    std::vector<std::string> lines;
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    do {
        m_host.poll();
        m_host.output().clear();
        lines = ::differences(m_driver, truth);
        if (lines.empty()) break;
        m_host.notifier().wait(std::chrono::milliseconds(5));
    } while (std::chrono::steady_clock::now() < deadline);
    return lines;
}

void Day::drive() {
    move({{"x", {between(-100.0, 200.0)}}, {"y", {between(-100.0, 100.0)}}, {"z", {between(50.0, 400.0)}}});
    move({{"c", {between(-50.0, 50.0), true}}, {"ha", {between(-80.0, 80.0)}}});
}

void Day::drive_along() {
    run([&](MOutputChannel* c) {
        return m_driver.NewMMachMovecircleCommand(c, arc<MMachCircle>(between(-full_turn, full_turn)));
    });
    run([&](MOutputChannel* c) { return m_driver.NewMMachMoveconeCommand(c, spiral(20.0)); });
    run([&](MOutputChannel* c) {
        return m_driver.NewMMachMovepolyCommand(c, {on_part(100.0), on_part(130.0), on_part(90.0)});
    });
}

void Day::drive_home_or_to_zero() {
    run([&](MOutputChannel* c) { return m_driver.NewMMachMovehomeCommand(c); });
    move({{"x", {center_x + radius + 10.0}}, {"y", {center_y}}, {"z", {center_z}}});
    run([&](MOutputChannel* c) {
        return m_driver.NewMMachMovezeroCommand(c, targets({{"x", {center_x + radius - 5.0}}}));
    });
}

void Day::choose_bases() {
    run([&](MOutputChannel* c) { return m_driver.NewMMachMovebaseCommand(c, {"x", "y"}); });
    run([&](MOutputChannel* c) { return m_driver.NewMMachScanbaseCommand(c, {"x", "z"}); });
}

void Day::set_and_get() {
    run([&](MOutputChannel* c) {
        return m_driver.NewMMachSetCommand(
            c, {{"speed", between(10.0, 120.0)}, {"scanstep", between(0.5, 2.0)}});
    });
    run([&](MOutputChannel* c) {
        return m_driver.NewMMachSetCommand(c, {{"air", between(1.0, 7.0)}, {"sw", double(among(2))}});
    });
    run([&](MOutputChannel* c) { return m_driver.NewMMachGetCommand(c, {"x", "air", "speed"}); });
    run([&](MOutputChannel* c) { return m_driver.NewMMachInitCommand(c, {"x"}); });
}

void Day::measure_line() {
    move(on_part(100.0));
    scan([&](MOutputChannel* c) { return m_driver.NewMMachScanCommand(c, targets(on_part(120.0))); });
    scan([&](MOutputChannel* c) {
        return m_driver.NewMMachScanpolyCommand(c, {on_part(120.0), on_part(100.0), on_part(110.0)});
    });
    scan([&](MOutputChannel* c) { return m_driver.NewMMachScanpointCommand(c, targets(on_part(105.0))); });
}

void Day::measure_arc() {
    scan([&](MOutputChannel* c) {
        return m_driver.NewMMachScancircleCommand(c, arc<MMachCircle>(full_turn));
    });
    scan([&](MOutputChannel* c) { return m_driver.NewMMachScanconeCommand(c, spiral(25.0)); });
}

void Day::handle_probe() {
    if (!truth().has_changer) operate("changer 1");
    run([&](MOutputChannel* c) { return m_driver.NewMMachProbeChangeCommand(c, 2, 1 + among(3)); });
    run([&](MOutputChannel* c) { return m_driver.NewMMachProbeUnloadCommand(c); });
    run([&](MOutputChannel* c) { return m_driver.NewMMachProbeLoadCommand(c, 1 + among(3), 1); });
    run([&](MOutputChannel* c) {
        return m_driver.NewMMachProbeOffsetCommand(c, {{"z", {between(-80.0, -40.0)}}});
    });
}

void Day::define_probe() {
    const long probe = 20 + among(10);
    run([&](MOutputChannel* c) {
        return m_driver.NewMMachProbeDefineCommand(
            c, probe, 1, {{"x", between(-9.0, 9.0)}, {"y", 0.0}, {"z", -50.0}, {"d", 2.0}});
    });
    if (among(2) == 0) {
        run([&](MOutputChannel* c) { return m_driver.NewMMachProbeDeleteCommand(c, probe, 1); });
    }
}

void Day::handle_probesystem() {
    run([&](MOutputChannel* c) {
        return m_driver.NewMMachProbesystemLoadCommand(c, "Swivel \"S2\"", 3 + among(2));
    });
    MMachProbesystemDefinition definition;
    definition.name = "Optical";
    definition.id = 1 + among(5);
    definition.values[0] = between(-1.0, 1.0);
    run([&](MOutputChannel* c) { return m_driver.NewMMachProbesystemDefineCommand(c, definition); });
    if (among(2) == 0) {
        run([&](MOutputChannel* c) {
            return m_driver.NewMMachProbesystemDeleteCommand(c, definition.name, definition.id);
        });
    }
    if (among(2) == 0) run([&](MOutputChannel* c) { return m_driver.NewMMachProbesystemUnloadCommand(c); });
}

void Day::switch_keypad() {
    run([&](MOutputChannel* c) { return m_driver.NewMMachKeypadEnableCommand(c, {"y", "z"}); });
    operate("place y=" + std::to_string(between(-50.0, 50.0)));
    if (among(3) > 0) run([&](MOutputChannel* c) { return m_driver.NewMMachKeypadDisableCommand(c, {}); });
}

void Day::spin() {
    run([&](MOutputChannel* c) { return m_driver.NewMMachSpinEnableCommand(c, {{"c", among(2) == 0}}); });
    if (among(2) == 0) {
        run([&](MOutputChannel* c) { return m_driver.NewMMachSpinDisableCommand(c, {"c"}); });
    }
}

void Day::wobble() {
    MMachWobbleParameters parameters;
    for (double& value : parameters.values) value = between(0.0, 5.0);
    run([&](MOutputChannel* c) { return m_driver.NewMMachWobbleCommand(c, parameters); });
}

void Day::watch() {
    EXPECT_TRUE(m_driver.StartAutoinfo(1, 1, {std::begin(watched_axes), std::end(watched_axes)}));
    std::vector<double> record;
    EXPECT_TRUE(run_host(
        m_host.notifier(), [&] { return m_driver.GetAutoinfo(record); }, [&] { m_host.poll(); }));
    EXPECT_EQ(record.size(), std::size(watched_axes));
    ++m_watched;
    m_driver.StopAutoinfo();
    EXPECT_FALSE(m_driver.IsAutoinfoActive());
}

void Day::exchange_blocks() {
    const std::string name = "block " + std::to_string(among(3));
    std::string sent(static_cast<std::size_t>(among(longest_block)), '\0');
    for (char& byte : sent) byte = static_cast<char>(among(256));
    if (run([&](MOutputChannel* c) { return m_driver.NewMMachSendCommand(c, name, sent); }))
        m_blocks[name] = sent;
    const auto known = m_blocks.find(name);
    if (known == m_blocks.end()) return;
    MOutputChannel channel(m_next_id++);
    const std::unique_ptr<MMachReceiveCommand> receive(m_driver.NewMMachReceiveCommand(&channel, name));
    EXPECT_TRUE(run_host(
        m_host.notifier(), [&] { return receive->IsDone(); }, [&] { m_host.poll(); }));
    if (note(receive->GetCommandName(), channel.get_text())) {
        EXPECT_TRUE(receive->m_data == known->second) << name;
    }
}

void Day::ask_for_nonsense() {
    EXPECT_FALSE(move({{"nosuch", {1.0}}}));
    EXPECT_FALSE(move({{"x", {1e9}}}));
    EXPECT_FALSE(run([&](MOutputChannel* c) { return m_driver.NewMMachProbeLoadCommand(c, -1, 99999); }));
    EXPECT_FALSE(run(
        [&](MOutputChannel* c) { return m_driver.NewMMachProbesystemLoadCommand(c, "no \"such\" one", 7); }));
    MMachWobbleParameters parameters;
    parameters.values[3] = std::nan("");
    EXPECT_FALSE(run([&](MOutputChannel* c) { return m_driver.NewMMachWobbleCommand(c, parameters); }));
}

void Day::talk_meanwhile() {
    nest(
        [&](MOutputChannel* c) {
            return m_driver.NewMMachMoveCommand(c, targets({{"x", {between(-90.0, 190.0)}}}));
        },
        [&] {
            run([&](MOutputChannel* c) { return m_driver.NewMMachGetCommand(c, {"x", "y"}); });
            nest(
                [&](MOutputChannel* c) {
                    return m_driver.NewMMachScandataCommand(c, {"x", "y", "z"});
                },
                [&] { define_probe(); });
            EXPECT_TRUE(m_driver.IsMovePossibleWith({"x", "y"}));
        });
}

void Day::press_keys() {
    constexpr const char* keys[] = {"key-enable x", "key-disable x", "key-start", "key-enable",
                                    "key-disable"};
    operate("key \"" + std::string(keys[among(5)]) + "\"");
}

void Day::change_capabilities() {
    switch (among(4)) {
        case 0: {
            const std::string axis = among(2) == 0 ? "hb" : "c";
            return operate((truth().axis(axis).is_active() ? "deactivate \"" : "activate \"") + axis + "\"");
        }
        case 1:
            return operate(truth().withdrawn.contains("wobble") ? "restore \"wobble\""
                                                                : "withdraw \"wobble\"");
        case 2:
            return operate(truth().has_changer ? "changer 0" : "changer 1");
        default:
            return operate("event \"capabilities changed\"");
    }
}

void Day::emergency() {
    operate("emergency 1");
    EXPECT_FALSE(move({{"x", {0.0}}}));
    operate("emergency 0");
    run([&](MOutputChannel* c) { return m_driver.NewMMachResetCommand(c); });
}
