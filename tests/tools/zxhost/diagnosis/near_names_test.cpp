#include "near_names.h"

#include <gtest/gtest.h>

namespace zxhost {
namespace {

TEST(NearNamesTest, EditsAreCounted) {
    EXPECT_EQ(edit_distance("", ""), 0U);
    EXPECT_EQ(edit_distance("port", ""), 4U);
    EXPECT_EQ(edit_distance("port", "port"), 0U);
    EXPECT_EQ(edit_distance("port", "prt"), 1U);
    EXPECT_EQ(edit_distance("port", "porrt"), 1U);
    EXPECT_EQ(edit_distance("port", "pory"), 1U);
    EXPECT_EQ(edit_distance("port", "prot"), 1U) << "neighbours exchanged";
    EXPECT_EQ(edit_distance("kitten", "sitting"), 3U);
}

TEST(NearNamesTest, ANearNameIsTold) {
    EXPECT_EQ(nearness("host", "host"), Nearness::same);
    EXPECT_EQ(nearness("Host", "host"), Nearness::case_differs);
    EXPECT_EQ(nearness(" connection ", "connection"), Nearness::blanks_differ);
    EXPECT_EQ(nearness("cached axes", "cached_axes"), Nearness::blanks_differ);
    EXPECT_EQ(nearness("CachedAxes", "cached_axes"), Nearness::blanks_differ);
    EXPECT_EQ(nearness("conection", "connection"), Nearness::misspelt);
    EXPECT_EQ(nearness("cached_axis", "cached_axes"), Nearness::misspelt);
    EXPECT_EQ(nearness("hosts", "host"), Nearness::misspelt);
}

TEST(NearNamesTest, AnotherNameIsFar) {
    EXPECT_EQ(nearness("path", "port"), Nearness::far);
    EXPECT_EQ(nearness("hostname", "host"), Nearness::far);
    EXPECT_EQ(nearness("", "host"), Nearness::far);
    EXPECT_EQ(nearness(std::string(1000000, 'x'), "host"), Nearness::far);
}

}  // namespace
}  // namespace zxhost
