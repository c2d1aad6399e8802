// Files that are there whole or not at all, whatever call of the system fails.
#include "new_file.h"

#include <gtest/gtest.h>

#include "exit_status.h"
#include "faulty_files.h"
#include "input_bytes.h"
#include "os/interrupt.h"
#include "temporary_directory.h"

namespace {

using namespace zxhost;

class NewFileTest : public ::testing::Test {
protected:
    std::size_t count() const {
        const std::filesystem::directory_iterator all(directory.path());
        return static_cast<std::size_t>(std::distance(begin(all), end(all)));
    }

    // The text of what it throws.
    std::string failure(const std::string& file, bool replace, const std::string& bytes) const {
        try {
            write_new_file(file, replace, bytes);
        } catch (const HostError& error) {
            EXPECT_EQ(error.status, ExitStatus::WrongUsage);
            return error.what();
        }
        return "";
    }

    TemporaryDirectory directory;
    const std::string target = directory.path("target");
};

TEST_F(NewFileTest, IsWholeUnderAnotherNameWhenItIsVerified) {
    const std::string bytes(3000000, 'x');
    bool was_verified = false;
    write_new_file(target, false, bytes, [&](const std::string& path) {
        was_verified = true;
        EXPECT_NE(path, target);
        EXPECT_FALSE(std::filesystem::exists(target));
        EXPECT_EQ(std::filesystem::file_size(path), bytes.size());
    });
    EXPECT_TRUE(was_verified);
    EXPECT_TRUE(directory.content("target") == bytes);
    EXPECT_EQ(count(), 1u);
    write_new_file(directory.path("empty"), false, "");
    EXPECT_EQ(std::filesystem::file_size(directory.path("empty")), 0u);
}

TEST_F(NewFileTest, IsGoneIfItIsNotVerified) {
    directory.file("target", "old");
    EXPECT_THROW(write_new_file(target, true, "new",
                                [](const std::string&) { throw HostError(ExitStatus::MachineError, "bad"); }),
                 HostError);
    EXPECT_EQ(directory.content("target"), "old");
    EXPECT_EQ(count(), 1u);
}

TEST_F(NewFileTest, WhateverCallFailsNothingIsHalfWritten) {
    const std::string bytes(2500000, 'x');
    for (const bool replaces : {false, true}) {
        for (int nth = 1; nth <= 12; ++nth) {
            std::filesystem::remove(target);
            if (replaces) directory.file("target", "old");
            std::string told;
            {
                FaultyFiles files;
                files.spoil_call(nth, Fault::fails, ENOSPC);
                told = failure(target, replaces, bytes);
                EXPECT_EQ(files.open_handles(), 0);
            }
            const bool is_new = directory.content("target") == bytes;
            EXPECT_EQ(is_new, told.empty()) << nth << told;
            EXPECT_EQ(std::filesystem::exists(target), is_new || replaces) << nth;
            EXPECT_EQ(directory.content("target"), is_new ? bytes : replaces ? "old" : "") << nth;
            EXPECT_EQ(count(), std::filesystem::exists(target) ? 1u : 0u) << nth << told;
        }
    }
}

TEST_F(NewFileTest, ShortWritesAreGoneOnWith) {
    FaultyFiles files;
    files.shorten(1000);
    write_new_file(target, false, std::string(5001, 'x'));
    EXPECT_EQ(std::filesystem::file_size(target), 5001u);
    files.spoil_call(3, Fault::moves_none, 0);
    EXPECT_NE(failure(directory.path("other"), false, "x"), "");
    EXPECT_EQ(count(), 1u);
}

TEST_F(NewFileTest, WhatSomebodyMakesMeanwhileStays) {
    FaultyFiles files;
    files.before("flush", 1, [&] { directory.file("target", "theirs"); });
    EXPECT_NE(failure(target, false, "ours").find("is there already"), std::string::npos);
    EXPECT_EQ(directory.content("target"), "theirs");
    EXPECT_EQ(count(), 1u);
}

TEST_F(NewFileTest, CtrlCLeavesNothing) {
    FaultyFiles files;
    files.before("flush", 1, [] { os::interrupt_this_process(); });
    EXPECT_THROW(write_new_file(target, false, "bytes"), HostError);
    EXPECT_EQ(count(), 0u);
}

TEST_F(NewFileTest, ACheckLeavesNothing) {
    check_new_file(target, false);
    EXPECT_EQ(count(), 0u);
    directory.file("target", "old");
    check_new_file(target, true);
    EXPECT_THROW(check_new_file(target, false), HostError);
    EXPECT_THROW(check_new_file(directory.path(), true), HostError);
    EXPECT_THROW(check_new_file(directory.path("none/target"), true), HostError);
    EXPECT_EQ(count(), 1u);
}

TEST_F(NewFileTest, ReadingTakesAllBytesOrThrows) {
    const std::string bytes = std::string(2500000, '\0') + "\r\n\x1a";
    directory.file("target", bytes);
    EXPECT_TRUE(read_bytes(target) == bytes);
    EXPECT_THROW(read_bytes(directory.path("none")), HostError);
    EXPECT_THROW(read_bytes(directory.path()), HostError);
    FaultyFiles files;
    files.fail("read", 2, EIO);
    EXPECT_THROW(read_bytes(target), HostError);
    EXPECT_EQ(files.open_handles(), 0);
    files.shorten(777);
    EXPECT_TRUE(read_bytes(target) == bytes);
}

}  // namespace
