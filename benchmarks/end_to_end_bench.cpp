// A whole scan: simulated machine in a process of its own, TCP, client, driver, host. No reference: the
// figure is how many points a second come through, and that none is lost.
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <stdexcept>

#include "comparison.h"
#include "host_side.h"
#include "m2zendrixmachabstract.h"
#include "moutputchannel.h"
#include "test_process.h"
#include "temporary_directory.h"

namespace {

constexpr double pi = 3.14159265358979323846;
constexpr double radius = 25.0045;
constexpr double step = 0.00005;  // mm between points

// A driver at a simulated machine that is as fast as it can be.
class Setup {
public:
    Setup() : m_machine(SIMULATOR_FILE, {"--port", "0", "--speed", "max"}) {
        if (!m_machine.wait_for("\n")) throw std::runtime_error("the simulated machine did not start");
        const std::string& line = m_machine.out();
        const std::size_t colon = line.rfind(':');
        m_directory.file("m2zendrix.ini", "[connection]\nhost=127.0.0.1\nport=" +
                                              line.substr(colon + 1, line.find('\n') - colon - 1) + "\n");
        m_driver =
            std::make_unique<M2ZendrixMachAbstract>(&m_output, &m_notifier, "m2zendrix", m_directory.path());
        if (!m_driver->Open()) throw std::runtime_error("the driver could not open the machine");
        const AxisSet all;
        finish(m_driver->NewMMachInitCommand(&m_channel, all));
        finish(m_driver->NewMMachSetCommand(&m_channel, {{"scanstep", step}}));
        const std::vector<std::string> names{"x", "y", "z", "time"};
        finish(m_driver->NewMMachScandataCommand(&m_channel, names));
        if (m_channel.has_error()) throw std::runtime_error(m_channel.get_text());
        m_channel.clear();
    }
    ~Setup() {
        m_driver->Close();
        m_driver->PollAsyncErrors();
        m_output.clear();
        m_channel.clear();
    }

    // One scan of `turns` round the ring; how many whole points came.
    std::size_t scan(double turns) {
        MMachCircle circle;
        const double parameters[7] = {10.0123, -4.9917, 20.0, radius, 0.0, 360.0 * turns, 0.0};
        std::copy(std::begin(parameters), std::end(parameters), circle.parameters);
        const std::unique_ptr<MMachScancircleCommand> command(
            m_driver->NewMMachScancircleCommand(&m_channel, circle));
        std::size_t points = 0;
        std::vector<double> point;
        bool done = false;
        const bool ended = run_host(
            m_notifier, [&] { return done; },
            [&] {
                done = command->IsDone();
                while (command->GetNextScanPoint(point)) points += point.size() == 4 ? 1 : 0;
            });
        if (!ended || m_channel.has_error())
            throw std::runtime_error("the scan failed: " + m_channel.get_text());
        m_channel.clear();
        return points;
    }

private:
    void finish(MMachCommand* command) {
        const std::unique_ptr<MMachCommand> owner(command);
        if (!run_host(
                m_notifier, [&] { return command->IsDone(); }, [] {}))
            throw std::runtime_error("a command did not end");
    }

    test_support::Process m_machine;
    TemporaryDirectory m_directory;
    WakingNotifier m_notifier;
    MOutputChannel m_output{0};
    MOutputChannel m_channel{1};
    std::unique_ptr<M2ZendrixMachAbstract> m_driver;
};

}  // namespace

int main() try {
    Setup setup;
    constexpr double turns = 2.0;
    setup.scan(0.1);
    const auto start = std::chrono::steady_clock::now();
    const std::size_t points = setup.scan(turns);
    const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    // Points stand at both ends of the way.
    const double expected = std::round(2.0 * pi * radius * turns / step);
    std::printf("a scan of four-value points through simulator, TCP, client, driver and host\n");
    bench::print_figure("points received", static_cast<double>(points), "points");
    bench::print_figure("of the way's length", static_cast<double>(points) / expected, "of all");
    bench::print_figure("end to end", static_cast<double>(points) / seconds, "points/s");
    return EXIT_SUCCESS;
} catch (const std::exception& error) {
    std::fprintf(stderr, "end_to_end_bench: %s\n", error.what());
    return EXIT_FAILURE;
}
