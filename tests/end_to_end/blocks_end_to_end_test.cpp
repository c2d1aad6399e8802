// Blocks of data from the host's commands to the machine's store and back.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <random>

#include "driver_host.h"
#include "log_of_work.h"
#include "recording_facilities.h"
#include "simulated_machine.h"

namespace {

using Texts = std::vector<std::string>;

constexpr const char* name = "m2zendrix";

std::string random_bytes(std::size_t count) {
    std::mt19937_64 random(11);
    std::string bytes(count, '\0');
    for (std::size_t at = 0; at + sizeof(std::uint64_t) <= count; at += sizeof(std::uint64_t)) {
        const std::uint64_t number = random();
        std::memcpy(bytes.data() + at, &number, sizeof number);
    }
    return bytes;
}

// What a command said, and what came.
struct Outcome {
    std::string said;
    std::string data;
};

std::string send(DriverHost& host, const std::string& block, const std::string& data) {
    MOutputChannel channel(5);
    return host.finish(host.driver().NewMMachSendCommand(&channel, block, data), channel);
}

Outcome receive(DriverHost& host, const std::string& block) {
    MOutputChannel channel(6);
    const std::unique_ptr<MMachReceiveCommand> command(host.driver().NewMMachReceiveCommand(&channel, block));
    EXPECT_NE(command, nullptr);
    if (!command) return {};
    EXPECT_TRUE(run_host(
        host.notifier(), [&] { return command->IsDone(); }, [&] { host.poll(); }));
    Outcome outcome;
    channel.take_text(outcome.said, true);
    outcome.data = command->m_data;
    return outcome;
}

// Hosts and their machines: one behind a port, one in the host's own process.
struct Road {
    std::string name;
    std::string settings;  // of the driver's configuration; empty: a server on a port
};

class Blocks : public testing::TestWithParam<Road> {
protected:
    void SetUp() override {
        recording::reset();
        if (GetParam().settings.empty()) {
            m_machine = std::make_unique<SimulatedMachine>();
        } else {
            m_directory.file("m2zendrix.ini", GetParam().settings);
        }
        m_host = std::make_unique<DriverHost>(name, m_machine ? m_machine->directory() : m_directory.path());
        ASSERT_TRUE(m_host->driver().Open());
    }

