#include <gtest/gtest.h>

#include <atomic>
#include <csignal>

#include "os/interrupt.h"

namespace {

std::atomic<int> ends{0};

TEST(InterruptPosix, SigtermIsTheWishThatTheProgramEnds) {
    os::set_end_handler([] { ++ends; });
    std::raise(SIGTERM);
    std::raise(SIGTERM);
    EXPECT_EQ(ends, 2);
    os::set_end_handler(nullptr);
}

TEST(InterruptPosix, WhatWasThereBeforeComesBack) {
    std::signal(SIGINT, SIG_IGN);
    os::set_interrupt_handler([] {});
    os::set_interrupt_handler(nullptr);
    EXPECT_EQ(std::signal(SIGINT, SIG_DFL), SIG_IGN);
}

}  // namespace
