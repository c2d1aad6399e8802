// What every system's registry, or what stands for it, answers.
#include "os/registry.h"

#include <gtest/gtest.h>

namespace {

TEST(Registry, TheVersionIsOneThatAcknowledgesByFrequency) {
    EXPECT_TRUE(os::system_registry().version_is_at_least(5, 0));
    EXPECT_TRUE(os::system_registry().version_is_at_least(5, 1));
    EXPECT_FALSE(os::system_registry().version_is_at_least(1000, 0));
}

TEST(Registry, AKeyThatIsNotThereIsError2) {
    os::Registry::Key key = nullptr;
    EXPECT_EQ(os::system_registry().open_key("SYSTEM\\no such key", os::registry_enumerate, key),
              os::registry_no_value);
    EXPECT_EQ(key, nullptr);
}

}  // namespace
