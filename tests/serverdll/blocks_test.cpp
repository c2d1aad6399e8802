// Blocks of data in both directions, over every transport.
#include <climits>
#include <cstring>
#include <random>

#include "clientfixture.h"
#include "mbase64.h"
#include "tokens.h"

namespace {

using test::Peer;
using test::Request;
using Texts = std::vector<std::string>;

constexpr std::size_t hundred_mb = 100'000'000;

// The same bytes for everybody who asks.
const std::string& random_bytes() {
    static const std::string bytes = [] {
        std::mt19937_64 random(7);
        std::string made(hundred_mb, '\0');
        for (std::size_t at = 0; at < made.size(); at += sizeof(std::uint64_t)) {
            const std::uint64_t number = random();
            std::memcpy(made.data() + at, &number, sizeof number);
        }
        return made;
    }();
    return bytes;
}

std::string base64(const std::string& bytes) {
    std::string text(MBase64_EncodedSize(bytes.size()), '\0');
    text.resize(static_cast<std::size_t>(MBase64_Encode(text.data(), bytes.data(), bytes.size())));
    return text;
}

const std::string& random_base64() {
    static const std::string text = base64(random_bytes());
    return text;
}

// Answers a receive with this text, in lines of `piece` bytes; `first` stands before the first.
void send_block(Peer& peer, const Request& request, const std::string& first, const std::string& text,
                std::size_t piece) {
    std::string lines = request.id + "\taccepted\r\n";
    for (std::size_t at = 0; at < text.size(); at += piece) {
        lines.append(request.id).append("\tdata ").append(at == 0 ? first : "").append("\"");
        lines.append(text, at, piece).append("\"\r\n");
        if (lines.size() < 65536) continue;
        peer.send(lines);
        lines.clear();
    }
    peer.send(lines + request.id + "\tready\r\n");
}

// What a host makes of the lines: the first one's prefix, and what stands between the quotes, joined.
struct Received {
    std::string prefix;
    std::string text;
    std::size_t lines = 0;
};

Received take_all(CZendrixCOM& client, long tid) {
    Received all;
    std::string line;
    while (client.TakeReplyLine(tid, line)) {
        const std::size_t begin = line.find('"');
        if (all.lines++ == 0) all.prefix = line.substr(0, begin);
        all.text.append(line, begin + 1, line.size() - begin - 2);
    }
    return all;
}

// A server that keeps one block, and what was asked of it.
struct Keeper {
    std::string name;
    std::string data;
    std::vector<std::string> words;  // without the data

    void serve(Peer& peer, std::size_t requests) {
        for (std::size_t i = 0; i < requests; ++i) {
            const Request request = peer.next();
            take(request);
            peer.answer(request, {"ready"});
        }
    }

private:
    void take(const Request& request) {
        wire::TokenReader tokens(request.words);
        std::string_view word;
        EXPECT_TRUE(tokens.word(word));
        EXPECT_EQ(word, "send");
        std::string part;
        std::int64_t number = 0;
        if (tokens.keyword("begin")) {
            EXPECT_TRUE(tokens.text(name) && tokens.integer(0, INT64_MAX, number));
            words.push_back("begin " + std::to_string(number));
            m_transfer = request.id;
        } else if (tokens.keyword("part")) {
            EXPECT_TRUE(tokens.integer(0, INT64_MAX, number) && tokens.text(part));
            EXPECT_EQ(number, std::stol(m_transfer));
            words.push_back("part");
        } else {
            EXPECT_TRUE(tokens.text(name) && tokens.text(part));
            words.push_back("send");
        }
        EXPECT_TRUE(tokens.at_end());
        data += part;
    }

    std::string m_transfer;
};

class Blocks : public test::RoadFixture {
protected:
    // Receives what the server sends so; the client's side of it.
    Received receive(const std::string& first, const std::string& text, std::size_t piece) {
        play([&](Peer& peer) {
            peer.hello();
            send_block(peer, peer.expect("receive \"block\""), first, text, piece);
            peer.wait_for_close();
        });
        std::string data;
        long tid = 0;
        EXPECT_TRUE(client->Receive("block", data, &tid));
        EXPECT_TRUE(wait_long(1));
        EXPECT_EQ(record.all(), Texts{"complete " + std::to_string(tid)});
        EXPECT_EQ(client->ReplyLineCount(tid), (text.size() + piece - 1) / piece);
        Received all = take_all(*client, tid);
        EXPECT_TRUE(wait_for_no_receiver(tid));
        finish();
        return all;
    }

    // It goes when the complete callback has returned, which may be a moment after it was told here.
    bool wait_for_no_receiver(long tid) {
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
        while (client->HasReceiver(tid) && std::chrono::steady_clock::now() < end) std::this_thread::yield();
        return !client->HasReceiver(tid);
    }

