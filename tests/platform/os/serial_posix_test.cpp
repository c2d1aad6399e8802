#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "os/serial.h"

namespace {

TEST(SerialDevicePosix, OfAName) {
    EXPECT_EQ("/dev/ttyS0", os::serial_device("COM1"));
    EXPECT_EQ("/dev/ttyS2", os::serial_device("COM3"));
    EXPECT_EQ("/dev/ttyS16", os::serial_device("COM17"));
    EXPECT_EQ("/dev/ttyUSB0", os::serial_device("COM:/dev/ttyUSB0"));
    EXPECT_EQ("/dev/ttyUSB0", os::serial_device("COM:\\dev\\ttyUSB0"));
    EXPECT_EQ("/dev/serial/by-id/COMPANY-1", os::serial_device("/dev/serial/by-id/COMPANY-1"));
    for (const char* name : {"", "COM", "COM0", "COM-1", "COM1x", "COM 1", "com1", "COMPUTER"})
        EXPECT_EQ(name, os::serial_device(name));
    EXPECT_EQ("", os::serial_device("COM:"));
}

class PseudoTerminalPosix : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(terminal.open());
        ours = static_cast<int>(terminal.share());
        theirs = ::open(terminal.device().c_str(), O_RDWR | O_NOCTTY);
        ASSERT_GE(ours, 0);
        ASSERT_GE(theirs, 0);
    }
    void TearDown() override {
        ::close(ours);
        ::close(theirs);
    }

    os::PseudoTerminal terminal;
    int ours = -1;
    int theirs = -1;
};

TEST_F(PseudoTerminalPosix, CarriesEveryByteAsItIs) {
    std::string all;
    for (int value = 0; value < 256; ++value) all.push_back(static_cast<char>(value));
    for (const auto& [from, to] : {std::pair(ours, theirs), std::pair(theirs, ours)}) {
        ASSERT_EQ(static_cast<ssize_t>(all.size()), ::write(from, all.data(), all.size()));
        std::string got(all.size(), '\0');
        std::size_t count = 0;
        while (count < got.size()) {
            const ssize_t more = ::read(to, got.data() + count, got.size() - count);
            ASSERT_GT(more, 0);
            count += static_cast<std::size_t>(more);
        }
        EXPECT_EQ(all, got);
    }
}

TEST_F(PseudoTerminalPosix, WhatIsDiscardedIsNeverRead) {
    ASSERT_EQ(3, ::write(ours, "old", 3));
    os::serial_discard(theirs);
    ASSERT_EQ(3, ::write(ours, "new", 3));
    char got[8] = "";
    EXPECT_EQ(3, ::read(theirs, got, sizeof got));
    EXPECT_STREQ("new", got);
}

TEST_F(PseudoTerminalPosix, OutlivesWhoeverOpensItAndEndsWithUs) {
    ::close(theirs);
    theirs = ::open(terminal.device().c_str(), O_RDWR | O_NOCTTY);
    ASSERT_EQ(1, ::write(theirs, "x", 1));
    char got = '\0';
    EXPECT_EQ(1, ::read(ours, &got, 1));
    ::close(ours);
    ours = -1;
    terminal.close();
    EXPECT_LE(::read(theirs, &got, 1), 0);
}

}  // namespace
