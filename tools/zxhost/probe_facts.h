// The probes of a machine, and which of them is loaded.
#pragma once

#include <string>
#include <vector>

#include "mmachproberecords.h"

namespace zxhost {

class VerbHost;

// One tip of one probe, as it stands on the command line. Tip 0 leaves the tip open.
struct Tip {
    long probe = 0;
    long tip = 0;
};

struct ProbeFacts {
    std::vector<CProbe> tips;  // all that are defined
    Tip loaded;                // probe 0: none
    Tip highest;               // numbers that the machine takes

    bool is_loaded(const CProbe& tip) const { return tip.probe == loaded.probe && tip.tip == loaded.tip; }
};

// Each of these throws HostError.
ProbeFacts probe_facts(VerbHost& host);
Tip loaded_tip(VerbHost& host);
Tip parse_tip(const std::vector<std::string>& numbers);  // PROBE [TIP]

// Says which probe, or which tip of it, isn't among them, and what there is.
void check_known_tip(const std::vector<CProbe>& known, Tip wanted);

}  // namespace zxhost
