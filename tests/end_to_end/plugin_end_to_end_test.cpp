// The plug-in as the measuring application has it: loaded by the system, driven through three names.
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <thread>

#include "host_side.h"
#include "moutputchannel.h"
#include "os/library.h"
#include "process_resources.h"
#include "simulated_machine.h"

namespace {

using IsProxy = bool();
using NewMMachAbstract = MMachAbstract*(const std::string*, const std::string*, MOutputChannel*,
                                        MMachNotifier*);
using SetDefaultTracelevel = int(unsigned);

struct Plugin {
    Plugin() {
        EXPECT_TRUE(library.load(PLUGIN_FILE)) << library.error_text();
        is_proxy = library.function<IsProxy>("IsProxy");
        create = library.function<NewMMachAbstract>("NewMMachAbstract");
        set_tracelevel = library.function<SetDefaultTracelevel>("SetDefaultTracelevel");
    }

    os::SharedLibrary library;
    IsProxy* is_proxy = nullptr;
    NewMMachAbstract* create = nullptr;
    SetDefaultTracelevel* set_tracelevel = nullptr;
};

TEST(PluginEndToEnd, IsNoProxyBeforeAndAfterADriverExists) {
    Plugin plugin;
    ASSERT_NE(plugin.is_proxy, nullptr);
    ASSERT_NE(plugin.create, nullptr);
    ASSERT_NE(plugin.set_tracelevel, nullptr);
    EXPECT_FALSE(plugin.is_proxy());
    plugin.set_tracelevel(0);
    MOutputChannel output(0);
    WakingNotifier notifier;
    const std::string name = "m2zendrix";
    const std::string directory = ".";
    const std::unique_ptr<MMachAbstract> driver(plugin.create(&name, &directory, &output, &notifier));
    ASSERT_NE(driver, nullptr);
    EXPECT_FALSE(plugin.is_proxy());
    EXPECT_EQ(notifier.count(), 0);
    EXPECT_TRUE(output.is_empty());
}

// Loads the plug-in, opens, works, closes and unloads.
void take_a_turn(SimulatedMachine& machine) {
    const std::string directory = machine.directory();
    Plugin plugin;
    MOutputChannel output(0);
    WakingNotifier notifier;
    {
        const std::unique_ptr<MMachAbstract> driver(
            plugin.create(&machine.name, &directory, &output, &notifier));
        ASSERT_TRUE(driver->Open());
        MOutputChannel channel(1);
        {
            const std::unique_ptr<MMachInitCommand> init(driver->NewMMachInitCommand(&channel, {}));
            EXPECT_TRUE(run_host(
                notifier, [&] { return init->IsDone(); }, [&] { driver->PollAsyncErrors(); }));
        }
        EXPECT_TRUE(driver->IsInitialized());
        channel.clear();
        driver->Close();
        driver->PollAsyncErrors();
    }
    output.clear();
}

TEST(PluginEndToEnd, AThousandTurnsLeaveNoThreadAndNoHandle) {
    SimulatedMachine machine;
    constexpr int turns = 1000;
    constexpr int turns_to_warm_up = 5;  // what the system itself keeps from the first times
    std::ptrdiff_t threads = 0;
    std::ptrdiff_t handles = 0;
    for (int turn = 0; turn < turns; ++turn) {
        ASSERT_NO_FATAL_FAILURE(take_a_turn(machine)) << "turn " << turn;
        if (turn != turns_to_warm_up) continue;
        threads = test_support::thread_count();
        handles = test_support::handle_count();
    }
    EXPECT_TRUE(test_support::threads_sink_to(threads))
        << test_support::thread_count() << ", not " << threads;
    EXPECT_TRUE(test_support::handles_sink_to(handles))
        << test_support::handle_count() << ", not " << handles;
    EXPECT_FALSE(test_support::has_loaded(std::filesystem::path(PLUGIN_FILE).filename().string()));
}

TEST(PluginEndToEnd, AFailedOpenLeavesADriverThatCanTryAgain) {
    TemporaryDirectory configuration;
    // Port 1 of this computer: nobody listens.
    configuration.file("m2zendrix.ini", "[connection]\nhost=127.0.0.1\nport=1\n");
    Plugin plugin;
    MOutputChannel output(0);
    MOutputChannel channel(1);
    WakingNotifier notifier;
    const std::string name = "m2zendrix";
    const std::string directory = configuration.path();
    const std::unique_ptr<MMachAbstract> driver(plugin.create(&name, &directory, &output, &notifier));
    EXPECT_FALSE(driver->Open());
    EXPECT_EQ(driver->NewMMachInitCommand(&channel, {}), nullptr);
    driver->PollAsyncErrors();
    EXPECT_TRUE(output.is_empty());
    EXPECT_TRUE(channel.is_empty());
    EXPECT_FALSE(driver->Open());
}

}  // namespace
