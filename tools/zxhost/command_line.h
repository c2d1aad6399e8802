// The program from its arguments to its exit status, and the parts of that road that a shell's lines share.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "exit_status.h"
#include "verbs.h"

namespace zxhost {

struct Streams;

// `arguments` without the program's name.
ExitStatus run_command_line(std::vector<std::string> arguments, const Streams& streams);

// Adds the options that choose what is shown, and all verbs that work with one machine.
void add_line_verbs(CLI::App& app, Program& program);

// Reads the words into `program`; a request for help becomes its verb. Throws HostError (wrong usage).
void parse_words(CLI::App& app, Program& program, std::vector<std::string> words);

// Runs it; what it throws is told on standard error and becomes the status.
ExitStatus run_and_tell(const Streams& streams, const std::function<void()>& run);

}  // namespace zxhost
