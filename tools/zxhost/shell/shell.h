// One connection and many verbs: the lines of a person, or of another program, on one open machine.
#pragma once

#include <memory>
#include <string>

#include "completion.h"
#include "exit_status.h"
#include "line_input.h"
#include "settings.h"
#include "verb_host.h"

namespace zxhost {

class LineApp;

class Shell {
public:
    // Opens the machine; throws HostError. Borrows the input. With `is_interactive` a person is at it: events
    // are shown as they come.
    Shell(const Settings& settings, const Streams& streams, LineInput& input, bool is_interactive);

    // Runs line after line to the end of the input. Errors are told and don't end it. Returns the status of
    // the first line that failed; for a person always Done.
    ExitStatus run();

private:
    OpenMachine& machine();
    void open();
    bool step(std::string& line);
    ExitStatus run_line(const std::string& line);
    void run_words(std::vector<std::string> words);
    void add_own_verbs(LineApp& line);
    std::string greeting();
    std::string news();
    Completions completions(std::string_view line);
    Vocabulary vocabulary();

    Settings m_settings;
    Settings m_connection;  // as they were given, to connect again
    Streams m_streams;
    LineInput& m_input;
    bool m_is_interactive;
    bool m_leaves = false;
    ExitStatus m_first_failure = ExitStatus::Done;
    std::unique_ptr<OpenMachine> m_machine;  // null once its connection is lost
};

}  // namespace zxhost
