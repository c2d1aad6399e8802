#include "messagetext.h"

#include <gtest/gtest.h>

namespace {

TEST(BareMessage, TakesOffKeywordAndQuotes) {
    EXPECT_EQ(bare_message("error \"internal error\""), "internal error");
    EXPECT_EQ(bare_message("warning \"w\""), "w");
    EXPECT_EQ(bare_message("event \"e\""), "e");
    EXPECT_EQ(bare_message("data 1 2"), "1 2");
    EXPECT_EQ(bare_message("plain"), "plain");
    EXPECT_EQ(bare_message(""), "");
}

TEST(BareMessage, TakesOffOneOfEachOnly) {
    EXPECT_EQ(bare_message("error error \"\"x\"\""), "error \"\"x\"");
    EXPECT_EQ(bare_message("\"error x\""), "error x");
    EXPECT_EQ(bare_message("error data x"), "data x");
    EXPECT_EQ(bare_message("Error \"x\""), "Error \"x");
    EXPECT_EQ(bare_message(" error x"), " error x");
    EXPECT_EQ(bare_message("\""), "");
    EXPECT_EQ(bare_message("error \""), "");
    EXPECT_EQ(bare_message("error"), "error");
}

}  // namespace
