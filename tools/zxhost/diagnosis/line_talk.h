// Single requests to a machine server, over any road to it and without the client.
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "linesplitter.h"
#include "transport.h"

namespace zxhost {

struct Answer {
    std::vector<std::string> data;  // bodies of the data lines
    std::string error;              // the server's words, if it refused
    std::string failure;            // why there is no answer; empty if there is one

    bool is_good() const { return error.empty() && failure.empty(); }
};

class LineTalk {
public:
    // `splitter` holds what came behind the hello.
    LineTalk(std::unique_ptr<serverdll::Transport> transport, wire::LineSplitter splitter)
        : m_transport(std::move(transport)), m_splitter(std::move(splitter)) {}

    // One request without arguments, and the wait for its end.
    Answer ask(std::string_view words, std::chrono::milliseconds at_most);

private:
    bool take_lines(Answer& answer);

    std::unique_ptr<serverdll::Transport> m_transport;
    wire::LineSplitter m_splitter;
    std::int64_t m_id = 0;
};

}  // namespace zxhost
