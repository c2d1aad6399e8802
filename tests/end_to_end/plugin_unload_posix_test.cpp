// A host that goes without waiting for its backup. The test links none of what the plug-in brings along, so
// that all of it goes with the plug-in.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <thread>

#include "gate.h"
#include "host_side.h"
#include "moutputchannel.h"
#include "os/library.h"
#include "private_temporary.h"
#include "simulated_machine.h"

namespace {

using NewMMachAbstract = MMachAbstract*(const std::string*, const std::string*, MOutputChannel*,
                                        MMachNotifier*);

constexpr std::size_t block_size = std::size_t{4} << 20;

// Bytes that take time to pack, and don't get shorter.
std::string noise(std::size_t size) {
    std::string bytes(size, '\0');
    std::uint32_t state = 1;
    for (char& c : bytes) {
        state = state * 1664525 + 1013904223;
        c = static_cast<char>(state >> 24);
    }
    return bytes;
}

// Waits for the thing itself, with a bound.
bool comes_true(const std::function<bool()>& condition) {
    const auto deadline = std::chrono::steady_clock::now() + host_patience;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > deadline) return false;
        std::this_thread::yield();
    }
    return true;
}

bool is_loaded(const char* library) {
    void* const handle = dlopen(library, RTLD_NOW | RTLD_NOLOAD);
    if (handle) dlclose(handle);
    return handle != nullptr;
}

// Holds the notice of a backup until it is let on; those of the machine pass.
class GateNotifier : public MMachNotifier {
public:
    int HasNotification() override { return 0; }
    bool Notify() override {
        if (m_shut) {
            m_come.open();
            m_open.wait();
        }
        return true;
    }

    std::atomic<bool> m_shut{false};
    Gate m_come;
    Gate m_open;
};

// A host with an open driver, whose parts go one by one.
class LeavingHost {
public:
    explicit LeavingHost(MMachNotifier& notifier) {
        std::ofstream(m_machine.directory() + "/noise", std::ios::binary) << noise(block_size);
        EXPECT_TRUE(m_library.load(PLUGIN_FILE)) << m_library.error_text();
        auto* const create = m_library.function<NewMMachAbstract>("NewMMachAbstract");
        const std::string directory = m_machine.directory();
        m_driver.reset(create(&m_machine.name, &directory, &m_output, &notifier));
        EXPECT_TRUE(m_driver->Open());
    }

    MMachReceiveCommand* start_backup() {
        return m_driver->NewMMachReceiveCommand(&m_channel, "backup.m2zendrix_dll");
    }
    void leave(std::unique_ptr<MMachReceiveCommand>& backup) {
        backup.reset();
        leave();
    }
    void leave() {
        m_driver->Close();
        m_driver.reset();
        EXPECT_TRUE(m_library.unload()) << m_library.error_text();
    }

private:
    SimulatedMachine m_machine;
    MOutputChannel m_output{0};
    MOutputChannel m_channel{1};
    os::SharedLibrary m_library;
    std::unique_ptr<MMachAbstract> m_driver;
};

// Runs a host in a process of its own, which ends without its last steps: a thread may still be about to let
// the library go.
template <class Host>
void expect_survived(Host host) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            host();
            std::_Exit(::testing::Test::HasFailure() ? 1 : 0);
        },
        ::testing::ExitedWithCode(0), "");
}

void expect_gone() {
    EXPECT_TRUE(comes_true([] { return !is_loaded(PLUGIN_FILE); }));
}

TEST(PluginUnloadPosix, WithoutABackupThePluginIsGoneAtOnce) {
    expect_survived([] {
        GateNotifier notifier;
        LeavingHost host(notifier);
        EXPECT_TRUE(is_loaded(PLUGIN_FILE));
        host.leave();
        EXPECT_FALSE(is_loaded(PLUGIN_FILE));
    });
}

TEST(PluginUnloadPosix, ABackupThatWasPolledToItsEndLeavesThePluginFree) {
    expect_survived([] {
        PrivateTemporary temporary;
        GateNotifier notifier;
        LeavingHost host(notifier);
        std::unique_ptr<MMachReceiveCommand> backup(host.start_backup());
        EXPECT_TRUE(comes_true([&] { return backup->IsDone(); }));
        EXPECT_GT(backup->m_data.size(), block_size);
        host.leave(backup);
        expect_gone();
    });
}

// The thread stands in the host's own code while the plug-in is unloaded, and then has to go back.
TEST(PluginUnloadPosix, AThreadThatNotifiesReturnsIntoThePlugin) {
    expect_survived([] {
        PrivateTemporary temporary;
        GateNotifier notifier;
        LeavingHost host(notifier);
        notifier.m_shut = true;
        // A host that can't delete it any more; kept, so that it isn't taken for lost.
        static MMachReceiveCommand* const left_behind = host.start_backup();
        EXPECT_NE(left_behind, nullptr);
        notifier.m_come.wait();
        host.leave();
        EXPECT_TRUE(is_loaded(PLUGIN_FILE));
        notifier.m_open.open();
        expect_gone();
    });
}

TEST(PluginUnloadPosix, AThreadThatPacksPacksToItsEnd) {
    expect_survived([] {
        PrivateTemporary temporary;
        GateNotifier notifier;
        LeavingHost host(notifier);
        static MMachReceiveCommand* const left_behind = host.start_backup();
        EXPECT_NE(left_behind, nullptr);
        host.leave();
        expect_gone();
        EXPECT_FALSE(std::filesystem::exists(temporary.path("backup_tmp.zip")));
    });
}

// Driver, command, notifier and the very directory are gone as well.
TEST(PluginUnloadPosix, AThreadThatPacksNeedsNothingOfTheHost) {
    expect_survived([] {
        PrivateTemporary temporary;
        {
            GateNotifier notifier;
            LeavingHost host(notifier);
            std::unique_ptr<MMachReceiveCommand> backup(host.start_backup());
            host.leave(backup);
        }
        expect_gone();
    });
}

}  // namespace
