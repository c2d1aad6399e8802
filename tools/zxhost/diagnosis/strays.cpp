#include "strays.h"

#include <fmt/format.h>

#include "near_names.h"

namespace zxhost {
namespace {

std::string full_name(const std::string& section, const std::string& key) {
    return fmt::format("[{}] {}", section, key);
}

std::string why(Nearness nearness) {
    if (nearness == Nearness::case_differs) return "capitals count";
    if (nearness == Nearness::blanks_differ) return "blanks and dashes count";
    return "the spelling counts";
}

struct Match {
    const configfile::Key* key = nullptr;
    Nearness section = Nearness::far;
    Nearness name = Nearness::far;

    // An exact name counts for more than a near one, a near section for as much.
    int rank() const {
        if (!key) return 0;
        return 1 + (section != Nearness::far) + (name == Nearness::same);
    }
    bool is_read() const { return section == Nearness::same && name == Nearness::same; }
    std::string reason() const {
        if (section == Nearness::far) return fmt::format("it counts in [{}] alone", key->section);
        return why(name == Nearness::same ? section : name);
    }
};

Match best_match(const std::string& section, const std::string& name) {
    Match best;
    for (const configfile::Key& key : configfile::keys) {
        const Match match{&key, nearness(section, key.section), nearness(name, key.name)};
        if (match.name != Nearness::far && match.rank() > best.rank()) best = match;
    }
    return best;
}

}  // namespace

Stray stray_entry(const std::string& section, const std::string& name) {
    const Match match = best_match(section, name);
    if (match.key && match.is_read()) return {};
    const std::string not_read = full_name(section, name) + " isn't read by the driver";
    if (!match.key) return {not_read, nullptr, false};
    return {fmt::format("{}: did you mean {}? {}", not_read, full_name(match.key->section, match.key->name),
                        match.reason()),
            match.key, match.section == Nearness::far};
}

Stray stray_section(const std::string& section) {
    for (const configfile::Key& key : configfile::keys) {
        const Nearness near = nearness(section, key.section);
        if (near == Nearness::same) return {};
        if (near != Nearness::far)
            return {fmt::format("[{}] isn't read by the driver: did you mean [{}]? {}", section, key.section,
                                why(near)),
                    &key, false};
    }
    return {};
}

}  // namespace zxhost
