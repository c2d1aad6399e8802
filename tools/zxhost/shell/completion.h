// How a line can go on: verbs, their parts and options, and what the machine itself has.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace CLI {
class App;
}

namespace zxhost {

struct Completions {
    std::size_t begin = 0;           // of the word in the line that each of these can replace
    std::vector<std::string> words;  // in order, each once, in quotes where it needs them
    bool file_names = false;         // a name of a file may stand here too
};

// The names of this machine by what they are called on the command line; each is asked for only when needed.
struct Vocabulary {
    std::function<std::vector<std::string>()> axes;
    std::function<std::vector<std::string>()> probes;
    std::function<std::vector<std::string>()> probesystems;
};

// `line` reaches up to the cursor. A verb's argument says by its name what it takes: AXIS, TARGET, PROBE,
// NAME (of a probe system), FILE.
Completions complete(CLI::App& app, const Vocabulary& vocabulary, std::string_view line);

}  // namespace zxhost
