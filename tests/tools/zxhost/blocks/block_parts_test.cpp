// Sizes as a person reads them.
#include <gtest/gtest.h>

#include "blocks.h"

namespace {

using namespace zxhost;

TEST(SizeText, HasThreeDigitsOrSo) {
    EXPECT_EQ(size_text(0), "0 bytes");
    EXPECT_EQ(size_text(999), "999 bytes");
    EXPECT_EQ(size_text(1000), "1.0 kB");
    EXPECT_EQ(size_text(1234567), "1.2 MB");
    EXPECT_EQ(size_text(999949), "999.9 kB");
    EXPECT_EQ(size_text(999950), "1.0 MB");
    EXPECT_EQ(size_text(5000000000000), "5000.0 GB");
}

}  // namespace