    // Much takes its time, more under a sanitizer.
    bool wait_long(std::size_t count) {
        for (int i = 0; i < 12; ++i) {
            if (record.wait_for(count)) return true;
        }
        return false;
    }

    bool wait_for_line(long tid) {
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
        while (client->ReplyLineCount(tid) == 0 && std::chrono::steady_clock::now() < end)
            std::this_thread::yield();
        return client->ReplyLineCount(tid) > 0;
    }

    std::size_t part() const {
        return GetParam().name == "serialPosix" ? 115200 / 7 : std::size_t{256} << 10;
    }
};

TEST_P(Blocks, AHundredMegabytesOfBase64Arrive) {
    const Received all = receive("base64 ", random_base64(), 16384);
    EXPECT_EQ(all.prefix, "base64 ");
    EXPECT_TRUE(all.text == random_base64());
}

TEST_P(Blocks, AHundredMegabytesOfPlainBytesArrive) {
    std::string plain = random_bytes();
    for (char& byte : plain) {
        if (byte == '\r' || byte == '\n') byte = '"';
    }
    const Received all = receive("", plain, 1000000);
    EXPECT_EQ(all.prefix, "");
    EXPECT_TRUE(all.text == plain);
}

TEST_P(Blocks, ManyShortLinesArrive) {
    const std::string text = random_base64().substr(0, 800000);
    const Received all = receive("", text, 4);
    EXPECT_EQ(all.lines, 200000u);
    EXPECT_TRUE(all.text == text);
}

TEST_P(Blocks, OneByteArrives) { EXPECT_EQ(receive("", "x", 16384).text, "x"); }

TEST_P(Blocks, NothingArrives) { EXPECT_EQ(receive("", "", 16384).lines, 0u); }

TEST_P(Blocks, AHundredMegabytesLeaveInParts) {
    Keeper keeper;
    const std::size_t parts = (hundred_mb + part() - 1) / part();
    play([&](Peer& peer) {
        peer.hello();
        keeper.serve(peer, parts + 1);
        peer.wait_for_close();
    });
    EXPECT_TRUE(client->Send("block", random_bytes()));
    finish();
    EXPECT_EQ(keeper.name, "block");
    EXPECT_EQ(keeper.words[0], "begin 100000000");
    EXPECT_EQ(keeper.words.size(), parts + 1);
    EXPECT_TRUE(keeper.data == random_bytes());
}

TEST_P(Blocks, WhatFitsLeavesWhole) {
    const std::string blocks[] = {"", "x", std::string("\0\r\n\t\"\\", 6), random_bytes().substr(0, part())};
    for (const std::string& block : blocks) {
        Keeper keeper;
        play([&](Peer& peer) {
            peer.hello();
            keeper.serve(peer, 1);
            peer.wait_for_close();
        });
        EXPECT_TRUE(client->Send("block", block));
        finish();
        EXPECT_EQ(keeper.words, Texts{"send"});
        EXPECT_TRUE(keeper.data == block) << block.size();
    }
}

TEST_P(Blocks, OneByteMoreLeavesInTwoParts) {
    Keeper keeper;
    play([&](Peer& peer) {
        peer.hello();
        keeper.serve(peer, 3);
        peer.wait_for_close();
    });
    const std::string block = random_bytes().substr(0, part() + 1);
    EXPECT_TRUE(client->Send("block", block));
    finish();
    EXPECT_EQ(keeper.words, (Texts{"begin " + std::to_string(part() + 1), "part", "part"}));
    EXPECT_TRUE(keeper.data == block);
}

TEST_P(Blocks, AnyNameArrivesAsItIs) {
    const std::string names[] = {
        "", "../../a/b\\c", std::string("n\0l", 3), std::string(10240, '\\'), "\r\n", "\"", "\xff\x01 x"};
    for (const std::string& name : names) {
        Keeper keeper;
        std::string asked;
        play([&](Peer& peer) {
            peer.hello();
            keeper.serve(peer, 1);
            const Request request = peer.next();
            wire::TokenReader tokens(request.words);
            EXPECT_TRUE(tokens.keyword("receive") && tokens.text(asked) && tokens.at_end());
            peer.answer(request, {"error \"invalid argument\"", "ready"});
            peer.wait_for_close();
        });
        EXPECT_TRUE(client->Send(name, "x"));
        std::string data;
        long tid = 0;
        EXPECT_FALSE(client->Receive(name, data, &tid));
        EXPECT_EQ(tid, 0);
        finish();
        EXPECT_EQ(keeper.name, name);
        EXPECT_EQ(asked, name);
    }
}

TEST_P(Blocks, ARefusedPartEndsTheSending) {
    play([&](Peer& peer) {
        peer.hello();
        peer.answer(peer.next(), {"ready"});
        peer.answer(peer.next(), {"error \"buffer overrun\"", "ready"});
        peer.expect("master", {"ready"});
        peer.wait_for_close();
    });
    client->ThrowExceptions(true);
    const std::string block(part() * 3, 'x');
    EXPECT_EQ(test::thrown([&] { client->Send("block", block); }), "buffer overrun");
    EXPECT_EQ(record.all(), Texts{"error 0 buffer overrun"});
    EXPECT_TRUE(client->Master());
    finish();
}

TEST_P(Blocks, AServerThatStopsInTheMiddleOfASendingIsLost) {
    play([&](Peer& peer) {
        peer.hello();
        peer.answer(peer.next(), {"ready"});
        peer.next();
        peer.close();
    });
    client->ThrowExceptions(true);
    const std::string cause = "machine connection lost: " + server->cause_of_close();
    const std::string block(part() * 3, 'x');
    EXPECT_EQ(test::thrown([&] { client->Send("block", block); }), cause);
    finish();
}

TEST_P(Blocks, AServerThatStopsInTheMiddleOfABlockIsLost) {
    Gate stop;
    play([&](Peer& peer) {
        peer.hello();
        const Request request = peer.expect("receive \"block\"", {"accepted", "data base64 \"QUJD\""});
        peer.send(request.id + "\tdata \"RE");
        EXPECT_TRUE(stop.wait());
        peer.close();
    });
    std::string data = "untouched";
    long tid = 0;
    EXPECT_TRUE(client->Receive("block", data, &tid));
    EXPECT_TRUE(wait_for_line(tid));
    stop.open();
    ASSERT_TRUE(record.wait_for(1));
    EXPECT_EQ(record.all(), Texts{"complete 0"});
    EXPECT_TRUE(client->HasReceiver(tid));
    const Received all = take_all(*client, tid);
    EXPECT_EQ(all.text, "QUJD");
    EXPECT_EQ(data, "untouched");
    finish();
}

TEST_P(Blocks, AServerThatFallsSilentInTheMiddleOfABlockIsLost) {
    options().heartbeat = std::chrono::milliseconds(200);
    play([&](Peer& peer) {
        peer.answers_ping = false;
        peer.hello();
        peer.expect("receive \"block\"", {"accepted", "data \"AB\""});
        peer.wait_for_close();
    });
    std::string data;
    long tid = 0;
    EXPECT_TRUE(client->Receive("block", data, &tid));
    ASSERT_TRUE(record.wait_for(1));
    EXPECT_EQ(record.all(), Texts{"complete 0"});
    EXPECT_FALSE(client->HasConnection());
    finish();
}

TEST_P(Blocks, ABlockOverTheBoundIsGivenUpAndTheClientGoesOn) {
    options().block_bytes = 100000;
    play([&](Peer& peer) {
        peer.hello();
        send_block(peer, peer.expect("receive \"block\""), "", std::string(200000, 'x'), 16384);
        peer.expect("master", {"ready"});
        send_block(peer, peer.expect("receive \"next\""), "", "y", 16384);
        peer.wait_for_close();
    });
    std::string data;
    long first = 0;
    long second = 0;
    // The host's command must find its receiver to come to its end.
    test::CompletionLook look{*client, record};
    look.install();
    EXPECT_TRUE(client->Receive("block", data, &first));
    EXPECT_TRUE(client->Master());
    EXPECT_FALSE(client->TakeReplyLine(first, data));
    EXPECT_TRUE(client->Receive("next", data, &second));
    ASSERT_TRUE(wait_long(3));
    const std::string tid = std::to_string(first);
    EXPECT_EQ(record.all(), (Texts{"error " + tid + " receive: the block is too long", "complete " + tid,
                                   "complete " + std::to_string(second)}));
    EXPECT_EQ(client->ReplyLineCount(first), 0u);
    EXPECT_EQ(take_all(*client, second).text, "y");
    finish();
}

TEST_P(Blocks, TwoComeAtOnce) {
    play([&](Peer& peer) {
        peer.hello();
        const Request first = peer.expect("receive \"1\"", {"accepted", "data \"a\""});
        const Request second = peer.expect("receive \"2\"", {"accepted", "data \"b\""});
        peer.answer(first, {"data \"A\"", "ready"});
        peer.answer(second, {"data \"B\"", "ready"});
        peer.wait_for_close();
    });
    std::string data;
    long tids[2] = {};
    EXPECT_TRUE(client->Receive("1", data, &tids[0]));
    EXPECT_TRUE(client->Receive("2", data, &tids[1]));
    ASSERT_TRUE(record.wait_for(2));
    EXPECT_EQ(take_all(*client, tids[0]).text, "aA");
    EXPECT_EQ(take_all(*client, tids[1]).text, "bB");
    finish();
}

INSTANTIATE_TEST_SUITE_P(Transports, Blocks, testing::ValuesIn(test::all_transports()), test::road_name);

}  // namespace
