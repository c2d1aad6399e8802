#include "shell.h"

#include <CLI/CLI.hpp>
#include <algorithm>

#include "command_line.h"
#include "interrupt.h"
#include "line_app.h"
#include "line_words.h"
#include "list_verb.h"
#include "machine_facts.h"
#include "number_text.h"

namespace zxhost {
namespace {

constexpr const char* connect_again = "connect again with: reconnect";

using Names = std::vector<std::string>;

Names axis_names(MMachAbstract& machine) {
    Names names;
    for (const MMachAxisInfo* axis = machine.GetFirstAxisInfo(); axis; axis = machine.GetNextAxisInfo())
        names.push_back(axis->name);
    return names;
}

Names probe_names(MMachAbstract& machine) {
    Names names;
    if (machine.HasProbes())
        for (const CProbe& tip : machine.ListProbes(0, 0)) names.push_back(std::to_string(tip.probe));
    return names;
}

Names probesystem_names(MMachAbstract& machine) {
    Names names;
    if (machine.HasProbesystems())
        for (const std::string* name = machine.GetFirstSupportedProbesystem(); name;
             name = machine.GetNextSupportedProbesystem())
            names.push_back(*name);
    return names;
}

}  // namespace

Shell::Shell(const Settings& settings, const Streams& streams, LineInput& input, bool is_interactive)
    : m_settings(settings),
      m_connection(settings),
      m_streams(streams),
      m_input(input),
      m_is_interactive(is_interactive) {
    m_settings.events = is_interactive;
    m_settings.borrow = [this]() -> OpenMachine& { return machine(); };
    open();
}

OpenMachine& Shell::machine() {
    if (!m_machine)
        throw HostError(ExitStatus::NoConnection, "there is no connection to a machine", connect_again);
    return *m_machine;
}

void Shell::open() {
    m_machine = std::make_unique<OpenMachine>(m_connection);
    if (m_is_interactive) m_streams.out << greeting() << std::flush;
}

std::string Shell::greeting() {
    const std::string facts = driver_call("opening the machine", ExitStatus::NoConnection,
                                          [&] { return one_line(facts_of(m_machine->machine())); });
    return printable(facts) + ", at " + printable(m_machine->address()) +
           "\nhelp shows the verbs; exit or Ctrl-D leaves\n";
}

ExitStatus Shell::run() {
    const InterruptMemory memory;
    std::string line;
    while (!m_leaves && step(line)) continue;
    return m_is_interactive ? ExitStatus::Done : m_first_failure;
}

// One line; false at the end of the input.
bool Shell::step(std::string& line) {
    const LineInput::Shell shell{
        .prompt = [this] { return m_machine ? "zxhost> " : "zxhost (no machine)> "; },
        .news = [this] { return news(); },
        .complete = [this](std::string_view text) { return completions(text); }};
    LineInput::Got got = LineInput::Got::Line;
    const ExitStatus status = run_and_tell(m_streams, [&] { got = m_input.read(shell, line); });
    if (got == LineInput::Got::End) return false;
    if (got == LineInput::Got::Interrupt) return m_is_interactive;
    const ExitStatus result = status == ExitStatus::Done ? run_line(line) : status;
    if (m_first_failure == ExitStatus::Done) m_first_failure = result;
    return true;
}

ExitStatus Shell::run_line(const std::string& line) {
    const ExitStatus status = run_and_tell(m_streams, [&] {
        std::vector<std::string> words = words_of(line);
        if (words.empty()) return;
        m_input.remember(line);
        run_words(std::move(words));
    });
    InterruptMemory::take();  // it was meant for the verb
    return status;
}

void Shell::run_words(std::vector<std::string> words) {
    LineApp line(m_settings);
    add_own_verbs(line);
    try {
        line.run(std::move(words), m_streams);
    } catch (const HostError& error) {
        if (!m_machine || !m_machine->channel().is_fatal()) throw;
        m_machine.reset();
        throw HostError(error.status, error.what(), connect_again);
    }
}

void Shell::add_own_verbs(LineApp& line) {
    const auto leave = [this](const Settings&, const Streams&, const Names&) { m_leaves = true; };
    CLI::App& app = line.app();
    for (const char* name : {"exit", "quit"})
        add_list_verb(app, line.program(),
                      {.name = name, .description = "Leave the shell, as Ctrl-D does", .example = name},
                      leave);
    add_list_verb(app, line.program(),
                  {.name = "reconnect",
                   .description = "Close the connection, and connect to the same machine again",
                   .example = "reconnect"},
                  [this](const Settings&, const Streams&, const Names&) {
                      m_machine.reset();
                      open();
                  });
    add_list_verb(
        app, line.program(),
        {.name = "help", .description = "Show the verbs; VERB --help tells more of one", .example = "help"},
        [&app](const Settings&, const Streams& streams, const Names&) {
            streams.out << app.get_formatter()->make_help(&app, "", CLI::AppFormatMode::Normal);
        });
}

// What the machine has said since it was last asked, and whether it is still there.
std::string Shell::news() {
    if (!m_machine) return "";
    m_machine->machine().PollAsyncErrors();
    std::string text;
    for (const ChannelLine& line : take_lines(m_machine->channel())) {
        const bool is_hidden = line.keyword == "data" || line.text.rfind("fatal:", 0) == 0 ||
                               (line.keyword == "event" && !m_is_interactive);
        if (m_settings.lines)
            text += printable(line.whole) + "\n";
        else if (!is_hidden)
            text += line.keyword + ": " + printable(line.text) + "\n";
    }
    if (m_machine->channel().is_fatal()) {
        m_machine.reset();
        text += std::string("zxhost: the connection to the machine is lost\n        ") + connect_again + "\n";
    }
    return text;
}

Completions Shell::completions(std::string_view text) {
    LineApp line(m_settings);
    add_own_verbs(line);
    return complete(line.app(), vocabulary(), text);
}

Vocabulary Shell::vocabulary() {
    const auto ask = [this](Names (*names)(MMachAbstract&)) {
        return [this, names]() -> Names {
            if (!m_machine) return {};
            try {
                return driver_call("the list of names", ExitStatus::MachineError,
                                   [&] { return names(m_machine->machine()); });
            } catch (const HostError&) {
                return {};  // no names to offer; the next poll tells if the machine is gone
            }
        };
    };
    return {ask(axis_names), ask(probe_names), ask(probesystem_names)};
}

}  // namespace zxhost
