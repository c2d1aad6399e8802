// The error log, the error trace and the trace for tests: the same functions as the real libraries, but what
// is reported is kept in memory for a test to look at. Any thread may report and ask at any time.
#pragma once

#include <string>
#include <vector>

namespace recording {

struct TraceLine {
    std::string channel;
    int level;
    std::string text;
};

// Where a report said that it comes from.
struct Place {
    std::string source;
    int line;
};

// Forgets everything that was recorded, also what the calling thread's open contexts hold; all levels go to
// 0.
void reset();

// Formatted texts of _MErrLog_Add and of dumps, in the order in which they came. A dump counts as the records
// of its context, innermost failure first, and then its final message.
std::vector<std::string> error_log();

// Every record ever given to _MErrTrace_Add, on any thread, also while no context was open.
std::vector<std::string> error_trace();

// The places of the texts that error_log and error_trace give, one for one.
std::vector<Place> error_log_places();
std::vector<Place> error_trace_places();

// The lines that were written by _MTrace_Always, whatever the levels were.
std::vector<TraceLine> trace();

// Sets the level of the channel "default" and the master level: lines up to this level are on.
void set_trace_level(int level);

// How many contexts are open on the calling thread: 0 again when every scope has ended.
std::size_t open_contexts();

}  // namespace recording
