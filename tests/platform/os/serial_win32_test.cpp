#include <gtest/gtest.h>

#include "os/serial.h"

namespace {

TEST(SerialDeviceWin32, OfAName) {
    EXPECT_EQ("COM1", os::serial_device("COM1"));
    EXPECT_EQ("COM17", os::serial_device("COM17"));
    EXPECT_EQ("\\\\.\\COM17", os::serial_device("\\\\.\\COM17"));
    EXPECT_EQ("\\\\.\\COM17", os::serial_device("COM://./COM17"));
    EXPECT_EQ("CNCA0", os::serial_device("COM:CNCA0"));
    for (const char* name : {"", "COM", "COM0", "COM1x", "com1", "COMPUTER"})
        EXPECT_EQ(name, os::serial_device(name));
    EXPECT_EQ("", os::serial_device("COM:"));
}

TEST(PseudoTerminalWin32, TheSystemHasNone) {
    os::PseudoTerminal terminal;
    EXPECT_FALSE(terminal.open());
    EXPECT_EQ("", terminal.device());
    os::serial_discard(terminal.share());
}

}  // namespace
