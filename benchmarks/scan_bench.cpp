// A scan of four-value points on the client's side, from the socket to GetNextScanPoint, in processor time a
// point. The reference takes the same text from memory: split, std::from_chars, a mutex and a
// deque<vector<double>>, and nothing else.
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <deque>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <string_view>
#include <vector>

#include "comparison.h"
#include "host_side.h"
#include "lineresponder.h"
#include "m2zendrixmachabstract.h"
#include "moutputchannel.h"
#include "temporary_directory.h"

namespace {

constexpr std::size_t points = 200'000;

// A driver at a server that only sends.
class Setup {
public:
    Setup() : m_responder(bench::Cores::any, points) {
        m_directory.file("m2zendrix.ini", "[connection]\nhost=127.0.0.1\nport=" + m_responder.port() + "\n");
        m_driver =
            std::make_unique<M2ZendrixMachAbstract>(&m_output, &m_notifier, "m2zendrix", m_directory.path());
        if (!m_driver->Open()) throw std::runtime_error("the driver could not open the machine");
    }
    ~Setup() { m_driver->Close(); }

    void scan() {
        const std::unique_ptr<MMachScancircleCommand> command(
            m_driver->NewMMachScancircleCommand(&m_channel, MMachCircle()));
        if (command == nullptr) throw std::runtime_error("no scan: " + m_channel.get_text());
        std::size_t count = 0;
        bool done = false;
        const bool ended = run_host(
            m_notifier, [&] { return done; },
            [&] {
                done = command->IsDone();
                while (command->GetNextScanPoint(m_point)) count += m_point.size() == 4 ? 1 : 0;
            });
        if (!ended || count != points || m_channel.has_error()) throw std::runtime_error("points were lost");
    }

private:
    bench::LineResponder m_responder;
    TemporaryDirectory m_directory;
    WakingNotifier m_notifier;
    MOutputChannel m_output{0};
    MOutputChannel m_channel{1};
    std::unique_ptr<M2ZendrixMachAbstract> m_driver;
    std::vector<double> m_point;
};

class Reference {
public:
    Reference() : m_text(bench::point_lines("0007", points)) {}

    void scan() {
        std::string_view rest = m_text;
        while (!rest.empty()) {
            const std::size_t end = rest.find('\n');
            take(rest.substr(0, end - 1));
            rest.remove_prefix(end + 1);
        }
        std::size_t count = 0;
        std::vector<double> point;
        while (get(point)) count += point.size() == 4 ? 1 : 0;
        if (count != points) throw std::runtime_error("the reference lost points");
    }

private:
    // "0007<tab>point N V V V V"
    void take(std::string_view line) {
        std::vector<double> point;
        std::size_t field = 0;
        for (std::size_t at = 0; at < line.size(); ++field) {
            const std::size_t end = std::min(line.find(' ', at), line.size());
            double value = 0.0;
            if (field >= 2) {
                std::from_chars(line.data() + at, line.data() + end, value);
                point.push_back(value);
            }
            at = end + 1;
        }
        const std::lock_guard guard(m_lock);
        m_queue.push_back(std::move(point));
    }

    bool get(std::vector<double>& point) {
        const std::lock_guard guard(m_lock);
        if (m_queue.empty()) return false;
        point = std::move(m_queue.front());
        m_queue.pop_front();
        return true;
    }

    std::string m_text;
    std::mutex m_lock;
    std::deque<std::vector<double>> m_queue;
};

}  // namespace

int main() try {
    Setup setup;
    Reference reference;
    bench::print_head("split, std::from_chars, a mutex and a deque<vector<double>>, from memory");
    bench::compare({.name = "a scan's point, socket to GetNextScanPoint",
                    .ours = bench::processor_time([&] { setup.scan(); }, points),
                    .reference = bench::processor_time([&] { reference.scan(); }, points),
                    .limit = 1.0,
                    .aim = 0.65});
    return EXIT_SUCCESS;
} catch (const std::exception& error) {
    std::fprintf(stderr, "scan_bench: %s\n", error.what());
    return EXIT_FAILURE;
}
