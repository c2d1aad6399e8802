#include <CLI/CLI.hpp>
#include <chrono>
#include <memory>
#include <nlohmann/json.hpp>

#include "interrupt.h"
#include "number_text.h"
#include "scan_run.h"
#include "verb_host.h"
#include "verbs.h"

namespace zxhost {
namespace {

struct EventOptions {
    double seconds = 0.0;
    unsigned long count = 0;
};

void write_event(VerbHost& host, const ChannelLine& line) {
    if (host.wants_json())
        write_json_line(host.out(), {{"time", time_text()}, {"keyword", line.keyword}, {"text", line.text}});
    else
        host.out() << time_text() << "  " << line.keyword << "  " << printable(line.text) << "\n";
    host.out().flush();
}

void events(const Program& program, const Streams& streams, const EventOptions& options) {
    using Clock = std::chrono::steady_clock;
    VerbHost host(program.settings, streams);
    unsigned long seen = 0;
    host.set_line_sink([&](const ChannelLine& line) {
        if (options.count == 0 || seen < options.count) write_event(host, line);
        ++seen;
    });
    streams.err << "listening to " << printable(host.address()) << "; Ctrl-C ends" << std::endl;
    const InterruptWatch watch;
    const auto start = Clock::now();
    const auto is_over = [&] {
        const std::chrono::duration<double> elapsed = Clock::now() - start;
        return (options.seconds > 0.0 && elapsed.count() >= options.seconds) ||
               (options.count > 0 && seen >= options.count) || watch.interrupted();
    };
    while (!is_over()) {
        host.wait();
        host.poll();
    }
}

}  // namespace

void add_events(CLI::App& app, Program& program) {
    const auto options = std::make_shared<EventOptions>();
    CLI::App* const verb =
        app.add_subcommand("events", "Show what the machine says by itself, as it happens, until Ctrl-C");
    verb->add_option("--for", options->seconds, "end after this many seconds")->check(CLI::PositiveNumber);
    verb->add_option("--count", options->count, "end after this many lines")->check(CLI::PositiveNumber);
    verb->footer("example: zxhost events --for 60 --format json");
    verb->callback([&program, options] {
        program.verb = [&program, options](const Streams& streams) { events(program, streams, *options); };
    });
}

}  // namespace zxhost
