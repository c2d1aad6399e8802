// A whole day of measuring on the rich machine: at each check the driver's picture equals the machine's
// truth, and neither threads nor memory grow.
#include <gtest/gtest.h>

#include <cstdlib>
#include <iostream>

#include "day.h"
#include "day_clock.h"
#include "machine/descriptionreader.h"
#include "process_resources.h"
#include "recording_facilities.h"
#include "supportedcommands.h"

namespace {

constexpr double day_hours = 24.0;
constexpr int least_commands = 6000;
constexpr int at_a_time = 8;           // things that happen between two checks
constexpr int checks_a_shift = 20;     // after which the host goes and comes back
constexpr double warm_up_hours = 6.0;  // in which memory may still grow
constexpr long most_growth = 4096;     // KiB from then on

std::uint64_t setting(const char* name, std::uint64_t otherwise) {
    const char* const value = std::getenv(name);
    return value ? std::strtoull(value, nullptr, 10) : otherwise;
}

std::string joined(const std::vector<std::string>& lines) {
    std::string text;
    for (const std::string& line : lines) text += line + "\n";
    return text;
}

// Every command of the machine was carried out, not only refused.
void expect_all_commands(const std::map<std::string, Tally>& tally) {
    for (const SupportedCommand& command : supported_commands) {
        const auto found = tally.find(command.word);
        EXPECT_TRUE(found != tally.end() && found->second.done > 0) << command.word;
    }
    EXPECT_GT(tally.at("reset").done, 0);
}

TEST(Soak, ADayAtTheRichMachineLeavesTheDriverWithATruePicture) {
    const std::uint64_t seed = setting("ZX_SOAK_SEED", 20);
    const auto commands = static_cast<int>(setting("ZX_SOAK_COMMANDS", least_commands));
    SCOPED_TRACE("ZX_SOAK_SEED=" + std::to_string(seed));
    SimulatedMachine machine(zendrix::sim::read_machine(RICH_MACHINE), std::make_unique<DayClock>(),
                             "cached_axes=x, z\n");
    Day day(machine, seed);
    const auto threads = test_support::thread_count();
    long warm = 0;
    int checks = 0;
    for (; day.hours() < day_hours || day.commands() < commands; ++checks) {
        day.tidy_up();
        for (int i = 0; i < at_a_time; ++i) day.do_something();
        ASSERT_EQ(joined(day.differences()), "") << "after " << day.commands() << " commands";
        ASSERT_EQ(test_support::thread_count(), threads);
        recording::reset();
        day.pause();
        if (checks % checks_a_shift == checks_a_shift - 1) day.reopen();
        if (warm == 0 && day.hours() > warm_up_hours) warm = test_support::memory_in_use();
    }
    EXPECT_LE(test_support::memory_in_use(), warm + most_growth);
    expect_all_commands(day.tally());
    EXPECT_GT(day.points(), 0U);
    EXPECT_GT(day.watched(), 0U);
    std::cout << day.commands() << " commands, " << day.deeds_of_operator() << " deeds of the operator, "
              << day.points() << " points, " << checks << " checks, " << day.hours() << " hours; memory "
              << warm << " KiB, then " << test_support::memory_in_use() << " KiB\n";
}

}  // namespace
