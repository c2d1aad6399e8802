// A process that is killed while it saves by renaming leaves the old file or the new one, whole.

#include <gtest/gtest.h>

#include <chrono>
#include <random>
#include <string>
#include <vector>

#include "MIniData.h"
#include "faulty_files.h"
#include "temporary_directory.h"
#include "test_process.h"
#include "versions.h"

namespace {

using test_support::Process;
using test_support::run_process;

class KilledSaveTest : public ::testing::Test {
protected:
    void SetUp() override { save(0); }

    void save(int version) {
        MIniData ini(MINIDATA_SAVE_BY_RENAME);
        ASSERT_TRUE(ini.Open(m_path) && ini.SetContentString(version_of_file(version)) && ini.Save());
    }

    // The version that the file holds whole, or -1.
    int version() const {
        MIniData ini;
        std::string text;
        if (ini.Open(m_path)) ini.GetContentString(text);
        for (const int number : {0, 1}) {
            if (text == version_of_file(number)) return number;
        }
        return -1;
    }

    TemporaryDirectory m_directory;
    const std::string m_path = m_directory.path("x.ini");
};

TEST_F(KilledSaveTest, BeforeAnyCallAndWithinAWriteTheOldFileStays) {
    std::vector<std::string> calls;
    {
        FaultyFiles files;
        save(0);
        calls = files.all_calls();
    }
    for (std::size_t i = 0; i < calls.size(); ++i) {
        const std::string nth = std::to_string(i + 1);
        EXPECT_TRUE(run_process(SAVER, {m_path, nth, "before"}).killed) << nth << " " << calls[i];
        EXPECT_EQ(0, version()) << "before " << nth << " " << calls[i];
        if (calls[i] != "write") continue;
        EXPECT_TRUE(run_process(SAVER, {m_path, nth, "within"}).killed) << nth;
        EXPECT_EQ(0, version()) << "within " << nth;
    }
    EXPECT_EQ(0, run_process(SAVER, {m_path, std::to_string(calls.size() + 1), "before"}).exit_status);
    EXPECT_EQ(1, version());
}

TEST_F(KilledSaveTest, AtAnyMoment) {
    constexpr int rounds = 40;
    std::minstd_rand random(4711);
    std::uniform_int_distribution<int> microseconds(0, 6000);
    for (int round = 0; round < rounds; ++round) {
        Process saver(SAVER, {m_path});
        ASSERT_TRUE(saver.wait_for("saved"));
        const auto end = std::chrono::steady_clock::now() + std::chrono::microseconds(microseconds(random));
        while (std::chrono::steady_clock::now() < end) {
        }
        saver.kill();
        EXPECT_TRUE(saver.wait().killed);
        ASSERT_NE(-1, version()) << "round " << round;
    }
    save(0);
    EXPECT_EQ(0, version());
}

}  // namespace
