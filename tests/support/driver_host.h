// A host with a driver of its own, which runs commands to their ends.
#pragma once

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "host_side.h"
#include "m2zendrixmachabstract.h"
#include "moutputchannel.h"

class DriverHost {
public:
    using Points = std::vector<std::vector<double>>;

    // A configuration as the plug-in's entry takes it.
    DriverHost(const std::string& name, const std::string& directory)
        : m_driver(&m_output, &m_notifier, name, directory) {}
    ~DriverHost() {
        m_driver.Close();
        m_driver.PollAsyncErrors();
        m_output.clear();
    }

    M2ZendrixMachAbstract& driver() { return m_driver; }
    MOutputChannel& output() { return m_output; }

    // Polls a command to its end; what it said is returned.
    std::string finish(MMachCommand* command, MOutputChannel& channel) {
        const std::unique_ptr<MMachCommand> owner(command);
        EXPECT_NE(command, nullptr);
        if (!command) return {};
        EXPECT_TRUE(run_host(
            m_notifier, [&] { return command->IsDone(); }, [&] { poll(); }));
        std::string text;
        channel.take_text(text, true);
        return text;
    }

    // Drains a scan to its end.
    template <class ScanCommand, class Step>
    Points drain(ScanCommand* command, Step&& step) {
        const std::unique_ptr<ScanCommand> owner(command);
        Points points;
        std::vector<double> point;
        bool done = false;
        EXPECT_TRUE(run_host(
            m_notifier, [&] { return done; },
            [&] {
                poll();
                step();
                done = command->IsDone();
                while (command->GetNextScanPoint(point)) points.push_back(point);
            }));
        return points;
    }

    void poll() { m_driver.PollAsyncErrors(); }
    WakingNotifier& notifier() { return m_notifier; }

    void initialise() {
        MOutputChannel channel(1);
        const std::string text = finish(m_driver.NewMMachInitCommand(&channel, {}), channel);
        EXPECT_EQ(text.find("error"), std::string::npos) << text;
    }

    std::string move(const AxisTargetMap& targets) {
        MOutputChannel channel(2);
        MMachAxisTargets record;
        record.m_targets = targets;
        return finish(m_driver.NewMMachMoveCommand(&channel, record), channel);
    }

    std::string set(const std::map<std::string, double>& values) {
        MOutputChannel channel(3);
        return finish(m_driver.NewMMachSetCommand(&channel, values), channel);
    }

private:
    WakingNotifier m_notifier;
    MOutputChannel m_output{0};
    M2ZendrixMachAbstract m_driver;
};
