// Verbs whose arguments are one list of texts, or none: a few lines each.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "verbs.h"

namespace zxhost {

struct ListVerb {
    const char* name;
    const char* description;
    const char* example;
    const char* argument = nullptr;  // what an item of the list is called; null for a verb without a list
    const char* argument_help = "";
    bool needs_one = false;  // an empty list is wrong usage
};

using RunListVerb = std::function<void(const Settings& settings, const Streams& streams,
                                       const std::vector<std::string>& list)>;

void add_list_verb(CLI::App& app, Program& program, const ListVerb& verb, RunListVerb run);

// A verb that is nothing without one of its parts, which are verbs of their own: `zxhost probe load 3`.
// Returns where to add them.
CLI::App& add_verb_group(CLI::App& app, const char* name, const char* description);

}  // namespace zxhost
