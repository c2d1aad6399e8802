// zxhost watch: the machine's autoinfo.
#include <CLI/CLI.hpp>
#include <chrono>
#include <map>
#include <memory>
#include <thread>

#include "exit_status.h"
#include "interrupt.h"
#include "known_names.h"
#include "mmachabstract.h"
#include "number_text.h"
#include "positions.h"
#include "targets.h"
#include "verb_host.h"
#include "verbs.h"
#include "watch_output.h"

namespace zxhost {
namespace {

using Clock = std::chrono::steady_clock;
using Names = std::vector<std::string>;

enum class WatchFormat { AsSet, AsTable, AsJson, AsCsv };

struct WatchOptions {
    Names axes;
    unsigned interval = 100;  // ms
    double seconds = 0.0;     // 0: no end
    std::size_t count = 0;    // 0: no end
    WatchFormat format = WatchFormat::AsSet;
};

// Records are taken by the handful: one by one they would cost a wake-up each.
constexpr std::chrono::milliseconds handful{10};
constexpr unsigned long long watch_tag = 1;

// An autoinfo that ends with the object.
class Autoinfo {
public:
    Autoinfo(VerbHost& host, unsigned interval, const Names& axes) : m_machine(host.machine()) {
        try {
            const bool is_started =
                host.ask("watch", [&] { return m_machine.StartAutoinfo(watch_tag, interval, axes); });
            if (!is_started)
                throw HostError(ExitStatus::MachineError, "watch: the machine sends no values of these axes",
                                "the error log has the reason");
        } catch (...) {
            m_machine.StopAutoinfo();
            throw;
        }
    }
    ~Autoinfo() { m_machine.StopAutoinfo(); }
    Autoinfo(const Autoinfo&) = delete;
    Autoinfo& operator=(const Autoinfo&) = delete;

private:
    MMachAbstract& m_machine;
};

WatchFormat format_of(const WatchOptions& options, const VerbHost& host) {
    if (options.format != WatchFormat::AsSet) return options.format;
    return host.wants_json() ? WatchFormat::AsJson : WatchFormat::AsTable;
}

std::unique_ptr<WatchOutput> output_of(WatchFormat format, const Streams& streams,
                                       const std::vector<AxisLabel>& axes) {
    switch (format) {
        case WatchFormat::AsCsv:
            return record_csv(streams.out, axes);
        case WatchFormat::AsJson:
            return record_json(streams.out, axes);
        default:
            return streams.out_is_watched ? live_table(streams.out, axes) : record_lines(streams.out, axes);
    }
}

// Takes what has come; false once there are enough.
class Watcher {
public:
    Watcher(MMachAbstract& machine, WatchOutput& output, std::size_t most)
        : m_machine(machine), m_output(output), m_most(most) {}

    void take() {
        const double seconds = elapsed();
        while (!has_enough() && m_machine.GetAutoinfo(m_values)) m_output.add({++m_count, seconds, m_values});
        m_output.flush();
    }

    bool has_enough() const { return m_most != 0 && m_count >= m_most; }
    std::size_t count() const { return m_count; }
    double elapsed() const { return std::chrono::duration<double>(Clock::now() - m_start).count(); }

private:
    MMachAbstract& m_machine;
    WatchOutput& m_output;
    std::size_t m_most;
    std::size_t m_count = 0;
    std::vector<double> m_values;
    Clock::time_point m_start = Clock::now();
};

void run_watch(VerbHost& host, Watcher& watcher, const Streams& streams, double seconds) {
    const InterruptWatch interrupt;
    while (!watcher.has_enough() && !interrupt.interrupted() &&
           (seconds == 0.0 || watcher.elapsed() < seconds)) {
        host.wait();
        std::this_thread::sleep_for(handful);
        watcher.take();
        host.poll();
        if (!streams.out)
            throw HostError(ExitStatus::WrongUsage, "the records can't be written",
                            "is there room, and does somebody read them?");
    }
}

void watch(const Program& program, const Streams& streams, const WatchOptions& options) {
    parse_axis_set(options.axes);
    VerbHost host(program.settings, streams);
    const Names axes = options.axes.empty() ? active_axes(host.machine()) : options.axes;
    if (axes.empty()) check_has(false, "active axes");
    const auto output = output_of(format_of(options, host), streams, labels_of(host.machine(), axes));
    streams.err << "watching " << names_text(axes) << " of " << printable(host.address()) << "; Ctrl-C ends"
                << std::endl;
    const Autoinfo autoinfo(host, options.interval, axes);
    Watcher watcher(host.machine(), *output, options.count);
    run_watch(host, watcher, streams, options.seconds);
    watcher.take();  // what came while the last was written
    output->end();
    streams.err << watcher.count() << " records in " << fixed_text(watcher.elapsed(), 1) << " s" << std::endl;
}

}  // namespace

void add_watch(CLI::App& app, Program& program) {
    const auto options = std::make_shared<WatchOptions>();
    CLI::App* const verb =
        app.add_subcommand("watch", "Show values of axes as the machine reports them, until Ctrl-C");
    verb->add_option("AXIS", options->axes, "names; none means all active ones");
    verb->add_option("--interval", options->interval,
                     "between records, in ms; 0: as often as the machine can")
        ->check(CLI::Range(0U, 3600000U))
        ->capture_default_str();
    verb->add_option("--for", options->seconds, "end after this many seconds")->check(CLI::PositiveNumber);
    verb->add_option("--count", options->count, "end after this many records")->check(CLI::PositiveNumber);
    const std::map<std::string, WatchFormat> formats{
        {"table", WatchFormat::AsTable}, {"json", WatchFormat::AsJson}, {"csv", WatchFormat::AsCsv}};
    verb->add_option("--format", options->format, "table (live on a terminal), json (a line each) or csv")
        ->transform(CLI::CheckedTransformer(formats).description(""))
        ->option_text("table|json|csv");
    verb->footer(
        "example: zxhost watch x z --interval 20\n"
        "         zxhost watch x z --interval 1 --format csv > values.csv");
    verb->callback([&program, options] {
        program.verb = [&program, options](const Streams& streams) { watch(program, streams, *options); };
    });
}

}  // namespace zxhost
