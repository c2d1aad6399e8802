// A file of shell lines, played on one machine or examined without it.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "exit_status.h"
#include "rehearsal.h"
#include "settings.h"

namespace zxhost {

struct Streams;

// How many scripts may play each other.
constexpr std::size_t deepest_script = 16;

// Plays it with the machine that `settings` lends. Throws HostError at the first line that fails, with the
// file and the line's number in front of its text.
void play_script(const std::string& file, const Settings& settings, const Streams& streams);

struct LineRemark {
    std::uint64_t line = 0;
    ExitStatus status = ExitStatus::Done;  // with which the script would end there
    Remark remark;
};

struct ScriptReport {
    std::uint64_t lines = 0;  // that say something
    std::vector<LineRemark> remarks;
};

// Examines each line in `settings.rehearsal`. Throws HostError if the file can't be read, plays itself, or if
// the connection is lost.
ScriptReport check_script(const std::string& file, const Settings& settings);

}  // namespace zxhost
