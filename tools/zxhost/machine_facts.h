// What the driver can tell of its machine.
#pragma once

#include <nlohmann/json.hpp>
#include <string>

#include "table.h"

class MMachAbstract;

namespace zxhost {

struct MachineFacts {
    std::string name;
    std::string revision;
    std::string serial;
    bool simulated = false;  // it has a component or an option called "simulation"
    bool initialized = false;
    Json components = Json::array();  // rows of name and version
    Json options = Json::array();
    Json commands = Json::array();  // names of the commands that it knows
};

// Asks the driver; what the driver throws passes through.
MachineFacts facts_of(MMachAbstract& machine);

// "Round 4, revision 2.4, serial SIM-0004, simulated"
std::string one_line(const MachineFacts& facts);

// A row per axis, as the driver describes it.
Json axis_rows(MMachAbstract& machine);

}  // namespace zxhost
