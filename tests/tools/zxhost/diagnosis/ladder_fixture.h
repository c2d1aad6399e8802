// Climbs the ladder to servers that play scripts.
#pragma once

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "ladder.h"
#include "lineserver.h"
#include "memory_registry.h"
#include "recording_facilities.h"

namespace zxhost {

using test::Peer;
using test::Request;

inline const std::vector<std::string> rung_names{"configuration", "keys",      "address",  "connection",
                                                 "hello",         "revision",  "commands", "machine lock",
                                                 "adapter",       "round trip"};

class LadderTest : public testing::Test {
protected:
    LadderTest() {
        recording::reset();
        registry.add_fast();
        options.hello = std::chrono::milliseconds(300);
        options.connect = std::chrono::milliseconds(300);
        options.answer = std::chrono::milliseconds(300);
    }

    // Plays the script, and climbs to it.
    bool climb(test::Script script) {
        const auto server = test::serve_tcp(std::move(script));
        const std::string whole = server->connection_string();
        target.host = whole.substr(0, whole.find(' '));
        target.port = whole.substr(whole.find(' ') + 1);
        const bool holds = climb();
        server->finish();
        return holds;
    }
    bool climb() {
        rungs.clear();
        Ladder ladder(target, registry, options);
        const bool holds = ladder.climb([this](const Rung& rung) { rungs.push_back(rung); });
        trips = ladder.round_trips();
        return holds;
    }

    // Every rung holds, and there is no adapter to look at.
    void climb_without_adapter(const std::unique_ptr<test::Server>& server_there) {
        target.host = server_there->connection_string();
        EXPECT_TRUE(climb()) << target.host << ": " << rungs.back().result.text;
        EXPECT_EQ(rungs.size(), rung_names.size());
        EXPECT_EQ(rung("adapter").text, "no adapter in between");
        EXPECT_TRUE(registry.calls.empty());
        server_there->finish();
    }

    void expect_broken(const std::string& name, const std::string& text, const std::string& advice) {
        ASSERT_FALSE(rungs.empty());
        EXPECT_EQ(rungs.back().name, name) << rungs.back().result.text;
        EXPECT_EQ(rungs.back().result.state, RungState::broken);
        EXPECT_NE(rungs.back().result.text.find(text), std::string::npos) << rungs.back().result.text;
        EXPECT_NE(rungs.back().result.advice.find(advice), std::string::npos) << rungs.back().result.advice;
        for (std::size_t i = 0; i < rungs.size(); ++i) EXPECT_EQ(rungs[i].name, rung_names[i]);
    }
    const RungResult& rung(const std::string& name) {
        for (const Rung& found : rungs)
            if (found.name == name) return found.result;
        ADD_FAILURE() << name << " wasn't reached";
        return rungs.front().result;
    }

    Target target{"127.0.0.1", "7073", nullptr};
    MemoryRegistry registry;
    serverdll::ClientOptions options;
    std::vector<Rung> rungs;
    std::vector<Microseconds> trips;
};

inline const std::map<std::string, std::vector<std::string>> table{
    {"commands", {"data \"get\"", "data \"move\"", "data \"dance\"", "ready"}},
    {"machine get now", {"ready"}},
    {"machine release", {"ready"}},
};

// A server with these answers in place of those of the table.
inline test::Script server(std::map<std::string, std::vector<std::string>> answers = {}) {
    answers.insert(table.begin(), table.end());
    return [answers](Peer& peer) {
        peer.hello();
        peer.serve(answers);
    };
}

}  // namespace zxhost
