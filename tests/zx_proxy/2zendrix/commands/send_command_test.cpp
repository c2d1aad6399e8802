// Sending a block, and the blocks after which the machine goes away.
#include "command_fixture.h"

namespace {

class SendCommandTest : public CommandTest {
protected:
    MMachSendCommand* create_send(const std::string& name, const std::string& data = "data") {
        return create(&MMachAbstract::NewMMachSendCommand, name, data);
    }
    bool expects_loss_after(const std::string& name) {
        create_send(name);
        return m_driver->m_expectConnectionLoss;
    }
};

TEST_F(SendCommandTest, NameAndDataGoAsTheyAre) {
    const std::string data("\0\xff\r\n\"", 5);
    auto* send = create_send("a\\b \"c\"", data);
    EXPECT_EQ(script().calls_of("Send"), Texts{"Send(\"a\\b \"c\"\", \"" + data + "\")"});
    EXPECT_EQ(send->m_name, "a\\b \"c\"");
    EXPECT_EQ(send->m_data, data);
    EXPECT_TRUE(send->IsDone());
}

TEST_F(SendCommandTest, NothingMayBeSentToo) {
    create_send("", "");
    EXPECT_EQ(script().calls_of("Send"), Texts{"Send(\"\", \"\")"});
}

TEST_F(SendCommandTest, AFirmwareConfigurationAnywhereInTheNameLetsTheDriverExpectTheLoss) {
    EXPECT_FALSE(m_driver->m_expectConnectionLoss);
    EXPECT_TRUE(expects_loss_after("x/firmware.config.old"));
}

TEST_F(SendCommandTest, OtherNamesDoNot) {
    EXPECT_FALSE(expects_loss_after("firmware.conf"));
    EXPECT_FALSE(expects_loss_after("Firmware.Config"));
    EXPECT_FALSE(expects_loss_after("firmware config"));
    EXPECT_FALSE(expects_loss_after(""));
}

TEST_F(SendCommandTest, WhatIsExpectedIsTraced) {
    recording::set_trace_level(1);
    create_send("firmware.config");
    EXPECT_TRUE(recording::trace().empty());
    recording::set_trace_level(2);
    create_send("x/firmware.config.old");
    ASSERT_EQ(recording::trace().size(), 1u);
    EXPECT_EQ(recording::trace().front().level, 2);
    EXPECT_EQ(recording::trace().front().text,
              "M2ZendrixMachAbstract::NewMMachSendCommand(): send to x/firmware.config.old. We expect "
              "connection loss!");
}

TEST_F(SendCommandTest, WithoutAClientNothingIsExpected) {
    m_driver->Close();
    EXPECT_EQ(create_send("firmware.config"), nullptr);
    EXPECT_FALSE(m_driver->m_expectConnectionLoss);
}

TEST_F(SendCommandTest, ASendThatFailsLeavesTheExpectation) {
    script().throw_error("Send", "wrong state");
    EXPECT_TRUE(expects_loss_after("firmware.config"));
    EXPECT_EQ(channel_lines(), Texts{"0007\terror \"wrong state\""});
    m_log = {"m_pZendrixCom->Send() failed: 'wrong state'\n"};
}

TEST_F(SendCommandTest, TheExpectationIsThereBeforeTheBlockLeaves) {
    bool expected = false;
    script().on_call("Send", [&] { expected = m_driver->m_expectConnectionLoss; });
    create_send("firmware.config");
    EXPECT_TRUE(expected);
}

TEST_F(SendCommandTest, TheExpectedLossIsNothingFatalAndLeavesNoMachine) {
    create_send("firmware.config");
    EXPECT_TRUE(m_command->IsDone());
    m_command.reset();
    script().answers.connected = false;
    m_driver->PollAsyncErrors();
    EXPECT_FALSE(m_driverChannel.is_fatal());
    EXPECT_EQ(m_driver->client(), nullptr);
    EXPECT_EQ(create_send("block"), nullptr);
    EXPECT_EQ(create(&MMachAbstract::NewMMachReceiveCommand, std::string("block")), nullptr);
}

}  // namespace
