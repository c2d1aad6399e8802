// What is so at the machine, copied out of it while it stands still.
#pragma once

#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "machine/machine.h"
#include "net/server.h"

struct Truth {
    std::vector<zendrix::sim::Axis> axes;
    std::map<std::string, double> pseudo_axes;
    std::map<zendrix::sim::TipId, zendrix::sim::TipNumbers> tips;
    zendrix::sim::TipId tip;  // the loaded one
    std::map<std::string, zendrix::sim::ProbesystemDescription> probesystems;
    std::string probesystem;  // the loaded one
    std::int32_t probesystem_id = 0;
    std::optional<zendrix::sim::Machine::Wobble> wobble;
    std::set<std::string> withdrawn;  // command words
    bool has_changer = false;
    bool is_in_emergency = false;
    double time = 0.0;  // of the machine, s

    const zendrix::sim::Axis& axis(const std::string& name) const;
};

Truth truth_of(zendrix::sim::Server& server);
