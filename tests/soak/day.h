// A working day at the rich machine: a host that measures and looks after the machine, and an operator who
// stands at it. What comes next is drawn by lot; the same seed gives the same day.
#pragma once

#include <cstdint>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "czendrixcom.h"
#include "driver_host.h"
#include "simulated_machine.h"
#include "truth.h"

struct Tally {
    int done = 0;
    int refused = 0;
};

class Day {
public:
    // The machine's clock is a DayClock.
    Day(SimulatedMachine& machine, std::uint64_t seed);

    // Everything free, initialized and loaded, so that most of what follows can be done.
    void tidy_up();
    // Some of what happens in a day.
    void do_something();
    // Nobody does anything for a while.
    void pause();
    // The host goes and comes back.
    void reopen();

    // Where the driver's picture isn't the machine, once all events have arrived.
    std::vector<std::string> differences();

    double hours() { return truth().time / 3600.0; }
    const std::map<std::string, Tally>& tally() const { return m_tally; }  // by command name
    int commands() const { return m_next_id - 1; }
    int deeds_of_operator() const { return m_deeds; }
    std::size_t points() const { return m_points; }
    std::size_t watched() const { return m_watched; }  // autoinfo records

private:
    using Driver = M2ZendrixMachAbstract;
    struct Activity {
        int weight;
        void (Day::*happens)();
    };
    static const std::vector<Activity> activities;

    // Each starts what `make` hands out and runs it to its end; false if the machine refused it.
    template <class Make>
    bool run(Make make);
    template <class Make>
    bool scan(Make make);
    template <class Make, class Inside>
    void nest(Make make, Inside inside);
    bool note(const std::string& name, const std::string& text);

    bool move(const AxisTargetMap& targets);
    void operate(const std::string& words);  // as the operator, who may be refused too

    void drive();
    void drive_along();
    void drive_home_or_to_zero();
    void choose_bases();
    void set_and_get();
    void measure_line();
    void measure_arc();
    void handle_probe();
    void define_probe();
    void handle_probesystem();
    void switch_keypad();
    void spin();
    void wobble();
    void watch();
    void exchange_blocks();
    void ask_for_nonsense();
    void talk_meanwhile();
    void press_keys();
    void change_capabilities();
    void emergency();

    Truth truth() { return truth_of(m_machine.server()); }
    double between(double lower, double upper) {
        return std::uniform_real_distribution<double>(lower, upper)(m_random);
    }
    int among(int count) { return std::uniform_int_distribution<int>(0, count - 1)(m_random); }

    SimulatedMachine& m_machine;
    DriverHost m_host;
    Driver& m_driver;
    CZendrixCOM m_operator;
    std::mt19937_64 m_random;
    std::map<std::string, Tally> m_tally;
    std::map<std::string, std::string> m_blocks;  // what was sent, by name
    int m_next_id = 1;
    int m_deeds = 0;
    std::size_t m_points = 0;
    std::size_t m_watched = 0;
};
