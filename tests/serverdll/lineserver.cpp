#include "lineserver.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace test {

Request Peer::next() {
    for (;;) {
        const std::optional<std::string> line = read_line();
        if (!line) throw std::runtime_error("the client has closed, a request was expected");
        const std::size_t tab = line->find('\t');
        if (tab == std::string::npos) throw std::runtime_error("not a request: " + *line);
        Request request{line->substr(0, tab), line->substr(tab + 1)};
        if (request.words != "ping" || tells_ping) return request;
        if (answers_ping) answer(request, {"ready"});
    }
}

bool Peer::wait_for_close() {
    while (read_line()) continue;
    return true;
}

void Peer::answer(const Request& request, const std::vector<std::string>& rests) {
    std::string text;
    for (const std::string& rest : rests) text += request.id + "\t" + rest + "\r\n";
    send(text);
}

Request Peer::expect(const std::string& words, const std::vector<std::string>& rests) {
    Request request = next();
    EXPECT_EQ(request.words, words);
    if (!rests.empty()) answer(request, rests);
    return request;
}

void Peer::serve(const std::map<std::string, std::vector<std::string>>& table) {
    try {
        for (;;) {
            const Request request = next();
            const auto found = table.find(request.words);
            answer(request, found == table.end() ? std::vector<std::string>{"error \"unknown\"", "ready"}
                                                 : found->second);
        }
    } catch (const std::runtime_error&) {
        // the client has closed
    }
}

void Server::start(std::function<std::unique_ptr<Peer>()> accept) {
    m_thread = std::thread([this, accept = std::move(accept)] { run(accept); });
}

void Server::run(const std::function<std::unique_ptr<Peer>()>& accept) {
    try {
        const std::unique_ptr<Peer> peer = accept();
        if (!peer) throw std::runtime_error("no client has come");
        m_script(*peer);
    } catch (const std::exception& error) {
        m_failure = error.what();
    }
}

void Server::finish() {
    if (!m_thread.joinable()) return;
    m_thread.join();
    EXPECT_EQ(m_failure, "");
}

std::vector<Transport> all_transports() {
    std::vector<Transport> transports{{"tcp", serve_tcp}, {"library", serve_library}};
    for (Transport& own : transports_of_the_system()) transports.push_back(std::move(own));
    return transports;
}

}  // namespace test
