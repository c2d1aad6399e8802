#include "probe_facts.h"

#include <algorithm>

#include "exit_status.h"
#include "known_names.h"
#include "mmachabstract.h"
#include "number_text.h"
#include "verb_host.h"

namespace zxhost {
namespace {

long parse_number(const std::string& text) {
    if (const auto number = whole_number_from(text)) return *number;
    throw HostError(ExitStatus::WrongUsage, "'" + printable(text) + "' is not the number of a probe or tip",
                    "write a whole number, as in: 3");
}

void add_once(std::vector<std::string>& names, long number) {
    const std::string name = std::to_string(number);
    if (std::find(names.begin(), names.end(), name) == names.end()) names.push_back(name);
}

}  // namespace

Tip loaded_tip(VerbHost& host) {
    return host.ask("the loaded probe", [&] {
        return Tip{host.machine().GetActiveProbeNum(), host.machine().GetActiveTipNum()};
    });
}

ProbeFacts probe_facts(VerbHost& host) {
    check_has(host.machine().HasProbes(), "probes");
    ProbeFacts facts;
    facts.loaded = loaded_tip(host);
    facts.tips = host.ask("the list of probes", [&] { return host.machine().ListProbes(0, 0); });
    facts.highest = host.ask("the highest probe", [&] {
        return Tip{host.machine().GetMaxProbeNum(), host.machine().GetMinProbeNum()};
    });
    return facts;
}

Tip parse_tip(const std::vector<std::string>& numbers) {
    Tip tip;
    if (!numbers.empty()) tip.probe = parse_number(numbers[0]);
    if (numbers.size() > 1) tip.tip = parse_number(numbers[1]);
    return tip;
}

void check_known_tip(const std::vector<CProbe>& known, Tip wanted) {
    KnownNames probes{"probe", {}, "probes"};
    KnownNames tips{"tip of probe " + std::to_string(wanted.probe), {}, "probes"};
    for (const CProbe& each : known) {
        add_once(probes.names, each.probe);
        if (each.probe == wanted.probe) add_once(tips.names, each.tip);
    }
    check_known(probes, {std::to_string(wanted.probe)});
    if (wanted.tip != 0) check_known(tips, {std::to_string(wanted.tip)});
}

}  // namespace zxhost
