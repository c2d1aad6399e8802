#include "idsource.h"

#include <gtest/gtest.h>

#include "request.h"

namespace {

TEST(IdSource, CountsFromOneAndNeverGivesZero) {
    serverdll::IdSource ids;
    EXPECT_EQ(ids.next(), 1);
    EXPECT_EQ(ids.next(), 2);
}

TEST(IdSource, AfterTheWrapItLeavesOutWhatIsHeld) {
    serverdll::IdSource ids(wire::max_id - 2);
    int owner = 0;
    int other = 0;
    ids.hold(1, &owner);
    ids.hold(2, &other);
    ids.hold(4, &owner);
    EXPECT_EQ(ids.next(), 2147483646);
    EXPECT_EQ(ids.next(), 2147483647);
    EXPECT_EQ(ids.next(), 3);
    ids.release_all(&owner);
    EXPECT_EQ(ids.next(), 4);
}

TEST(IdSource, AReleasedIdComesAgain) {
    serverdll::IdSource ids(wire::max_id);
    int owner = 0;
    ids.hold(1, &owner);
    ids.hold(2, &owner);
    ids.release(1);
    EXPECT_EQ(ids.next(), 1);
    EXPECT_EQ(ids.next(), 3);
}

}  // namespace
