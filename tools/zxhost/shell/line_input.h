// Where the lines of a shell come from.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "completion.h"

namespace zxhost {

class LineInput {
public:
    // What a shell gives while it waits for a line; each is called on the thread of read.
    struct Shell {
        std::function<std::string()> prompt;
        std::function<std::string()> news;  // whole lines that shall stand above the prompt; empty: none
        std::function<Completions(std::string_view line)> complete;  // of a line up to the cursor
    };

    enum class Got {
        Line,
        Interrupt,  // Ctrl-C: what was typed is dropped
        End         // no line comes any more
    };

    virtual ~LineInput() = default;

    // Waits for a line and stores it without its end. Throws HostError (wrong usage) for a line that is too
    // long, which is then behind it.
    virtual Got read(const Shell& shell, std::string& line) = 0;

    // A line that a person may want again.
    virtual void remember(const std::string&) {}
};

// With line editing and a history kept in this file (none if it is empty); null where the terminal or this
// build offers no editing.
std::unique_ptr<LineInput> new_edited_input(const std::string& history_file);

}  // namespace zxhost
