#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <numbers>
#include <sstream>

#include "exit_status.h"
#include "known_ring.h"
#include "private_configuration.h"

namespace {

using namespace zxhost;
namespace fs = std::filesystem;

TEST(PrivateConfiguration, LastsAsLongAsTheObject) {
    fs::path directory;
    {
        const PrivateConfiguration configuration("127.0.0.1", 7073);
        directory = configuration.directory();
        std::ifstream file(directory / "m2zendrix.ini", std::ios::binary);
        std::ostringstream text;
        text << file.rdbuf();
        EXPECT_EQ(text.str(), "[connection]\nhost=127.0.0.1\nport=7073\n");
    }
    EXPECT_FALSE(fs::exists(directory));
}

TEST(PrivateConfiguration, RefusesHostsThatTheFileCannotCarry) {
    for (const char* host : {"", "a b", "a;b", "a//b", "a\nport=1", "COM3", "sim.dll"})
        EXPECT_THROW(PrivateConfiguration(host, 1), HostError) << host;
}

class KnownRingFile : public ::testing::Test {
protected:
    KnownRing read(const std::string& text) {
        std::ofstream(m_file, std::ios::binary) << text;
        return read_known_ring(m_file.string());
    }

    std::string refusal(const std::string& text) {
        try {
            read(text);
        } catch (const HostError& error) {
            EXPECT_EQ(error.status, ExitStatus::WrongUsage);
            const std::string what = error.what();
            return what.substr(what.find('[') == std::string::npos ? 0 : what.find('['));
        }
        return "none";
    }

    void TearDown() override { fs::remove(m_file); }

    const std::string m_ring = "[workpiece]\nkind=ring\ncenter_x=10.5\ncenter_y=-5\ncenter_z=20\nradius=25\n";
    fs::path m_file = fs::temp_directory_path() /
                      ("zxhost-ring-" +
                       std::string(::testing::UnitTest::GetInstance()->current_test_info()->name()) + ".ini");
};

TEST_F(KnownRingFile, ReadsTheWorkpiece) {
    const KnownRing ring = read(m_ring + "harmonics=2:0.004:30 3:0.0025:75\nnoise = 0.0002\nspindle=c\n");
    EXPECT_EQ(ring.centre.x, 10.5);
    EXPECT_EQ(ring.centre.y, -5.0);
    EXPECT_EQ(ring.height, 20.0);
    EXPECT_EQ(ring.radius, 25.0);
    EXPECT_EQ(ring.noise, 0.0002);
    EXPECT_EQ(ring.spindle, "c");
    ASSERT_EQ(ring.waves.size(), 2u);
    EXPECT_EQ(ring.waves[1].phase, 75.0);
}

TEST_F(KnownRingFile, KnowsItsForm) {
    const KnownRing ring = read(m_ring + "harmonics=2:0.004:45\nnoise=0\n");
    EXPECT_NEAR(ring.deviation(std::numbers::pi / 4), 0.004, 1e-12);
    EXPECT_NEAR(ring.deviation(0.0), 0.0, 1e-12);
    EXPECT_NEAR(ring.peak_to_valley(), 0.008, 1e-9);
    EXPECT_NEAR(ring.rms(), 0.004 / std::numbers::sqrt2, 1e-9);
}

TEST_F(KnownRingFile, NamesTheKeyThatIsWrong) {
    EXPECT_EQ(refusal(m_ring), "[workpiece] noise is missing or no number");
    EXPECT_EQ(refusal(m_ring + "noise=much\n"), "[workpiece] noise is missing or no number");
    EXPECT_EQ(refusal(m_ring + "noise=0\nharmonics=2:0.1\n"), "[workpiece] harmonics holds '2:0.1'");
    EXPECT_EQ(refusal(m_ring + "noise=0\nharmonics=2:x:1\n"), "[workpiece] harmonics holds '2:x:1'");
    EXPECT_EQ(refusal(m_ring + "noise=0\nharmonics=1:1:1\n"),
              "[workpiece] harmonics holds fewer than two waves: '1:1:1'");
    EXPECT_EQ(refusal("[workpiece]\nkind=plane\n"), "[workpiece] kind is not ring");
    EXPECT_THROW(read_known_ring("no/such/file.ini"), HostError);
}

}  // namespace
