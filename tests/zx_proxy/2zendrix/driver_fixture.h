// A driver in front of a scripted client, with its channel, a counting notifier and recorded logs. Each test
// has to name every line of the error log: what is left over at its end fails it.
#pragma once

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "m2zendrixmachabstract.h"
#include "memory_registry.h"
#include "mmachnotifier.h"
#include "moutputchannel.h"
#include "recording_facilities.h"
#include "scripted_czendrixcom.h"

using Lines = std::vector<std::string>;

class CountingNotifier : public MMachNotifier {
public:
    int HasNotification() override { return count; }
    bool Notify() override {
        ++count;
        if (on_notify) on_notify();
        return answer;
    }

    std::atomic<int> count{0};
    std::atomic<bool> answer{true};
    std::function<void()> on_notify;
};

// The driver with its inside open to tests.
class OpenDriver : public M2ZendrixMachAbstract {
public:
    using M2ZendrixMachAbstract::begin_ignore_not_loaded_error;
    using M2ZendrixMachAbstract::convert_capabilities;
    using M2ZendrixMachAbstract::enable_supported_commands;
    using M2ZendrixMachAbstract::end_ignore_not_loaded_error;
    using M2ZendrixMachAbstract::GetFirstKeypadAxisByList;
    using M2ZendrixMachAbstract::M2ZendrixMachAbstract;
    using M2ZendrixMachAbstract::read_app_ini_file;
    using M2ZendrixMachAbstract::update_cached_axes_values;
    using M2ZendrixMachAbstract::update_capabilities;
    using M2ZendrixMachAbstract::update_init_list;
    using M2ZendrixMachAbstract::update_spin_lists;

    using M2ZendrixMachAbstract::autoinfo_callback;

    using M2ZendrixMachAbstract::m_cachedAxes;
    using M2ZendrixMachAbstract::m_cachedAxesLock;
    using M2ZendrixMachAbstract::m_expandVariables;
    using M2ZendrixMachAbstract::m_expectConnectionLoss;
    using M2ZendrixMachAbstract::m_hasInitList;
    using M2ZendrixMachAbstract::m_hasKeypad;
    using M2ZendrixMachAbstract::m_hasMoveLimit;
    using M2ZendrixMachAbstract::m_hasProbes;
    using M2ZendrixMachAbstract::m_hasProbesystems;
    using M2ZendrixMachAbstract::m_hasSpin;
    using M2ZendrixMachAbstract::m_host;
    using M2ZendrixMachAbstract::m_keypadActiveList;
    using M2ZendrixMachAbstract::m_keypadList;
    using M2ZendrixMachAbstract::m_keypadListInactive;
    using M2ZendrixMachAbstract::m_port;
    using M2ZendrixMachAbstract::m_pZendrixCom;
    using M2ZendrixMachAbstract::m_pZendrixComRetired;
    using M2ZendrixMachAbstract::m_registry;

    // Copies of what a lock guards.
    Lines events() {
        os::LockGuard guard(m_eventsLock);
        return {m_events.begin(), m_events.end()};
    }
    Lines errors() {
        os::LockGuard guard(m_errorsLock);
        return {m_errors.begin(), m_errors.end()};
    }
    Lines warnings() {
        os::LockGuard guard(m_warningsLock);
        return {m_warnings.begin(), m_warnings.end()};
    }
    std::set<long> finished_ids() {
        os::LockGuard guard(m_finishedIdsLock);
        return m_finishedIds;
    }
    std::vector<std::vector<double>> autoinfo() {
        os::LockGuard guard(m_autoinfoLock);
        return {m_autoinfo.begin(), m_autoinfo.end()};
    }
    void watch(const Lines& axes) {
        os::LockGuard guard(m_autoinfoLock);
        m_autoinfoAxes = axes;
    }
    std::set<std::string> init_list() {
        os::LockGuard guard(m_initListLock);
        return m_initList;
    }
    std::set<std::string> spin_list() {
        os::LockGuard guard(m_spinListLock);
        return m_spinList;
    }
    std::map<std::string, double> spin_active() {
        os::LockGuard guard(m_spinActiveLock);
        return m_spinActive;
    }
};

class DriverTest : public testing::Test {
protected:
    DriverTest() {
        scripted::script().reset();
        recording::reset();
        registry.add_fast();
        make_driver("no such configuration", "no such directory");
    }
    ~DriverTest() override {
        driver.reset();
        channel.clear();
        EXPECT_EQ(new_log_lines(), Lines()) << "lines that no test asked for";
        EXPECT_TRUE(script.clients().empty()) << "a client is left behind";
        EXPECT_EQ(recording::open_contexts(), 0U);
    }

    void make_driver(const std::string& name, const std::string& directory) {
        driver = std::make_unique<OpenDriver>(&channel, &notifier, name, directory);
        driver->m_registry = &registry;
    }

    // Opens, and forgets the calls that it made.
    void open() {
        ASSERT_TRUE(driver->Open());
        script.take_calls();
        notifier.count = 0;
    }

    // The lines of the error log since the last call.
    Lines new_log_lines() {
        Lines lines = recording::error_log();
        lines.erase(lines.begin(), lines.begin() + static_cast<std::ptrdiff_t>(m_logLinesSeen));
        m_logLinesSeen += lines.size();
        return lines;
    }

    // What the host finds on the driver's channel, which is empty then.
    std::string take_channel() {
        std::string text;
        channel.take_text(text, true);
        return text;
    }

    Lines trace_texts() {
        Lines texts;
        for (const recording::TraceLine& line : recording::trace()) texts.push_back(line.text);
        return texts;
    }

    scripted::Script& script = scripted::script();
    scripted::Answers& answers = scripted::script().answers;
    MOutputChannel channel{0};
    CountingNotifier notifier;
    MemoryRegistry registry;  // one adapter, towards every address, that needs no warning
    std::unique_ptr<OpenDriver> driver;

private:
    std::size_t m_logLinesSeen = 0;
};
