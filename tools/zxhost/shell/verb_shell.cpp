// zxhost shell: one connection for many verbs.
#include <CLI/CLI.hpp>
#include <memory>

#include "line_input.h"
#include "list_verb.h"
#include "os/directories.h"
#include "os/terminal.h"
#include "plain_input.h"
#include "shell.h"

namespace zxhost {
namespace {

// In the user's state directory; empty if there is none.
std::string history_file() {
    const std::string directory = os::user_state_directory();
    return !directory.empty() && os::make_directories(directory) ? directory + "/shell-history" : "";
}

void shell(const Settings& settings, const Streams& streams, const std::vector<std::string>&) {
    const bool is_interactive = os::input_is_terminal() && streams.out_is_watched;
    std::unique_ptr<LineInput> input;
    if (is_interactive) input = new_edited_input(history_file());
    if (!input)
        input = std::make_unique<PlainInput>(is_interactive ? streams.out : streams.err, is_interactive);
    const ExitStatus status = Shell(settings, streams, *input, is_interactive).run();
    if (status != ExitStatus::Done) throw HostError::told_already(status, "a line failed");
}

}  // namespace

void add_shell(CLI::App& app, Program& program) {
    add_list_verb(
        app, program,
        {.name = "shell",
         .description = "Keep one connection, and run a verb for each line that is typed or piped in",
         .example = "zxhost --host 127.0.0.1 shell"},
        shell);
}

}  // namespace zxhost
