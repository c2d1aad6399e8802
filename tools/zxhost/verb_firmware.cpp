// zxhost firmware: a block after which the machine starts again.
#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <chrono>
#include <cmath>
#include <memory>
#include <nlohmann/json.hpp>

#include "blocks.h"
#include "exit_status.h"
#include "input_bytes.h"
#include "interrupt.h"
#include "mmachabstract.h"
#include "number_text.h"
#include "os/terminal.h"
#include "rehearsal.h"
#include "verb_host.h"
#include "verbs.h"

namespace zxhost {
namespace {

using Clock = std::chrono::steady_clock;

struct FirmwareOptions {
    std::string file;
    std::string block{firmware_mark};
    bool yes = false;
    double wait = 60.0;
};

void check_options(const FirmwareOptions& options, const Settings& settings) {
    if (options.block.find(firmware_mark) == std::string::npos)
        throw HostError(ExitStatus::WrongUsage,
                        "'" + printable(options.block) + "' is no name of a firmware configuration",
                        "it must hold " + std::string(firmware_mark));
    if (options.yes || settings.rehearsal) return;
    if (!os::input_is_terminal())
        throw HostError(ExitStatus::WrongUsage, "nobody is there to be asked", "say that it shall be: --yes");
    if (options.file == standard_stream)
        throw HostError(ExitStatus::WrongUsage, "standard input can't bring both the bytes and the answer",
                        "name a file, or give the answer with --yes");
}

std::string line_of_input() {
    std::string line;
    for (char c = 0; os::read_input(&c, 1) == 1 && c != '\n';) line += c;
    if (line.ends_with('\r')) line.pop_back();
    return line;
}

void ask_first(VerbHost& host, const FirmwareOptions& options, std::size_t bytes) {
    host.err() << printable(host.machine().GetMachineName()) << " (revision "
               << printable(host.machine().GetMachineRevision()) << ", at " << printable(host.address())
               << ") takes " << size_text(bytes) << " of " << printable(options.file)
               << " as firmware configuration, and starts again.\nGo on? [yes/no] " << std::flush;
    const std::string answer = line_of_input();
    if (answer != "yes" && answer != "y")
        throw HostError(ExitStatus::MachineError, "aborted: nothing was sent");
}

// How long it has taken and may take.
class Patience {
public:
    explicit Patience(double seconds) : m_seconds(seconds) {}
    double passed() const { return std::chrono::duration<double>(Clock::now() - m_start).count(); }
    bool is_over() const { return passed() > m_seconds; }
    std::string seconds() const { return fmt::format("{:g} s", m_seconds); }

    void check(const std::string& missed) const {
        if (m_watch.interrupted())
            throw HostError(ExitStatus::MachineError, "aborted: the machine has the firmware configuration",
                            "see what it is now with: zxhost info");
        if (is_over())
            throw HostError(
                ExitStatus::NoConnection,
                "the machine has the firmware configuration, but " + missed + " within " + seconds(),
                "look after the machine, then see what it is with: zxhost info");
    }

private:
    const InterruptWatch m_watch;
    const Clock::time_point m_start = Clock::now();
    const double m_seconds;
};

// A driver without a machine has no value for what every machine has.
bool has_machine(VerbHost& host) {
    return !std::isnan(driver_call("a look at the machine", ExitStatus::NoConnection,
                                   [&] { return host.machine().GetAxisValue("init"); }));
}

void wait_for_loss(VerbHost& host, const Patience& patience) {
    for (host.poll(); has_machine(host); host.poll()) {
        patience.check("didn't begin to start again");
        host.show_progress("firmware: waiting for the machine to go");
        host.wait();
    }
}

void wait_for_return(OpenMachine& open, const Patience& patience,
                     const std::function<void(const std::string&)>& tell) {
    for (;;) {
        try {
            return open.renew();
        } catch (const HostError& error) {
            if (error.status != ExitStatus::NoConnection) throw;
        }
        patience.check("isn't back");
        tell(fmt::format("firmware: waiting for the machine to come back, {:.0f} s", patience.passed()));
        constexpr std::chrono::milliseconds between_two{200};
        open.notifier().wait(between_two);
    }
}

// From the block to the machine that is back.
class Update {
public:
    Update(const Settings& settings, const Streams& streams, const FirmwareOptions& options)
        : m_settings(settings), m_streams(streams), m_options(options) {
        if (!m_settings.borrow)
            m_settings.borrow = [this]() -> OpenMachine& {
                if (!m_own) m_own = std::make_unique<OpenMachine>(m_settings);
                return *m_own;
            };
    }

    void run() {
        std::string data;
        if (!m_settings.rehearsal) data = read_bytes(m_options.file);
        OpenMachine& open = m_settings.borrow();
        try {
            send(data);
            Patience patience(m_options.wait);
            VerbHost host(m_settings, m_streams);
            wait_for_loss(host, patience);
            wait_for_return(open, patience, [&](const std::string& text) { host.show_progress(text); });
            host.end_progress();
            m_seconds = patience.passed();
        } catch (const HostError&) {
            make_usable(open);
            throw;
        }
        show();
    }

private:
    void send(const std::string& data) {
        VerbHost host(m_settings, m_streams);
        if (!m_options.yes && !m_settings.rehearsal) ask_first(host, m_options, data.size());
        m_before = host.machine().GetMachineRevision();
        m_is_loss_expected = !m_settings.rehearsal;
        send_block(host, m_options.block, data);
        if (m_settings.rehearsal) throw RehearsalIsOver();
    }

    // A driver that has made the command takes any later loss for the one that it expects, and is silent.
    void make_usable(OpenMachine& open) {
        if (m_own || !m_is_loss_expected) return;
        try {
            open.renew();
        } catch (const HostError&) {
            open.channel().set_fatal();
        }
    }

    void show() {
        VerbHost host(m_settings, m_streams);
        const std::string now = host.machine().GetMachineRevision();
        if (now == m_before)
            host.err() << "warning: the machine tells the same revision as before" << std::endl;
        host.show({{"before", "revision before"}, {"after", "now"}, {"seconds", "seconds", 1}},
                  Json::array({{{"before", m_before}, {"after", now}, {"seconds", m_seconds}}}));
    }

    Settings m_settings;
    const Streams& m_streams;
    const FirmwareOptions& m_options;
    std::unique_ptr<OpenMachine> m_own;
    std::string m_before;
    bool m_is_loss_expected = false;  // by the driver, from the command on
    double m_seconds = 0.0;
};

void firmware(const Settings& settings, const Streams& streams, const FirmwareOptions& options) {
    check_options(options, settings);
    Update(settings, streams, options).run();
}

}  // namespace

void add_firmware(CLI::App& app, Program& program) {
    const auto options = std::make_shared<FirmwareOptions>();
    CLI::App* const verb = app.add_subcommand(
        "firmware", "Send a firmware configuration, and wait for the machine to start again with it");
    verb->add_option("FILE", options->file, "the file with it; - for standard input")->required();
    verb->add_option("--block", options->block, "its name on the machine, which must hold firmware.config")
        ->capture_default_str();
    verb->add_flag("--yes", options->yes, "don't ask");
    verb->add_option("--wait", options->wait, "seconds that the machine may take to be back")
        ->check(CLI::Range(0.0, 3600.0))
        ->capture_default_str();
    verb->footer("example: zxhost firmware new.config --yes");
    verb->callback([&program, options] {
        program.verb = [&program, options](const Streams& streams) {
            firmware(program.settings, streams, *options);
        };
    });
}

}  // namespace zxhost
