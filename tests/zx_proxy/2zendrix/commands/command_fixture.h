// A driver on a scripted client, a real channel for the command under test, and recording logs in which an
// unexpected line fails the test.
#pragma once

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <string>
#include <vector>

#include "m2zendrixcommand.h"
#include "m2zendrixmachabstract.h"
#include "mmachnotifier.h"
#include "moutputchannel.h"
#include "recording_facilities.h"
#include "scripted_czendrixcom.h"

using Texts = std::vector<std::string>;

class CountingNotifier : public MMachNotifier {
public:
    int HasNotification() override { return m_count.load(); }
    bool Notify() override {
        ++m_count;
        return m_answer.load();
    }

    std::atomic<int> m_count{0};
    std::atomic<bool> m_answer{true};
};

// A driver with a client and its callbacks installed, without the rest of Open.
class ConnectedDriver : public M2ZendrixMachAbstract {
public:
    ConnectedDriver(MOutputChannel* output, MMachNotifier* notifier)
        : M2ZendrixMachAbstract(output, notifier, "name", "directory") {
        name_callbacks();
        auto* com = new CZendrixCOM(nullptr, nullptr, "scripted", nullptr);
        com->SetAsyncCallback(async_events_callback, this);
        com->SetErrorMsgCallback(async_errors_callback, this);
        com->SetWarningMsgCallback(async_warnings_callback, this);
        com->SetCommandCompleteCallback(command_complete_callback, this);
        m_pZendrixCom = com;
    }

    using M2ZendrixMachAbstract::m_expectConnectionLoss;

    void set_directory(const std::string& directory) { m_directory = directory; }

    std::size_t finished() {
        os::LockGuard guard(m_finishedIdsLock);
        return m_finishedIds.size();
    }

    bool driver_callbacks_installed() {
        const auto slots = scripted::script().slots();
        const auto mine = [this](const auto& slot, auto* function) {
            return slot.first == function && slot.second == this;
        };
        return mine(slots.async, async_events_callback) && mine(slots.error, async_errors_callback) &&
               mine(slots.warning, async_warnings_callback);
    }

private:
    // The texts of calls then read "SetAsyncCallback(events, driver)".
    void name_callbacks() {
        auto& script = scripted::script();
        script.name_callback(async_events_callback, "events");
        script.name_callback(async_errors_callback, "errors");
        script.name_callback(async_warnings_callback, "warnings");
        script.name_callback(command_complete_callback, "complete");
        script.name_user(this, "driver");
    }
};

class CommandTest : public ::testing::Test {
protected:
    CommandTest() {
        scripted::script().reset();
        recording::reset();
        m_driver = std::make_unique<ConnectedDriver>(&m_driverChannel, &m_notifier);
        scripted::script().take_calls();
    }
    ~CommandTest() override {
        m_command.reset();
        m_driver.reset();
        EXPECT_EQ(channel_lines(), Texts());
        EXPECT_TRUE(m_driverChannel.is_empty()) << m_driverChannel.get_text();
        EXPECT_EQ(recording::error_log(), m_log);
        EXPECT_EQ(recording::open_contexts(), 0u);
    }

    static scripted::Script& script() { return scripted::script(); }
    static Texts calls() { return script().take_calls(); }

    // Takes what the command's channel holds, line by line.
    Texts channel_lines() {
        std::string text;
        m_channel.take_text(text, true);
        Texts lines;
        for (std::size_t end; (end = text.find("\r\n")) != std::string::npos; text.erase(0, end + 2))
            lines.push_back(text.substr(0, end));
        EXPECT_EQ(text, "");
        return lines;
    }

    // Creates the command through its factory.
    template <class Factory, class... Arguments>
    auto* create(Factory factory, const Arguments&... arguments) {
        auto* command = (m_driver.get()->*factory)(&m_channel, arguments...);
        m_command.reset(command);
        return command;
    }
    MMachMoveCommand* create_move() {
        return create(&MMachAbstract::NewMMachMoveCommand,
                      MMachAxisTargets{{{"x", {1.5, false}}}, {}, "", "", "", 0});
    }

    CountingNotifier m_notifier;
    MOutputChannel m_driverChannel{0};
    MOutputChannel m_channel{7};
    std::unique_ptr<ConnectedDriver> m_driver;
    std::unique_ptr<MMachCommand> m_command;
    Texts m_log;  // what the error log is expected to hold at the end
};
