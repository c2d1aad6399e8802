// What a connection string may name, and why it leads nowhere.
#include <sys/fsuid.h>

#include <asio/io_context.hpp>
#include <asio/ip/tcp.hpp>
#include <filesystem>
#include <fstream>

#include "clientfixture.h"
#include "os/serial.h"
#include "temporary_directory.h"

namespace {

using asio::ip::tcp;
using std::chrono::milliseconds;
using test::entries_of;
using test::Peer;
using Texts = std::vector<std::string>;

bool is_mapped(const std::string& file) {
    std::ifstream maps("/proc/self/maps");
    const std::string all((std::istreambuf_iterator<char>(maps)), {});
    return all.find(file) != std::string::npos;
}

class Road : public test::ClientFixture {
protected:
    std::string why_not(const std::string& server_string) {
        return test::thrown([&] { CZendrixCOM(nullptr, nullptr, server_string.c_str(), nullptr); });
    }

    // The cause alone; the text names the whole connection string before it.
    std::string cause(const std::string& server_string) {
        const std::string text = why_not(server_string);
        const std::string begin = "can't connect to \"" + server_string + "\": ";
        EXPECT_EQ(text.substr(0, begin.size()), begin);
        return text.substr(std::min(begin.size(), text.size()));
    }
};

using TcpRoad = Road;

TEST_F(TcpRoad, AStringThatLeadsNowhereThrowsItsCause) {
    asio::io_context context;
    tcp::acceptor acceptor(context, {asio::ip::address_v4::loopback(), 0});
    const std::string port = std::to_string(acceptor.local_endpoint().port());
    acceptor.close();
    EXPECT_EQ(why_not("127.0.0.1 " + port),
              "can't connect to \"127.0.0.1 " + port + "\": connection refused");
    EXPECT_EQ(why_not("no.such.host.invalid 7073"),
              "can't connect to \"no.such.host.invalid 7073\": unknown host");
    for (const char* wrong : {"", "127.0.0.1", " 7073", "127.0.0.1 0", "127.0.0.1 65536", "127.0.0.1 http"}) {
        EXPECT_EQ(why_not(wrong), std::string("can't connect to \"") + wrong +
                                      "\": expected a host, a blank and a port from 1 to 65535");
    }
    EXPECT_THROW(CZendrixCOM(nullptr, nullptr, nullptr, nullptr), CZendrixError);
}

TEST_F(TcpRoad, AHostThatDoesNotAnswerIsGivenUpInTime) {
    // A listener whose queue is full drops what comes.
    asio::io_context context;
    tcp::acceptor acceptor(context);
    const tcp::endpoint any(asio::ip::address_v4::loopback(), 0);
    acceptor.open(any.protocol());
    acceptor.bind(any);
    acceptor.listen(0);
    std::vector<tcp::socket> fillers;
    for (int i = 0; i < 4; ++i) {
        fillers.emplace_back(context);
        fillers.back().async_connect(acceptor.local_endpoint(), [](const asio::error_code&) {});
    }
    context.run_for(milliseconds(50));
    options().connect = milliseconds(150);
    const auto start = std::chrono::steady_clock::now();
    const std::string text = why_not("127.0.0.1 " + std::to_string(acceptor.local_endpoint().port()));
    EXPECT_NE(text.find(": no answer in time"), std::string::npos) << text;
    EXPECT_LT(std::chrono::steady_clock::now() - start, milliseconds(2000));
}

class LibraryRoad : public Road {
protected:
    // A library beside the one that works.
    static std::string other(const std::string& name) {
        return (std::filesystem::path(FAKE_LIBRARY).parent_path() / name).string();
    }
};

TEST_F(LibraryRoad, ALibraryThatIsMissingIsNamed) {
    for (const std::string name :
         {"/no/such/place/machine.dll", "no_such_machine.dll", "no such/machine.dll"}) {
        const std::string begin = "the library \"" + name + "\" can't be loaded: ";
        const std::string text = cause(name);
        EXPECT_EQ(text.substr(0, begin.size()), begin);
        EXPECT_GT(text.size(), begin.size());
        EXPECT_EQ(cause(name + " --speed max"), text) << "the settings are no part of the name";
    }
}

TEST_F(LibraryRoad, AFileThatIsNoLibraryIsNamed) {
    TemporaryDirectory directory;
    directory.file("machine.dll", "no library\n");
    const std::string name = directory.path() + "/machine.dll";
    EXPECT_EQ(cause(name).find("the library \"" + name + "\" can't be loaded: "), 0U);
}

TEST_F(LibraryRoad, ALibraryWithoutOurFunctionsIsRefused) {
    const std::pair<std::string, std::string> rows[] = {
        {"fake_server_without_entry.dll", "has no entry point \"zx_server_library\""},
        {"fake_server_of_version_2.dll", "speaks version 2 of the interface, and this client 1"},
        {"fake_server_without_table.dll", "gives no table of its functions"},
        {"fake_server_without_close.dll", "gives an incomplete table of its functions"}};
    const std::ptrdiff_t files = entries_of("/proc/self/fd");
    for (const auto& [name, expected] : rows) {
        EXPECT_EQ(cause(other(name)), "the library \"" + other(name) + "\" " + expected);
        EXPECT_FALSE(is_mapped(name));
    }
    EXPECT_EQ(entries_of("/proc/self/fd"), files);
}

TEST_F(LibraryRoad, ALibraryThatOpensNoConnectionSaysWhy) {
    const std::string name = FAKE_LIBRARY;
    EXPECT_EQ(cause(name), "the library \"" + name + "\" opens no connection: no machine in \"\"");
    EXPECT_EQ(cause(name + "  two  words.dll "),
              "the library \"" + name + "\" opens no connection: no machine in \" two  words.dll \"");
    EXPECT_FALSE(is_mapped("fake_server.dll"));
    const std::string many(2000, 'x');
    const std::string text = cause(name + " " + many);
    EXPECT_EQ(text, "the library \"" + name +
                        "\" opens no connection: " + ("no machine in \"" + many).substr(0, 511));
}

TEST_F(LibraryRoad, ANameWithoutADirectoryIsLookedForBesideTheClient) {
    std::filesystem::path beside = std::filesystem::read_symlink("/proc/self/exe").parent_path();
    ASSERT_EQ(beside, std::filesystem::path(FAKE_LIBRARY).parent_path());
    EXPECT_EQ(cause("fake_server.dll"),
              "the library \"fake_server.dll\" opens no connection: no machine in \"\"");
}

TEST_F(LibraryRoad, ANameMayGoOnBehindItsDll) {
    const std::string text = cause("/no/such/machine.dll.so.1");
    EXPECT_EQ(text.find("the library \"/no/such/machine.dll.so.1\" can't be loaded: "), 0U) << text;
}

TEST_F(LibraryRoad, TheLibraryStaysAsLongAsItsConnection) {
    for (int turn = 0; turn < 3; ++turn) {
        server = test::serve_library([](Peer& peer) {
            peer.hello();
            peer.wait_for_close();
        });
        client =
            std::make_unique<CZendrixCOM>(nullptr, nullptr, server->connection_string().c_str(), nullptr);
        EXPECT_TRUE(client->HasConnection());
        EXPECT_TRUE(is_mapped("fake_server.dll"));
        client.reset();
        EXPECT_FALSE(is_mapped("fake_server.dll"));
        finish();
    }
}

class SerialRoad : public Road {
protected:
    std::string why_not_opened(const std::string& server_string, const std::string& device) {
        const std::string text = cause(server_string);
        const std::string begin = "the serial line \"" + device + "\" ";
        EXPECT_EQ(text.substr(0, begin.size()), begin);
        return text.substr(std::min(begin.size(), text.size()));
    }
};

TEST_F(SerialRoad, ALineThatIsMissingIsNamed) {
    const std::string missing = "can't be opened: No such file or directory";
    const std::ptrdiff_t files = entries_of("/proc/self/fd");
    EXPECT_EQ(why_not_opened("COM999", "/dev/ttyS998"), missing);
    EXPECT_EQ(why_not_opened("COM999,9600", "/dev/ttyS998"), missing);
    EXPECT_EQ(why_not_opened("COM:/dev/no such line", "/dev/no such line"), missing);
    EXPECT_EQ(why_not_opened("COM:/dev/no such line,9600", "/dev/no such line"), missing);
    EXPECT_EQ(why_not_opened("COMPUTER", "COMPUTER"), missing) << "a host's name that looks like a line's";
    EXPECT_EQ(why_not_opened("the host COM", "the host COM"), missing);
    EXPECT_EQ(entries_of("/proc/self/fd"), files);
}

TEST_F(SerialRoad, WhatIsNoLineIsRefused) {
    TemporaryDirectory directory;
    directory.file("COM", "no line\n");
    const std::string file = directory.path() + "/COM";
    const std::ptrdiff_t files = entries_of("/proc/self/fd");
    EXPECT_EQ(why_not_opened(file, file), "can't be opened: Inappropriate ioctl for device");
    EXPECT_EQ(why_not_opened("COM:" + directory.path(), directory.path()), "can't be opened: Is a directory");
    EXPECT_EQ(entries_of("/proc/self/fd"), files);
}

TEST_F(SerialRoad, ALineThatMayNotBeOpenedIsNamed) {
    os::PseudoTerminal terminal;
    ASSERT_TRUE(terminal.open());
    std::filesystem::permissions(terminal.device(), std::filesystem::perms::none);
    // Nobody may do what root may.
    const int before = ::setfsuid(65534);
    EXPECT_EQ(why_not_opened("COM:" + terminal.device(), terminal.device()),
              "can't be opened: Permission denied");
    ::setfsuid(static_cast<uid_t>(before));
}

TEST_F(SerialRoad, ASpeedThatTheLineHasNotIsNamed) {
    os::PseudoTerminal terminal;
    ASSERT_TRUE(terminal.open());
    EXPECT_EQ(why_not_opened("COM:" + terminal.device() + ",12345", terminal.device()),
              "has no speed of 12345 baud");
}

TEST_F(SerialRoad, ALineWhereNobodySpeaksIsGivenUpInTime) {
    os::PseudoTerminal terminal;
    ASSERT_TRUE(terminal.open());
    options().hello = milliseconds(100);
    const std::ptrdiff_t threads = entries_of("/proc/self/task");
    const std::ptrdiff_t files = entries_of("/proc/self/fd");
    const auto start = std::chrono::steady_clock::now();
    client = std::make_unique<CZendrixCOM>(nullptr, nullptr, ("COM:" + terminal.device() + ",9600").c_str(),
                                           nullptr);
    EXPECT_LT(std::chrono::steady_clock::now() - start, milliseconds(2000));
    EXPECT_FALSE(client->HasConnection());
    EXPECT_EQ(recording::error_log(),
              Texts{"CZendrixCOM: no machine connection to \"COM:" + terminal.device() +
                    ",9600\": no hello from the server: silent for 100 ms"});
    client.reset();
    EXPECT_TRUE(test::threads_sink_to(threads));
    EXPECT_EQ(entries_of("/proc/self/fd"), files);
}

TEST_F(SerialRoad, WhatWasMeantForAnEarlierClientIsPassedOver) {
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

TEST_F(SerialRoad, AClientThatGoesSaysSo) {
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
