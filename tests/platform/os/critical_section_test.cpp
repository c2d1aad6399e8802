#include "os/critical_section.h"

#include <gtest/gtest.h>

#include <future>

namespace {

bool another_thread_gets(os::CriticalSection& section) {
    return std::async(std::launch::async,
                      [&section] {
                          const bool entered = section.try_enter();
                          if (entered) section.leave();
                          return entered;
                      })
        .get();
}

TEST(CriticalSection, IsOpenToItsOwnerAndToNobodyElse) {
    os::CriticalSection section;
    EXPECT_TRUE(another_thread_gets(section));
    section.enter();
    EXPECT_TRUE(section.try_enter());
    EXPECT_FALSE(another_thread_gets(section));
    section.leave();
    EXPECT_FALSE(another_thread_gets(section)) << "left less often than it was entered";
    section.leave();
    EXPECT_TRUE(another_thread_gets(section));
}

TEST(CriticalSection, LetsTheNextOneIn) {
    os::CriticalSection section;
    section.enter();
    int count = 0;
    auto other = std::async(std::launch::async, [&] {
        section.enter();
        const int seen = count;
        section.leave();
        return seen;
    });
    count = 1;
    section.leave();
    EXPECT_EQ(1, other.get());
}

}  // namespace
