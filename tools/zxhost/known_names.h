// Names and numbers that the machine must know before it is asked for more: the answer then names what it
// does know.
#pragma once

#include <functional>
#include <string>
#include <vector>

class MMachAbstract;

namespace zxhost {

struct Action;
class VerbHost;

// What a machine has of one kind.
struct KnownNames {
    std::string kind;                // "axis", "probe"
    std::vector<std::string> names;  // as a person types them
    std::string verb;                // of this program that tells more
};

// Throws HostError for the first name that isn't known: "no probe '7' on this machine", "it knows: 1, 2".
void check_known(const KnownNames& known, const std::vector<std::string>& names);

// Runs the action. If the machine refuses it and `check` finds a name that isn't known, that is the way out.
void run_known(VerbHost& host, const Action& action, const std::function<void()>& check);

// Each axis that the machine has, inactive ones too.
KnownNames known_axes(MMachAbstract& machine);

// "a, b, c"; of many names the first, and how many there are more.
std::string names_text(const std::vector<std::string>& names);

// Throws HostError (error of the machine) unless it has them: "this machine has no probes".
void check_has(bool has, const std::string& what);

}  // namespace zxhost
