#include <gtest/gtest.h>

#include <filesystem>

#include "private_configuration.h"

namespace {

namespace fs = std::filesystem;

TEST(PrivateConfigurationPosix, IsForItsOwnerAlone) {
    const zxhost::PrivateConfiguration configuration("127.0.0.1", 7073);
    EXPECT_EQ(fs::status(configuration.directory()).permissions(), fs::perms::owner_all);
}

}  // namespace
