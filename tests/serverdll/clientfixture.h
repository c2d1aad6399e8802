// What tests of the client share: a fake server, a client on it, and a record of the callbacks.
#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <condition_variable>
#include <filesystem>
#include <functional>
#include <iterator>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "clientoptions.h"
#include "czendrixcom.h"
#include "gate.h"
#include "lineserver.h"
#include "process_resources.h"
#include "recording_facilities.h"

namespace test {

// Everything that callbacks told, as texts like "error 7 text", in order. Any thread.
class Record {
public:
    void add(std::string entry) {
        const std::lock_guard guard(m_lock);
        m_entries.push_back(std::move(entry));
        m_threads.push_back(std::this_thread::get_id());
        m_changed.notify_all();
    }

    std::vector<std::string> all() {
        const std::lock_guard guard(m_lock);
        return m_entries;
    }

    std::vector<std::thread::id> threads() {
        const std::lock_guard guard(m_lock);
        return m_threads;
    }

    void clear() {
        const std::lock_guard guard(m_lock);
        m_entries.clear();
        m_threads.clear();
    }

    // Waits until that many entries are there, for ten seconds at most.
    bool wait_for(std::size_t count) {
        std::unique_lock lock(m_lock);
        return m_changed.wait_for(lock, std::chrono::seconds(10), [&] { return m_entries.size() >= count; });
    }

    void install(CZendrixCOM& client) {
        client.SetAsyncCallback(
            [](void* user, const char* text) { to(user).add(std::string("event ") + text); }, this);
        client.SetErrorMsgCallback(
            [](void* user, long tid, const char* text) {
                to(user).add("error " + std::to_string(tid) + " " + text);
            },
            this);
        client.SetWarningMsgCallback(
            [](void* user, long tid, const char* text) {
                to(user).add("warning " + std::to_string(tid) + " " + text);
            },
            this);
        client.SetCommandCompleteCallback(
            [](void* user, long tid) { to(user).add("complete " + std::to_string(tid)); }, this);
        client.SetScanCallback(
            [](void* user, unsigned count, double* const values) { to(user).row("point", count, values); },
            this);
        client.SetWatchAxisCallback(
            [](void* user, unsigned count, double* const values) { to(user).row("watch", count, values); },
            this);
    }

private:
    static Record& to(void* user) { return *static_cast<Record*>(user); }

    void row(std::string entry, unsigned count, const double* values) {
        for (unsigned i = 0; i < count; ++i) {
            char text[40];
            std::snprintf(text, sizeof text, " %g", values[i]);
            entry += text;
        }
        add(std::move(entry));
    }

    std::mutex m_lock;
    std::condition_variable m_changed;
    std::vector<std::string> m_entries;
    std::vector<std::thread::id> m_threads;
};

// Records each completion with whether its receiver is there at that moment. It must outlive the callback.
struct CompletionLook {
    CZendrixCOM& client;
    Record& record;

    void install() {
        client.SetCommandCompleteCallback(
            [](void* user, long id) {
                const CompletionLook& at = *static_cast<CompletionLook*>(user);
                at.record.add((at.client.HasReceiver(id) ? "complete " : "no receiver ") +
                              std::to_string(id));
            },
            this);
    }
};

// The text that a call throws, or "no exception".
inline std::string thrown(const std::function<void()>& call) {
    try {
        call();
    } catch (const CZendrixError& error) {
        return error.m_text;
    }
    return "no exception";
}

class ClientFixture : public testing::Test {
protected:
    void SetUp() override {
        recording::reset();
        m_before = serverdll::client_options();
    }

    void TearDown() override {
        finish();
        serverdll::client_options() = m_before;
    }

    // Ends client and script. To be called while everything still lives that callbacks and script refer to.
    void finish() {
        client.reset();
        if (server) server->finish();
        server.reset();
    }

    serverdll::ClientOptions& options() { return serverdll::client_options(); }

    // Connects a client to a server that plays the script.
    void play(Script script) {
        server = serve_script(std::move(script));
        client =
            std::make_unique<CZendrixCOM>(nullptr, nullptr, server->connection_string().c_str(), nullptr);
        record.install(*client);
    }

    virtual std::unique_ptr<Server> serve_script(Script script) { return serve_tcp(std::move(script)); }

    Record record;
    std::unique_ptr<Server> server;
    std::unique_ptr<CZendrixCOM> client;

private:
    serverdll::ClientOptions m_before;
};

// The same over each road; instantiate it with all_transports() and road_name.
class RoadFixture : public ClientFixture, public testing::WithParamInterface<Transport> {
protected:
    std::unique_ptr<Server> serve_script(Script script) override {
        return GetParam().serve(std::move(script));
    }
};

inline std::string road_name(const testing::TestParamInfo<Transport>& info) { return info.param.name; }

}  // namespace test
