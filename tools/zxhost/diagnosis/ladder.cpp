#include "ladder.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <string_view>

#include "TcpIpSpeeder.h"
#include "czendrixcom.h"
#include "handshake.h"
#include "replies.h"
#include "resolve.h"
#include "supportedcommands.h"

namespace zxhost {
namespace {

using serverdll::Clock;

constexpr std::size_t pings = 200;
constexpr std::chrono::milliseconds most_pinging{5000};
// Who delays an acknowledgement waits about this long for something to send with it.
constexpr Microseconds delayed{35000};

RungResult good(std::string text) { return {RungState::holds, std::move(text), ""}; }

RungResult remark(std::string text, std::string advice) {
    return {RungState::remark, std::move(text), std::move(advice)};
}

RungResult broken(std::string text, std::string advice) {
    return {RungState::broken, std::move(text), std::move(advice)};
}

std::string joined(const std::vector<std::string>& items) {
    return fmt::format("{}", fmt::join(items, ", "));
}

std::string place_of(const Finding& finding) {
    return finding.line == 0 ? finding.file : fmt::format("{}:{}", finding.file, finding.line);
}

const Finding* first_of(const ConfigReport& report, FindingKind kind) {
    const auto found = std::find_if(report.findings.begin(), report.findings.end(),
                                    [kind](const Finding& finding) { return finding.kind == kind; });
    return found == report.findings.end() ? nullptr : &*found;
}

// A hint for the first of these parts that the cause holds.
struct Hint {
    std::string_view part, advice;
};

template <std::size_t N>
std::string advice_for(const std::string& cause, const std::array<Hint, N>& hints) {
    for (const Hint& hint : hints)
        if (cause.find(hint.part) != std::string::npos) return std::string(hint.advice);
    return "";
}

std::string advice_on_connecting(const std::string& cause) {
    static constexpr std::array<Hint, 6> hints{
        {{".dll", "give the path of the machine server's library, built for this system"},
         {"COM", "give the serial line's device, and see that this user may open it"},
         {"refused",
          "a computer is there and nothing listens on that port: start the machine server, or correct the "
          "port"},
         {"no answer", "switch the machine on, look at its cable, and let firewalls pass that port"},
         {"expected a host", "give a port from 1 to 65535"},
         {"", "look at this computer's own network: cable, address, way to the machine"}}};
    return advice_for(cause, hints);
}

std::string advice_on_hello(const std::string& cause) {
    static constexpr std::array<Hint, 4> hints{
        {{"it says", "another service listens there: correct the port"},
         {"silent",
          "the machine server hangs, or another service listens there: restart it, or correct the port"},
         {"closed", "the machine server sends clients away: end other hosts, or look at its own log"},
         {"", "the machine server breaks off: look at its own log"}}};
    return advice_for(cause, hints);
}

std::string milliseconds_text(Microseconds time) { return fmt::format("{:.3f} ms", time.count() / 1000.0); }

}  // namespace

Ladder::Ladder(Target target, os::Registry& registry, serverdll::ClientOptions options)
    : m_target(std::move(target)), m_registry(registry), m_options(options) {}

bool Ladder::is_named() const {
    return m_target.host.find(".dll") != std::string::npos || m_target.host.find("COM") != std::string::npos;
}

std::string Ladder::connection_string() const {
    return is_named() ? m_target.host : m_target.host + " " + m_target.port;
}

bool Ladder::climb(const std::function<void(const Rung&)>& tell) {
    struct Step {
        const char* name;
        RungKind kind;
        RungResult (Ladder::*run)();
    };
    static constexpr Step steps[] = {
        {"configuration", RungKind::configuration, &Ladder::configuration},
        {"keys", RungKind::configuration, &Ladder::keys},
        {"address", RungKind::connection, &Ladder::address},
        {"connection", RungKind::connection, &Ladder::connect},
        {"hello", RungKind::connection, &Ladder::hello},
        {"revision", RungKind::connection, &Ladder::revision},
        {"commands", RungKind::machine, &Ladder::commands},
        {"machine lock", RungKind::machine, &Ladder::lock},
        {"adapter", RungKind::machine, &Ladder::adapter},
        {"round trip", RungKind::machine, &Ladder::round_trip},
    };
    for (const Step& step : steps) {
        const Clock::time_point start = Clock::now();
        Rung rung{step.name, step.kind, (this->*step.run)(), {}};
        rung.took = std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - start);
        tell(rung);
        if (rung.result.state == RungState::broken) return false;
    }
    return true;
}

RungResult Ladder::configuration() {
    if (!m_target.config) return good("none is needed: the command line names the machine");
    if (const Finding* const bad = first_of(*m_target.config, FindingKind::unreadable))
        return broken(place_of(*bad) + ": " + bad->text,
                      "mend the file: the driver passes over it in silence");
    if (m_target.config->taken.empty())
        return broken(
            "there is neither " + m_target.config->looked_at.front().file + " nor " +
                m_target.config->looked_at.back().file,
            "correct --config and --name, or make that file: the driver goes on with its default address");
    return good(m_target.config->taken);
}

RungResult Ladder::keys() {
    if (!m_target.config) return good("none");
    const ConfigReport& config = *m_target.config;
    if (const Finding* const bad = first_of(config, FindingKind::near_miss))
        return broken(place_of(*bad) + ": " + bad->text, "write the name as it is meant");
    if (!config.findings.empty())
        return remark(place_of(config.findings.front()) + ": " + config.findings.front().text,
                      "see all of it with: zxhost config");
    std::vector<std::string> names;
    for (const ConfigValue& value : config.values)
        if (!value.file.empty()) names.push_back(value.key);
    return good(names.empty() ? "the file holds none, so the defaults are in force" : joined(names));
}

