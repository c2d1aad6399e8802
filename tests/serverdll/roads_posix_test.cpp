// Serial lines that a connection string may name, and why they lead nowhere.
#include <sys/fsuid.h>

#include <filesystem>

#include "os/serial.h"
#include "roadfixture.h"
#include "temporary_directory.h"

namespace {

using std::chrono::milliseconds;
using test::Peer;
using test_support::handle_count;
using test_support::thread_count;
using Texts = std::vector<std::string>;

class SerialRoadPosix : public test::Road {
protected:
    std::string why_not_opened(const std::string& server_string, const std::string& device) {
        const std::string text = cause(server_string);
        const std::string begin = "the serial line \"" + device + "\" ";
        EXPECT_EQ(text.substr(0, begin.size()), begin);
        return text.substr(std::min(begin.size(), text.size()));
    }
};

TEST_F(SerialRoadPosix, ALineThatIsMissingIsNamed) {
    const std::string missing = "can't be opened: No such file or directory";
    const std::ptrdiff_t files = handle_count();
    EXPECT_EQ(why_not_opened("COM999", "/dev/ttyS998"), missing);
    EXPECT_EQ(why_not_opened("COM999,9600", "/dev/ttyS998"), missing);
    EXPECT_EQ(why_not_opened("COM:/dev/no such line", "/dev/no such line"), missing);
    EXPECT_EQ(why_not_opened("COM:/dev/no such line,9600", "/dev/no such line"), missing);
    EXPECT_EQ(why_not_opened("COMPUTER", "COMPUTER"), missing) << "a host's name that looks like a line's";
    EXPECT_EQ(why_not_opened("the host COM", "the host COM"), missing);
    EXPECT_EQ(handle_count(), files);
}

TEST_F(SerialRoadPosix, WhatIsNoLineIsRefused) {
    TemporaryDirectory directory;
    directory.file("COM", "no line\n");
    const std::string file = directory.path() + "/COM";
    const std::ptrdiff_t files = handle_count();
    EXPECT_EQ(why_not_opened(file, file), "can't be opened: Inappropriate ioctl for device");
    EXPECT_EQ(why_not_opened("COM:" + directory.path(), directory.path()), "can't be opened: Is a directory");
    EXPECT_EQ(handle_count(), files);
}

TEST_F(SerialRoadPosix, ALineThatMayNotBeOpenedIsNamed) {
    os::PseudoTerminal terminal;
    ASSERT_TRUE(terminal.open());
    std::filesystem::permissions(terminal.device(), std::filesystem::perms::none);
    // Nobody may do what root may.
    const int before = ::setfsuid(65534);
    EXPECT_EQ(why_not_opened("COM:" + terminal.device(), terminal.device()),
              "can't be opened: Permission denied");
    ::setfsuid(static_cast<uid_t>(before));
}

TEST_F(SerialRoadPosix, ASpeedThatTheLineHasNotIsNamed) {
    os::PseudoTerminal terminal;
    ASSERT_TRUE(terminal.open());
    EXPECT_EQ(why_not_opened("COM:" + terminal.device() + ",12345", terminal.device()),
              "has no speed of 12345 baud");
}

TEST_F(SerialRoadPosix, ALineWhereNobodySpeaksIsGivenUpInTime) {
    os::PseudoTerminal terminal;
    ASSERT_TRUE(terminal.open());
    options().hello = milliseconds(100);
    const std::ptrdiff_t threads = thread_count();
    const std::ptrdiff_t files = handle_count();
    const auto start = std::chrono::steady_clock::now();
    client = std::make_unique<CZendrixCOM>(nullptr, nullptr, ("COM:" + terminal.device() + ",9600").c_str(),
                                           nullptr);
    EXPECT_LT(std::chrono::steady_clock::now() - start, milliseconds(2000));
    EXPECT_FALSE(client->HasConnection());
    EXPECT_EQ(recording::error_log(),
              Texts{"CZendrixCOM: no machine connection to \"COM:" + terminal.device() +
                    ",9600\": no hello from the server: silent for 100 ms"});
    client.reset();
    EXPECT_TRUE(test_support::threads_sink_to(threads));
    EXPECT_EQ(handle_count(), files);
}

TEST_F(SerialRoadPosix, WhatWasMeantForAnEarlierClientIsPassedOver) {
    server = test::serve_serial([](Peer& peer) {
        peer.send("ready\r\n4711\tpoint 12 0.5\r\n\x00\xff\r\n0000\tevent \"old\"\r\n0004\tda\r\n");
        peer.send(std::string(200000, 'x') + "\r\n");
        peer.hello("2.1");
        peer.line("0000\tevent \"new\"");
        peer.expect("master", {"ready"});
        peer.wait_for_close();
    });
    client = std::make_unique<CZendrixCOM>(nullptr, nullptr, server->connection_string().c_str(), nullptr);
    record.install(*client);
    EXPECT_EQ(client->GetMinorRevision(), 1);
    EXPECT_TRUE(client->Master());
    EXPECT_TRUE(client->HasConnection());
    for (const std::string& entry : record.all()) EXPECT_EQ(entry, "event new");
    finish();
}

TEST_F(SerialRoadPosix, AClientThatGoesSaysSo) {
    std::optional<std::string> last;
    server = test::serve_serial([&](Peer& peer) {
        peer.hello();
        last = peer.read_line();
    });
    client = std::make_unique<CZendrixCOM>(nullptr, nullptr, server->connection_string().c_str(), nullptr);
    finish();
    EXPECT_EQ(last, std::nullopt);
}

}  // namespace
