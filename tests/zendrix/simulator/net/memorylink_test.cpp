#include "net/memorylink.h"

#include <gtest/gtest.h>

#include <future>
#include <thread>

namespace zendrix::sim {
namespace {

using Status = MemoryLink::Status;
using std::chrono::milliseconds;

constexpr milliseconds long_time = std::chrono::seconds(10);

// The server's thread is this one, where the test runs it.
struct Ends {
    asio::io_context io;
    std::shared_ptr<MemoryLink> client = std::make_shared<MemoryLink>(io.get_executor());
    MemoryStream server{client};

    void run() {
        io.restart();
        io.run_for(long_time);
    }

    std::string client_reads(std::size_t size = 100, milliseconds at_most = long_time) {
        std::string text(size, '\0');
        const MemoryLink::Result result = client->read({text.data(), text.size()}, at_most);
        last = result.status;
        text.resize(result.count);
        return text;
    }

    // What the server hears of its next read.
    std::string server_reads(std::size_t size = 100) {
        std::string text(size, '\0');
        server.read({text.data(), text.size()}, [&](asio::error_code code, std::size_t count) {
            error = code;
            text.resize(count);
        });
        run();
        return text;
    }

    Status last = Status::done;
    asio::error_code error;
};

TEST(MemoryLink, CarriesBytesBothWays) {
    Ends ends;
    EXPECT_EQ(ends.client->write("to the server", long_time).count, 13U);
    EXPECT_EQ(ends.server_reads(6), "to the");
    EXPECT_EQ(ends.server_reads(), " server");
    bool told = false;
    ends.server.write("to the client", [&](asio::error_code error, std::size_t count) {
        told = true;
        EXPECT_FALSE(error);
        EXPECT_EQ(count, 13U);
    });
    EXPECT_FALSE(told) << "never before the call returns";
    EXPECT_EQ(ends.client_reads(6), "to the");
    EXPECT_EQ(ends.client_reads(), " client");
    ends.run();
    EXPECT_TRUE(told);
}

TEST(MemoryLink, WaitingHasABound) {
    Ends ends;
    EXPECT_EQ(ends.client_reads(100, milliseconds(1)), "");
    EXPECT_EQ(ends.last, Status::timed_out);
    const std::string much(1000000, 'x');
    const MemoryLink::Result result = ends.client->write(much, milliseconds(1));
    EXPECT_EQ(result.status, Status::timed_out);
    EXPECT_LT(result.count, much.size());
    EXPECT_GT(result.count, 0U);
}

TEST(MemoryLink, WhoWritesMuchWaitsForTheOther) {
    Ends ends;
    const std::string much(1000000, 'x');
    auto write = std::async(std::launch::async, [&] { return ends.client->write(much, long_time).count; });
    std::size_t count = 0;
    while (count < much.size()) count += ends.server_reads(70000).size();
    EXPECT_EQ(write.get(), much.size());
    std::size_t written = 0;
    ends.server.write(much, [&](asio::error_code, std::size_t done) { written = done; });
    auto read = std::async(std::launch::async, [&] {
        std::size_t got = 0;
        while (got < much.size()) got += ends.client_reads(70000).size();
        return got;
    });
    ends.run();
    EXPECT_EQ(written, much.size());
    EXPECT_EQ(read.get(), much.size());
}

TEST(MemoryLink, TheClientsShutdownEndsWhatWaits) {
    Ends ends;
    ends.client->write("last", long_time);
    asio::error_code written;
    const std::string much(1000000, 'x');
    ends.server.write(much, [&](asio::error_code error, std::size_t) { written = error; });
    ends.client->shutdown();
    EXPECT_EQ(ends.server_reads(), "last");
    EXPECT_FALSE(ends.error);
    EXPECT_EQ(written, asio::error::broken_pipe);
    EXPECT_EQ(ends.server_reads(), "");
    EXPECT_EQ(ends.error, asio::error::eof);
    EXPECT_EQ(ends.client_reads(), "");
    EXPECT_EQ(ends.last, Status::closed);
    EXPECT_EQ(ends.client->write("x", long_time).status, Status::closed);
}

TEST(MemoryLink, AShutdownWakesAReader) {
    Ends ends;
    auto read = std::async(std::launch::async, [&] { return ends.client_reads(); });
    ends.client->shutdown();
    EXPECT_EQ(read.get(), "");
    EXPECT_EQ(ends.last, Status::closed);
}

TEST(MemoryLink, WhatTheServerSaidLastIsReadBeforeItsEnd) {
    Ends ends;
    ends.server.write("last", [](asio::error_code, std::size_t) {});
    ends.server.close();
    EXPECT_EQ(ends.client_reads(), "last");
    EXPECT_EQ(ends.last, Status::done);
    EXPECT_EQ(ends.client_reads(), "");
    EXPECT_EQ(ends.last, Status::closed);
    EXPECT_EQ(ends.client->write("x", long_time).status, Status::closed);
    EXPECT_EQ(ends.server_reads(), "");
    EXPECT_EQ(ends.error, asio::error::operation_aborted);
}

TEST(MemoryLink, AResetLosesIt) {
    Ends ends;
    ends.server.write("last", [](asio::error_code, std::size_t) {});
    ends.server.reset();
    EXPECT_EQ(ends.client_reads(), "");
    EXPECT_EQ(ends.last, Status::reset);
    EXPECT_EQ(ends.client->write("x", long_time).status, Status::reset);
}

TEST(MemoryLink, AServerThatWaitsKeepsItsThreadBusy) {
    Ends ends;
    std::string got(10, '\0');
    ends.server.read({got.data(), got.size()},
                     [&](asio::error_code, std::size_t count) { got.resize(count); });
    std::thread server([&] { ends.io.run(); });
    ends.client->write("later", long_time);
    server.join();
    EXPECT_EQ(got, "later");
}

}  // namespace
}  // namespace zendrix::sim
