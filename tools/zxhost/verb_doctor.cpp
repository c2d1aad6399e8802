#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>

#include "exit_status.h"
#include "ladder.h"
#include "number_text.h"
#include "table.h"
#include "verb_host.h"
#include "verbs.h"

namespace zxhost {
namespace {

struct Patient {
    std::string host;
    std::string port;
};

const char* word_of(RungState state) {
    switch (state) {
        case RungState::holds:
            return "holds";
        case RungState::remark:
            return "remark";
        case RungState::broken:
            break;
    }
    return "broken";
}

ExitStatus status_of(RungKind kind) {
    switch (kind) {
        case RungKind::configuration:
            return ExitStatus::WrongUsage;
        case RungKind::connection:
            return ExitStatus::NoConnection;
        case RungKind::machine:
            break;
    }
    return ExitStatus::MachineError;
}

Json row_of(const Rung& rung) {
    return {{"rung", rung.name},
            {"state", word_of(rung.result.state)},
            {"text", rung.result.text},
            {"advice", rung.result.advice.empty() ? Json() : Json(rung.result.advice)},
            {"us", rung.took.count()}};
}

// What the last rung measured; null without it.
Json times_of(const std::vector<Microseconds>& sorted) {
    if (sorted.empty()) return {};
    const auto at = [&](double share) { return percentile(sorted, share).count(); };
    return {{"count", sorted.size()},
            {"median_us", at(0.5)},
            {"p90_us", at(0.9)},
            {"p99_us", at(0.99)},
            {"slowest_us", at(1.0)}};
}

void write_rung(std::ostream& out, const Rung& rung) {
    out << fmt::format("{:<6}  {:<13}  {}\n", word_of(rung.result.state), rung.name,
                       printable(rung.result.text));
    if (rung.result.state == RungState::remark)
        out << fmt::format("{:23}{}\n", "", printable(rung.result.advice));
    out.flush();
}

// The command line names the machine, or else the configuration does.
Target target_of(const Settings& settings, const Patient& patient, std::optional<ConfigReport>& config) {
    Target target{patient.host, patient.port, nullptr};
    if (target.host.empty()) target.host = settings.host;
    if (target.port.empty() && settings.config.empty()) target.port = std::to_string(settings.port);
    if (target.host.empty() || !settings.config.empty()) {
        config = read_config(settings.config, settings.name);
        if (!settings.config.empty()) target.config = &*config;
        if (target.host.empty()) target.host = config->host();
        if (target.port.empty() || (patient.host.empty() && patient.port.empty()))
            target.port = config->port();
    }
    return target;
}

void doctor(const Settings& settings, const Streams& streams, const Patient& patient) {
    std::optional<ConfigReport> config;
    Ladder ladder(target_of(settings, patient, config));
    const bool wants_json = settings.format == Format::AsJson;
    Json rungs = Json::array();
    Rung last;
    const bool holds = ladder.climb([&](const Rung& rung) {
        last = rung;
        rungs.push_back(row_of(rung));
        if (!wants_json) write_rung(streams.out, rung);
    });
    if (wants_json)
        write_json(streams.out, {{"machine", ladder.connection_string()},
                                 {"rungs", rungs},
                                 {"broken", holds ? Json() : Json(last.name)},
                                 {"round_trip", times_of(ladder.round_trips())}});
    if (!holds)
        throw HostError(status_of(last.kind), "doctor: " + last.name + ": " + last.result.text,
                        last.result.advice);
}

}  // namespace

void add_doctor(CLI::App& app, Program& program) {
    const auto patient = std::make_shared<Patient>();
    CLI::App* const verb = app.add_subcommand(
        "doctor", "Climb from the configuration to a machine that answers, and tell what is in the way");
    verb->add_option(
        "HOST", patient->host,
        "name or address, a machine server's library (.dll), or a serial line (COM); without it the "
        "configuration's");
    verb->add_option("PORT", patient->port, "its port")->check(CLI::Range(1, 65535));
    verb->footer(
        "example: zxhost doctor 127.0.0.1 7073\n"
        "         zxhost --config /etc/machines --name lab doctor\n"
        "         zxhost --format json doctor machine.lab\n"
        "Nothing moves. exit status: 0 all rungs hold, 1 the machine server's part is broken, 2 the\n"
        "configuration, 3 the way to the machine");
    verb->callback([&program, patient] {
        program.verb = [&program, patient](const Streams& streams) {
            doctor(program.settings, streams, *patient);
        };
    });
}

}  // namespace zxhost
