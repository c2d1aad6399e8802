// A block of 64 MB, base64 on the wire, over loopback: from the host's call until the command is done and its
// data decoded. The reference reads the same bytes from a bare socket and decodes each line with OpenSSL.
#include <openssl/evp.h>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

#include "host_side.h"
#include "lineresponder.h"
#include "m2zendrixmachabstract.h"
#include "moutputchannel.h"
#include "own_process.h"
#include "temporary_directory.h"

namespace {

constexpr std::size_t pieces = (std::size_t{64} << 20) / bench::block_piece_size;
constexpr std::size_t block_size = pieces * bench::block_piece_size;
constexpr double block_mb = static_cast<double>(block_size) / 1e6;

void check(const std::string& block) {
    bool is_whole = block.size() == block_size;
    for (std::size_t i = 0; is_whole && i < pieces; ++i) {
        is_whole =
            block.compare(i * bench::block_piece_size, bench::block_piece_size, bench::block_piece(i)) == 0;
    }
    if (!is_whole) throw std::runtime_error("the block came damaged");
}

// A driver at a server that only sends.
class Host {
public:
    explicit Host(const std::string& port) {
        m_directory.file("m2zendrix.ini", "[connection]\nhost=127.0.0.1\nport=" + port + "\n");
        m_driver =
            std::make_unique<M2ZendrixMachAbstract>(&m_output, &m_notifier, "m2zendrix", m_directory.path());
        if (!m_driver->Open()) throw std::runtime_error("the driver could not open the machine");
    }
    ~Host() { m_driver->Close(); }

    std::unique_ptr<MMachReceiveCommand> receive() {
        std::unique_ptr<MMachReceiveCommand> command(m_driver->NewMMachReceiveCommand(&m_channel, "block"));
        const bool has_ended = run_host(
            m_notifier, [&] { return command->IsDone(); }, [] {});
        if (!has_ended || m_channel.has_error() || command->m_data.size() != block_size)
            throw std::runtime_error("the block did not come: " + m_channel.get_text());
        return command;
    }

private:
    TemporaryDirectory m_directory;
    WakingNotifier m_notifier;
    MOutputChannel m_output{0};
    MOutputChannel m_channel{1};
    std::unique_ptr<M2ZendrixMachAbstract> m_driver;
};

// What it takes at the least: split lines, decode the text of each into its place.
class BareReceiver {
public:
    explicit BareReceiver(const std::string& port) : m_client(port) {}

    std::string receive() {
        std::string block(block_size + 2, '\0');
        std::size_t done = 0;
        m_client.ask("0007\treceive \"block\"\r\n", [&](std::string_view bytes) {
            std::size_t end = 0;
            while ((end = bytes.find('\n')) != std::string_view::npos) {
                m_line.append(bytes.substr(0, end));
                bytes.remove_prefix(end + 1);
                done += decode(block.data() + done);
                m_line.clear();
            }
            m_line.append(bytes);
        });
        block.resize(done);
        return block;
    }

private:
    std::size_t decode(char* to) const {
        const std::size_t begin = m_line.find('"');
        if (begin == std::string::npos) return 0;
        const std::string_view text = std::string_view(m_line).substr(begin + 1, m_line.size() - begin - 3);
        const int count = EVP_DecodeBlock(reinterpret_cast<unsigned char*>(to),
                                          reinterpret_cast<const unsigned char*>(text.data()),
                                          static_cast<int>(text.size()));
        return count < 0 ? 0 : static_cast<std::size_t>(count);
    }

    bench::BareClient m_client;
    std::string m_line;
};

bench::Measure ours(const std::string& port) {
    return bench::in_own_process([port] {
        const auto host = std::make_shared<Host>(port);
        return bench::wall_time([host] { bench::keep(host->receive()->m_data.size()); }, block_size / 1000);
    });
}

bench::Measure reference(const std::string& port) {
    return bench::in_own_process([port] {
        const auto receiver = std::make_shared<BareReceiver>(port);
        return bench::wall_time([receiver] { bench::keep(receiver->receive().size()); }, block_size / 1000);
    });
}

bench::Measure memory(const std::string& port) {
    return bench::in_new_process([port]() -> bench::Measure {
        return [port] {
            Host host(port);
            bench::keep(host.receive()->m_data.size());
            return bench::peak_memory() / 1e6;
        };
    });
}

}  // namespace

int main() try {
    const bench::LineResponder responder(bench::Cores::any, 0, pieces);
    const bench::Measure receiving = ours(responder.port());
    const bench::Measure reading = reference(responder.port());
    const bench::Measure using_memory = memory(responder.port());
    bench::print_head("a bare socket and EVP_DecodeBlock, a line at a time; ns a KB of the block");
    bench::compare({.name = "receive 64 MB of base64 through the driver",
                    .ours = receiving,
                    .reference = reading,
                    .limit = 1.5,
                    .aim = 1.0,
                    .rounds = 9});
    bench::compare({.name = "peak of the host's memory, and the block",
                    .ours = using_memory,
                    .reference = [] { return block_mb; },
                    .limit = 3.0,
                    .aim = 2.0,
                    .unit = "MB",
                    .rounds = 3});
    check(Host(responder.port()).receive()->m_data);
    check(BareReceiver(responder.port()).receive());
    return EXIT_SUCCESS;
} catch (const std::exception& error) {
    std::fprintf(stderr, "receive_bench: %s\n", error.what());
    return EXIT_FAILURE;
}
