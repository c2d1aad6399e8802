// What a connection string may name, and why it leads nowhere.
#include <asio/io_context.hpp>
#include <asio/ip/tcp.hpp>
#include <filesystem>

#include "os/program.h"
#include "roadfixture.h"
#include "temporary_directory.h"

namespace {

using asio::ip::tcp;
using std::chrono::milliseconds;
using test::Peer;
using test::Road;
using test_support::handle_count;
using test_support::handles_sink_to;
using test_support::has_loaded;

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
    const std::ptrdiff_t files = handle_count();
    for (const auto& [name, expected] : rows) {
        EXPECT_EQ(cause(other(name)), "the library \"" + other(name) + "\" " + expected);
        EXPECT_FALSE(has_loaded(name));
    }
    EXPECT_TRUE(handles_sink_to(files)) << handle_count() << ", not " << files;
}

TEST_F(LibraryRoad, ALibraryThatOpensNoConnectionSaysWhy) {
    const std::string name = FAKE_LIBRARY;
    EXPECT_EQ(cause(name), "the library \"" + name + "\" opens no connection: no machine in \"\"");
    EXPECT_EQ(cause(name + "  two  words.dll "),
              "the library \"" + name + "\" opens no connection: no machine in \" two  words.dll \"");
    EXPECT_FALSE(has_loaded("fake_server.dll"));
    const std::string many(2000, 'x');
    const std::string text = cause(name + " " + many);
    EXPECT_EQ(text, "the library \"" + name +
                        "\" opens no connection: " + ("no machine in \"" + many).substr(0, 511));
}

TEST_F(LibraryRoad, ANameWithoutADirectoryIsLookedForBesideTheClient) {
    ASSERT_TRUE(std::filesystem::exists(os::program_directory() + "fake_server.dll"));
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
        EXPECT_TRUE(has_loaded("fake_server.dll"));
        client.reset();
        EXPECT_FALSE(has_loaded("fake_server.dll"));
        finish();
    }
}

}  // namespace
