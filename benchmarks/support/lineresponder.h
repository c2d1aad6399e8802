// A bare server of lines in a process of its own: the other end for measuring a client alone.
//
// It says hello and answers each line "ID<tab>get..." with a value, "ID<tab>scan <n>" or "scancircle..." with
// that many points made beforehand, "receive..." with a block made beforehand, in base64, anything else with
// `ready`. It does nothing that costs time.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

namespace bench {

// Where a process may run.
enum class Cores { any, first };

// Moves the calling thread, and threads that it begins from now on, to these cores.
void stay_on(Cores cores);

class LineResponder {
public:
    // Begins the process; `points` is what a scan sends, the block has so many pieces. Throws
    // std::runtime_error.
    LineResponder(Cores cores, std::size_t points, std::size_t block_pieces = 0);
    ~LineResponder();
    LineResponder(const LineResponder&) = delete;
    LineResponder& operator=(const LineResponder&) = delete;

    // It serves the connections to this port of the loopback address, each in a process of its own.
    const std::string& port() const noexcept { return m_port; }

private:
    std::string m_port;
    int m_process = -1;
};

// The plainest client: a blocking socket, one line out, lines back.
class BareClient {
public:
    explicit BareClient(const std::string& port);
    ~BareClient();
    BareClient(const BareClient&) = delete;
    BareClient& operator=(const BareClient&) = delete;

    // Sends the line and reads until "ready"; gives the number of bytes.
    std::size_t ask(const std::string& line);
    // The same, and hands over each piece of the answer as it is read.
    std::size_t ask(const std::string& line, const std::function<void(std::string_view)>& take);

private:
    int m_socket;
};

// A block's bytes: so many of them in each line that a receive is answered with, random, the same every time.
inline constexpr std::size_t block_piece_size = 12288;
std::string block_piece(std::size_t index);

// Lines of points as a scan sends them, `id` in front of each.
std::string point_lines(const std::string& id, std::size_t count);

}  // namespace bench
