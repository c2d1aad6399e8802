// Archives that are whole, and what isn't.
#include "zip_check.h"

#include <gtest/gtest.h>

#include "exit_status.h"
#include "temporary_directory.h"
#include "zipper.h"

namespace {

using namespace zxhost;

class ZipCheckTest : public ::testing::Test {
protected:
    ZipCheckTest() {
        MZipper zipper;
        std::filesystem::create_directory(directory.path("tree"));
        directory.file("tree/a", std::string(100000, 'a') + "b");
        directory.file("tree/c", "c");
        EXPECT_TRUE(zipper.Open(archive));
        EXPECT_TRUE(zipper.FilesToZippArchive(directory.path("tree/").c_str()));
        EXPECT_TRUE(zipper.Close());
    }

    std::string failure(const std::string& bytes) const {
        try {
            check_zip(directory.file("damaged.zip", bytes));
        } catch (const HostError& error) {
            EXPECT_EQ(error.status, ExitStatus::MachineError);
            return error.what();
        }
        return "";
    }

    TemporaryDirectory directory;
    const std::string archive = directory.path("tree.zip");
};

TEST_F(ZipCheckTest, CountsEntriesAndTheirBytes) {
    const ZipFacts facts = check_zip(archive);
    EXPECT_EQ(facts.entries, 2u);
    EXPECT_EQ(facts.bytes, 100002u);
}

TEST_F(ZipCheckTest, AnEmptyArchiveIsWhole) {
    MZipper zipper;
    ASSERT_TRUE(zipper.Open(archive));
    ASSERT_TRUE(zipper.Close());
    EXPECT_EQ(check_zip(archive).entries, 0u);
}

TEST_F(ZipCheckTest, WhatIsCutOrNoArchiveIsRefused) {
    const std::string bytes = directory.content("tree.zip");
    for (std::size_t size = 0; size < bytes.size(); ++size)
        EXPECT_NE(failure(bytes.substr(0, size)), "") << size;
    EXPECT_NE(failure("no archive at all"), "");
    EXPECT_THROW(check_zip(directory.path("none")), HostError);
}

// But for the last byte of an entry, whose bits aren't all used.
TEST_F(ZipCheckTest, EveryByteOfTheDataCounts) {
    const std::string bytes = directory.content("tree.zip");
    const std::size_t data = bytes.find("tree/a") + 6;
    const std::size_t end = bytes.find("PK\x03\x04", 4);
    for (std::size_t at = data; at + 1 < end; ++at) {
        std::string changed = bytes;
        changed[at] = static_cast<char>(changed[at] ^ 0x10);
        EXPECT_NE(failure(changed), "") << at;
    }
}

}  // namespace