    DriverHost& host() { return *m_host; }

private:
    TemporaryDirectory m_directory;
    std::unique_ptr<SimulatedMachine> m_machine;
    std::unique_ptr<DriverHost> m_host;
};

TEST_P(Blocks, ComeBackAsTheyWere) {
    std::string all_bytes;
    for (int i = 0; i < 256; ++i) all_bytes.push_back(static_cast<char>(i));
    const std::string blocks[] = {"",
                                  "x",
                                  "\n",
                                  std::string("\0", 1),
                                  "base64 \"QUJD\"",
                                  "\"",
                                  "one\ttwo \"three\" \\four",
                                  all_bytes,
                                  std::string(12288, '\n'),
                                  std::string(12289, '\n'),
                                  std::string(100000, 'x'),
                                  random_bytes(1000003)};
    for (const std::string& block : blocks) {
        EXPECT_EQ(send(host(), "block", block), "");
        const Outcome outcome = receive(host(), "block");
        EXPECT_EQ(outcome.said, "");
        EXPECT_TRUE(outcome.data == block) << block.size();
    }
    EXPECT_EQ(log_of_work(), Texts());
}

TEST_P(Blocks, AHundredMegabytesComeBackAsTheyWere) {
    const std::string block = random_bytes(100'000'000);
    EXPECT_EQ(send(host(), "block", block), "");
    const Outcome outcome = receive(host(), "block");
    EXPECT_EQ(outcome.said, "");
    EXPECT_TRUE(outcome.data == block);
    EXPECT_EQ(receive(host(), "blocks.list").data, "\"block\" 100000000\n");
    EXPECT_EQ(log_of_work(), Texts());
}

TEST_P(Blocks, HaveAnyName) {
    const std::string names[] = {"../../a/b\\c", std::string("n\0l", 3),  "\r\n\"",
                                 "\xff",         "backup.m2zendrix_dll2", std::string(1024, '/')};
    for (const std::string& block : names) {
        EXPECT_EQ(send(host(), block, "of " + block), "");
        EXPECT_EQ(receive(host(), block).data, "of " + block);
    }
    EXPECT_TRUE(receive(host(), "blocks.list").data.starts_with("\"\\r\\n\\\"\" 6\n\"../../a/b"));
}

TEST_P(Blocks, WhatTheMachineRefusesIsTold) {
    const std::string refused = "0005\terror \"argument out of range\"\r\n";
    EXPECT_EQ(send(host(), std::string(10240, 'x'), "x"), refused);
    EXPECT_EQ(send(host(), "blocks.list", "x"), "0005\terror \"invalid argument\"\r\n");
    const Outcome outcome = receive(host(), "there is none");
    EXPECT_EQ(outcome.said, "0006\terror \"invalid argument\"\r\n");
    EXPECT_EQ(outcome.data, "");
    EXPECT_EQ(send(host(), "block", "x"), "");
    EXPECT_EQ(receive(host(), "block").data, "x");
}

INSTANTIATE_TEST_SUITE_P(Roads, Blocks,
                         testing::Values(Road{"tcp", ""},
                                         Road{"library",
                                              "[connection]\nhost=" SIMULATOR_LIBRARY " --speed max\n"}),
                         [](const testing::TestParamInfo<Road>& road) { return road.param.name; });

class SpoiledBlocks : public testing::Test {
protected:
    void SetUp() override { recording::reset(); }
};

TEST_F(SpoiledBlocks, WrongBase64IsTold) {
    for (const char* const fault : {"wrong-base64@block-line:1", "unquoted@block-line:1"}) {
        SimulatedMachine machine({fault});
        DriverHost host(name, machine.directory());
        ASSERT_TRUE(host.driver().Open());
        send(host, "block", "AB\n");
        EXPECT_EQ(receive(host, "block").said, "0006\terror \"base64 decode failed\"\r\n") << fault;
        EXPECT_EQ(receive(host, "block").data, "AB\n") << fault;
    }
}

TEST_F(SpoiledBlocks, AServerThatStopsInTheMiddleIsLost) {
    for (const char* const fault : {"close@block-line:2", "half-line@block-line:2"}) {
        SimulatedMachine machine({fault});
        DriverHost host(name, machine.directory());
        ASSERT_TRUE(host.driver().Open());
        send(host, "block", std::string(40000, 'x'));
        {
            MOutputChannel channel(6);
            const std::unique_ptr<MMachReceiveCommand> command(
                host.driver().NewMMachReceiveCommand(&channel, "block"));
            ASSERT_NE(command, nullptr);
            EXPECT_TRUE(run_host(
                host.notifier(), [&] { return host.output().is_fatal(); },
                [&] {
                    host.poll();
                    EXPECT_FALSE(command->IsDone());
                }))
                << fault;
            EXPECT_EQ(command->m_data, "");
            channel.clear();
        }
        host.driver().Close();
        ASSERT_TRUE(host.driver().Open());
        EXPECT_EQ(receive(host, "block").data, std::string(40000, 'x')) << fault;
    }
}

// The host sends it, sees the machine go without a complaint, and finds another.
TEST(Firmware, IsTakenAndTheMachineComesBackWithAnotherRevision) {
    recording::reset();
    SimulatedMachine machine;
    DriverHost host(name, machine.directory());
    ASSERT_TRUE(host.driver().Open());
    const std::string before = host.driver().GetMachineRevision();
    std::string revision = before;
    for (const std::size_t size : {std::size_t{7}, std::size_t{1000000}}) {
        host.initialise();
        EXPECT_EQ(send(host, "x/firmware.config.old", std::string(size, '\n')), "");
        EXPECT_TRUE(run_host(
            host.notifier(), [&] { return std::isnan(host.driver().GetAxisValue("x")); },
            [&] { host.poll(); }));
        host.poll();
        MOutputChannel channel(7);
        EXPECT_EQ(host.driver().NewMMachReceiveCommand(&channel, "block"), nullptr);
        EXPECT_FALSE(host.output().is_fatal());
        EXPECT_EQ(std::string(host.output().get_text()).find("error"), std::string::npos);

        host.driver().Close();
        ASSERT_TRUE(host.driver().Open());
        EXPECT_NE(host.driver().GetMachineRevision(), revision);
        revision = host.driver().GetMachineRevision();
        EXPECT_FALSE(host.driver().IsInitialized());
        EXPECT_EQ(receive(host, "x/firmware.config.old").data, std::string(size, '\n'));
    }
    EXPECT_EQ(before, "2.4");
    EXPECT_EQ(revision, "2.6");
}

}  // namespace
