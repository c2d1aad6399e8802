// blocks, send and receive from outside.
#include "block_host.h"

namespace zxhost_test {
namespace {

class Blocks : public BlockVerbTest {
protected:
    // The machine takes these bytes and gives them back.
    void expect_round_trip(const std::string& block, const std::string& bytes) {
        const std::string sent = file("sent", bytes);
        EXPECT_EQ(json({"send", block, sent})[0],
                  Json({{"block", block}, {"bytes", bytes.size()}, {"file", sent}}));
        EXPECT_EQ(json({"receive", block, path("received"), "--force"})[0]["bytes"], bytes.size());
        EXPECT_TRUE(directory.content("received") == bytes) << block;
    }
};

TEST_F(Blocks, ComeBackByteByByte) {
    expect_round_trip("empty", "");
    expect_round_trip("one", "x");
    expect_round_trip("text", "two words and \"quotes\" \\");
    expect_round_trip("lines", "a\r\nb\nc\rd");
    expect_round_trip("zeros", std::string(1000, '\0'));
    expect_round_trip("noise", noise(3000000));
    expect_round_trip("base64 \"QUJD\"", "base64 \"QUJD\"");
}

TEST_F(Blocks, AreListedWithTheirSizes) {
    const std::size_t before = json({"blocks"}).size();
    run({"send", "b/../c \"d\"", file("b", noise(1234))});
    run({"send", "a", file("a", "")});
    const Json rows = json({"blocks"});
    EXPECT_EQ(rows.size(), before + 2);
    EXPECT_NE(std::find(rows.begin(), rows.end(), Json({{"block", "a"}, {"bytes", 0}})), rows.end());
    EXPECT_NE(std::find(rows.begin(), rows.end(), Json({{"block", "b/../c \"d\""}, {"bytes", 1234}})),
              rows.end());
    EXPECT_NE(said({"blocks"}).find("b/../c \"d\""), std::string::npos);
}

TEST_F(Blocks, TravelThroughStandardStreams) {
    const std::string bytes = noise(70000) + "\r\n\x1a\n";
    EXPECT_EQ(start_at(machine.port(), {"send", "piped", "-"}, file("input", bytes))->wait().exit_status, 0);
    EXPECT_TRUE(said({"receive", "piped", "-"}) == bytes);
    EXPECT_EQ(start_at(machine.port(), {"send", "piped", "-"})->wait().exit_status, 0);
    EXPECT_EQ(said({"receive", "piped", "-"}), "");
}

TEST_F(Blocks, AFileThatIsThereStaysUnlessToldOtherwise) {
    run({"send", "a", file("new", "new")});
    file("old", "old");
    expect_refusal({"receive", "a", path("old")}, 2, {"is there already", "--force"});
    EXPECT_EQ(directory.content("old"), "old");
    EXPECT_EQ(run({"receive", "a", path("old"), "--force"}).exit_status, 0);
    EXPECT_EQ(directory.content("old"), "new");
    EXPECT_EQ(files(), (Words{"new", "old"}));
}

TEST_F(Blocks, WhatCanNotBeReadOrWrittenIsWrongUsage) {
    expect_refusal({"send", "a", path("none")}, 2, {path("none"), "can't be read"});
    expect_refusal({"send", "a", directory.path()}, 2, {"can't be read"});
    expect_refusal({"send", "", file("f", "x")}, 2, {"a block needs a name"});
    expect_refusal({"send", "a"}, 2, {"FILE", "zxhost send --help"});
    expect_refusal({"receive", "a", path("none/file")}, 2, {"can't be written"});
    expect_refusal({"receive", "a", directory.path(), "--force"}, 2, {"it is a directory"});
    expect_refusal({"receive", "a", path("x") + "/", "--force"}, 2, {"can't be written"});
    expect_refusal({"receive", "a", ""}, 2, {"can't be written"});
    expect_refusal({"receive", "", path("x")}, 2, {"a block needs a name"});
    EXPECT_EQ(files(), Words{"f"});
}

TEST_F(Blocks, WhatTheMachineRefusesLeavesNoFile) {
    const std::string sent = file("sent", "x");
    expect_refusal({"receive", "no such", path("x")}, 1,
                   {"zxhost: receive: invalid argument", "zxhost blocks"});
    expect_refusal({"send", "blocks.list", sent}, 1, {"zxhost: send: invalid argument"});
    expect_refusal({"send", std::string(1025, 'n'), sent}, 1, {"zxhost: send: argument out of range"});
    EXPECT_EQ(run({"send", std::string(1024, 'n'), sent}).exit_status, 0);
    EXPECT_EQ(files(), Words{"sent"});
}

TEST_F(Blocks, NamesWithAMeaningOfTheirOwnHaveVerbsOfTheirOwn) {
    expect_refusal({"send", "my.firmware.config", file("f", "x")}, 2, {"zxhost firmware FILE"});
    expect_refusal({"receive", "backup.m2zendrix_dll", path("b")}, 2, {"zxhost backup FILE.zip"});
    EXPECT_EQ(run({"send", "firmware.conf", path("f")}).exit_status, 0);
}

TEST_F(Blocks, AMachineThatStopsInTheMiddleLeavesNoFile) {
    for (const char* fault : {"close@block-line:2", "reset@block-line:2", "half-line@block-line:2"}) {
        const RichMachine faulty({"--fault", fault});
        EXPECT_EQ(run_on(faulty, {"send", "big", file("big", noise(5000000))}).exit_status, 0);
        const ProcessResult result = run_on(faulty, {"receive", "big", path("x")});
        EXPECT_EQ(result.exit_status, 3) << fault << result.err;
        EXPECT_NE(result.err.find("machine connection lost"), std::string::npos) << result.err;
        EXPECT_EQ(files(), Words{"big"}) << fault;
    }
}

TEST_F(Blocks, AMachineThatStopsWhileItTakesIsLost) {
    const RichMachine faulty({"--fault", "close@send part:2"});
    const ProcessResult result = run_on(faulty, {"send", "big", file("big", noise(5000000))});
    EXPECT_NE(result.exit_status, 0);
    EXPECT_NE(result.err.find("zxhost: "), std::string::npos) << result.err;
    EXPECT_EQ(run_on(faulty, {"receive", "big", path("x")}).exit_status, 1);
    EXPECT_EQ(files(), Words{"big"});
}

TEST_F(Blocks, WrongBase64IsTold) {
    const RichMachine faulty({"--fault", "wrong-base64@block-line:1"});
    EXPECT_EQ(run_on(faulty, {"send", "bytes", file("bytes", noise(500))}).exit_status, 0);
    expect_refusal(faulty, {"receive", "bytes", path("x")}, 1, {"zxhost: receive: base64 decode failed"});
    EXPECT_EQ(files(), Words{"bytes"});
    EXPECT_EQ(run_on(faulty, {"receive", "bytes", path("x")}).exit_status, 0);
}

// What can't be taken apart at all never ends for the driver: a person ends it.
TEST_F(Blocks, ASecondCtrlCLeavesATransferThatDoesNotEnd) {
    const RichMachine faulty({"--fault", "short@block-line:1"});
    EXPECT_EQ(run_on(faulty, {"send", "bytes", file("bytes", noise(500))}).exit_status, 0);
    const auto process = start_at(faulty.port(), {"--progress", "receive", "bytes", path("x")});
    ASSERT_TRUE(process->wait_for("receive: ")) << process->err();
    process->interrupt();
    ASSERT_TRUE(process->wait_for("press Ctrl-C again")) << process->err();
    process->interrupt();
    EXPECT_EQ(process->wait().exit_status, 1);
    EXPECT_EQ(files(), Words{"bytes"});
}

TEST_F(Blocks, ARefusedTransferIsTold) {
    const RichMachine refusing({"--fault", "refuse@receive:1", "--fault", "refuse@send:1"});
    expect_refusal(refusing, {"receive", "a", path("x")}, 1, {"zxhost: receive: internal error"});
    expect_refusal(refusing, {"send", "a", file("f", "x")}, 1, {"zxhost: send: "});
    EXPECT_EQ(run_on(refusing, {"send", "a", path("f")}).exit_status, 0);
}

TEST_F(Blocks, ProgressIsToldWhereItIsAskedFor) {
    const std::string sent = file("big", noise(2000000));
    const ProcessResult result = run({"--progress", "send", "big", sent});
    EXPECT_NE(result.err.find("send: 2.0 MB"), std::string::npos) << result.err;
    EXPECT_NE(run({"--progress", "receive", "big", path("x")}).err.find("receive: "), std::string::npos);
    EXPECT_EQ(run({"receive", "big", path("y")}).err, "");
}

TEST_F(Blocks, AShellAndAScriptKnowThem) {
    const std::string script =
        file("blocks.zx", "send 'a block' " + file("f", "text") + "\nreceive 'a block' " + path("g") +
                              "\nblocks\nreceive 'a block' -\n");
    const ProcessResult checked = run({"run", "--check", script});
    EXPECT_EQ(checked.exit_status, 0) << checked.out << checked.err;
    EXPECT_FALSE(std::filesystem::exists(path("g")));
    EXPECT_NE(run({"run", script}).out.find("text"), std::string::npos);
    EXPECT_EQ(directory.content("g"), "text");
    const ProcessResult shell =
        start_at(machine.port(), {"shell"}, file("lines", "send a -\nreceive 'a block' -\n"))->wait();
    EXPECT_EQ(shell.exit_status, 2);
    EXPECT_NE(shell.err.find("standard input belongs to"), std::string::npos) << shell.err;
    EXPECT_EQ(shell.out, "text");
}

TEST_F(Blocks, EachHasHelpWithAnExample) {
    for (const Words& words : std::vector<Words>{{"blocks"},
                                                 {"send"},
                                                 {"receive"},
                                                 {"backup"},
                                                 {"firmware"},
                                                 {"magazine", "show"},
                                                 {"magazine", "check"},
                                                 {"magazine", "set"},
                                                 {"magazine", "delete"},
                                                 {"magazine", "load"},
                                                 {"magazine", "unload"},
                                                 {"magazine", "change"}}) {
        Words all = words;
        all.push_back("--help");
        const std::string help = said(all);
        EXPECT_NE(help.find("example: zxhost"), std::string::npos) << help;
        EXPECT_NE(help.find(" " + words.back() + " "), std::string::npos) << help;
    }
}

}  // namespace
}  // namespace zxhost_test