RungResult Ladder::address() {
    if (is_named()) return good(m_target.host + " is no name of the network");
    std::string failure;
    const std::vector<std::string> addresses = resolve(m_target.host, failure);
    if (addresses.empty())
        return broken(
            fmt::format("\"{}\" stands for no address: {}", m_target.host, failure),
            "write the machine's address in numbers, or enter its name where this computer looks names up");
    m_address = addresses.front();
    return good(joined(addresses));
}

RungResult Ladder::connect() {
    const Clock::time_point start = Clock::now();
    try {
        m_transport = serverdll::connect_transport(connection_string(), m_options);
    } catch (const CZendrixError& error) {
        return broken(error.m_text, advice_on_connecting(error.m_text));
    }
    return good(fmt::format("{} in {}", connection_string(), milliseconds_text(Clock::now() - start)));
}

RungResult Ladder::hello() {
    const Clock::time_point start = Clock::now();
    m_helloFault = serverdll::read_hello(*m_transport, m_splitter, m_options, m_hello);
    // A hello of a revision that isn't known is one nevertheless.
    const bool has_come = m_helloFault.empty() || m_hello.major != 0 || !m_hello.name.empty();
    if (!has_come) return broken(m_helloFault, advice_on_hello(m_helloFault));
    return good(fmt::format("\"{}\" ({}) in {}", m_hello.name, m_hello.simulated ? "simulated" : "machine",
                            milliseconds_text(Clock::now() - start)));
}

RungResult Ladder::revision() {
    if (!m_helloFault.empty())
        return broken(m_helloFault, "bring driver and machine server to versions that belong together");
    m_talk = std::make_unique<LineTalk>(std::move(m_transport), std::move(m_splitter));
    return good(fmt::format("{}.{}", m_hello.major, m_hello.minor));
}

RungResult Ladder::no_answer(const std::string& request, const Answer& answer) const {
    if (answer.failure.empty())
        return broken(fmt::format("\"{}\" is refused: {}", request, answer.error),
                      "this machine server lacks what every host needs: update it");
    return broken(fmt::format("\"{}\": {}", request, answer.failure),
                  "the machine server hangs or broke off: look at its own log, and restart it");
}

RungResult Ladder::commands() {
    const Answer answer = m_talk->ask("commands", m_options.answer);
    if (!answer.is_good()) return no_answer("commands", answer);
    std::vector<std::string> known;
    for (const std::string& line : answer.data) {
        std::string name;
        if (serverdll::read_name(line, name)) known.push_back(name);
    }
    std::vector<std::string> missing;
    for (const SupportedCommand& command : supported_commands)
        if (std::find(known.begin(), known.end(), command.word) == known.end())
            missing.push_back(command.word);
    const std::size_t all = std::size(supported_commands);
    if (missing.empty()) return good(fmt::format("all {} that the driver knows", all));
    const std::string text = fmt::format("{} of the {} that the driver knows", all - missing.size(), all);
    if (std::find(missing.begin(), missing.end(), "get") != missing.end())
        return broken(text + ", and \"get\" isn't among them",
                      "without it no host can work: look at the machine server's options and its version");
    return good(text + "; not " + joined(missing));
}

RungResult Ladder::lock() {
    const Answer taken = m_talk->ask("machine get now", m_options.answer);
    if (!taken.failure.empty()) return no_answer("machine get now", taken);
    if (!taken.error.empty())
        return broken(
            fmt::format("the machine isn't free: {}", taken.error),
            "another host has it (the protocol doesn't tell which): wait for its action's end, or end it");
    const Answer released = m_talk->ask("machine release", m_options.answer);
    if (!released.is_good()) return no_answer("machine release", released);
    return good("free; taken and given back");
}

RungResult Ladder::adapter() {
    if (is_named()) return good("no adapter in between");
    CTcpIpSpeeder speeder(m_registry);
    if (speeder.HasMaxTCPIPSpeed(m_target.host)) return good("acknowledges at once");
    std::string shape = m_target.host;
    if (!CTcpIpSpeeder::MakeTargetIPAddress(shape))
        return remark("a host given by its name can't be checked, and the driver warns of that",
                      "write its address, " + m_address);
    AdapterInfo info;
    AdapterKey key(m_registry);
    if (!speeder.GetNwAdapterForIp(m_target.host, info, key, true))
        return remark(
            "no adapter of this computer is in the machine's own network, and the driver warns of that",
            "the round trip below tells whether it matters");
    return remark(
        fmt::format("{} ({}) delays acknowledgements, and the driver warns of that", info.key_name, info.ip),
        "set TcpAckFrequency of that adapter to 1");
}

RungResult Ladder::round_trip() {
    m_trips = measure_round_trips(*m_talk, pings, most_pinging);
    if (!m_trips.failure.empty()) return no_answer("ping", {{}, "", m_trips.failure});
    const auto at = [this](double share) { return milliseconds_text(percentile(m_trips.sorted, share)); };
    const std::string text = fmt::format("median {}, 90 % {}, 99 % {}, slowest {}, of {}", at(0.5), at(0.9),
                                         at(0.99), at(1.0), m_trips.sorted.size());
    if (percentile(m_trips.sorted, 0.5) < delayed) return good(text);
    return remark(text,
                  "somebody on the way delays small packets: look at the adapters' settings on both ends");
}

}  // namespace zxhost
