#include "known_names.h"

#include <algorithm>
#include <cstddef>

#include "exit_status.h"
#include "mmachabstract.h"
#include "number_text.h"
#include "verb_host.h"

namespace zxhost {
namespace {

constexpr std::size_t most_names = 30;

std::string way_out_text(const KnownNames& known) {
    const std::string more = "more with: zxhost " + known.verb;
    return known.names.empty() ? "it knows none; " + more
                               : "it knows: " + names_text(known.names) + "; " + more;
}

}  // namespace

void check_known(const KnownNames& known, const std::vector<std::string>& names) {
    for (const std::string& name : names)
        if (std::find(known.names.begin(), known.names.end(), name) == known.names.end())
            throw HostError(ExitStatus::MachineError,
                            "no " + known.kind + " '" + printable(name) + "' on this machine",
                            way_out_text(known));
}

void run_known(VerbHost& host, const Action& action, const std::function<void()>& check) {
    try {
        host.run(action);
    } catch (const HostError& refused) {
        if (refused.status != ExitStatus::MachineError) throw;
        try {
            check();
        } catch (const HostError& unknown) {
            throw HostError(refused.status, refused.what(),
                            std::string(unknown.what()) + "; " + unknown.way_out);
        }
        throw;
    }
}

KnownNames known_axes(MMachAbstract& machine) {
    KnownNames known{"axis", {}, "axes"};
    for (const MMachAxisInfo* axis = machine.GetFirstAxisInfo(); axis; axis = machine.GetNextAxisInfo())
        known.names.push_back(axis->name);
    return known;
}

std::string names_text(const std::vector<std::string>& names) {
    std::string text;
    for (std::size_t i = 0; i < std::min(names.size(), most_names); ++i)
        text += (i ? ", " : "") + printable(names[i]);
    if (names.size() > most_names) text += " and " + std::to_string(names.size() - most_names) + " more";
    return text;
}

void check_has(bool has, const std::string& what) {
    if (!has)
        throw HostError(ExitStatus::MachineError, "this machine has no " + what,
                        "see what it knows with: zxhost info");
}

}  // namespace zxhost
