// firmware from outside: the machine goes and comes back as another.
#include "block_host.h"
#include "zxhost_programs.h"

namespace zxhost_test {
namespace {

class Firmware : public BlockVerbTest {
protected:
    std::string revision() const { return json({"info"})["revision"]; }
};

TEST_F(Firmware, TheMachineComesBackWithANewRevision) {
    const std::string before = revision();
    const Json row = json({"firmware", file("new.config", "settings"), "--yes"})[0];
    EXPECT_EQ(row["before"], before);
    EXPECT_NE(row["after"], before);
    EXPECT_EQ(row["after"], revision());
    EXPECT_EQ(said({"receive", "firmware.config", "-"}), "settings");
}

TEST_F(Firmware, SaysNothingOfTheLossThatItExpects) {
    const ProcessResult result = run({"firmware", file("new.config", "settings"), "--yes"});
    EXPECT_EQ(result.exit_status, 0);
    EXPECT_EQ(result.err, "");
}

TEST_F(Firmware, TheNameMayHoldMore) {
    EXPECT_EQ(run({"firmware", file("f", "x"), "--block", "x/firmware.config.old", "--yes"}).exit_status, 0);
    EXPECT_EQ(said({"receive", "x/firmware.config.old", "-"}), "x");
    expect_refusal({"firmware", path("f"), "--block", "firmware.conf", "--yes"}, 2, {"firmware.config"});
}

TEST_F(Firmware, WithoutAPersonItMustBeToldToGoOn) {
    const std::string before = revision();
    expect_refusal({"firmware", file("f", "x")}, 2, {"--yes"});
    expect_refusal({"firmware", path("none"), "--yes"}, 2, {path("none"), "can't be read"});
    expect_refusal({"firmware", path("f"), "--yes", "--wait", "-1"}, 2, {"--wait"});
    EXPECT_EQ(revision(), before);
}

TEST_F(Firmware, AMachineThatRefusesItStaysAsItIs) {
    const RichMachine refusing({"--fault", "refuse@send:1"});
    const std::string input =
        file("lines", "firmware " + file("f", "x") + " --yes\nget x\ninfo --format json\n");
    const ProcessResult result = start_at(refusing.port(), {"shell"}, input)->wait();
    EXPECT_EQ(result.exit_status, 1);
    EXPECT_NE(result.err.find("zxhost: send: "), std::string::npos) << result.err;
    EXPECT_NE(result.out.find("\"revision\": \"" + revision()), std::string::npos) << result.out;
}

TEST_F(Firmware, AShellGoesOnWithTheNewMachineAndNoticesItsLoss) {
    RichMachine mortal;
    const std::string input = file("lines", "firmware " + file("f", "x") + " --yes\nget x\n");
    const ProcessResult result = start_at(mortal.port(), {"shell"}, input)->wait();
    EXPECT_EQ(result.exit_status, 0) << result.err;
    EXPECT_NE(result.out.find("axis"), std::string::npos) << result.out;
    const std::string script = file("s.zx", "firmware " + path("f") + " --yes\nwatch x --interval 1\n");
    const auto process = start_at(mortal.port(), {"run", script});
    ASSERT_TRUE(process->wait_for(" 20   ")) << process->out() << process->err();
    mortal.process().kill();
    const ProcessResult lost = process->wait();
    EXPECT_EQ(lost.exit_status, 3);
    EXPECT_NE(lost.err.find("machine connection lost"), std::string::npos) << lost.err;
}

TEST_F(Firmware, AMachineThatStaysAwayIsToldInTime) {
    const Simulator slow({"--speed", "1"},
                         {initialized[0], {"[axis x]", "[blocks]\nrestart=1000\n\n[axis x]"}});
    const ProcessResult result =
        start_at(slow.port(), {"firmware", file("f", "x"), "--yes", "--wait", "0.5"})->wait();
    EXPECT_EQ(result.exit_status, 3) << result.out;
    EXPECT_NE(result.err.find("isn't back within 0.5 s"), std::string::npos) << result.err;
}

TEST_F(Firmware, CtrlCEndsTheWait) {
    const Simulator slow({"--speed", "1"},
                         {initialized[0], {"[axis x]", "[blocks]\nrestart=1000\n\n[axis x]"}});
    const auto process = start_at(slow.port(), {"--progress", "firmware", file("f", "x"), "--yes"});
    ASSERT_TRUE(process->wait_for("to come back")) << process->err();
    process->interrupt();
    const ProcessResult result = process->wait();
    EXPECT_EQ(result.exit_status, 1);
    EXPECT_NE(result.err.find("aborted: the machine has the firmware"), std::string::npos) << result.err;
}

}  // namespace
}  // namespace zxhost_test
