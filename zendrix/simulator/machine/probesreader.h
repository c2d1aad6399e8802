// The sections of a machine's ini file that are about probes and probe systems.
#pragma once

#include <string>

#include "machine/description.h"
#include "machine/inisection.h"

namespace zendrix::sim {

void read_probes(IniSection& section, MachineDescription& machine);                           // [probe]
void read_tip(IniSection& section, const std::string& numbers, MachineDescription& machine);  // [tip P T]
void read_probesystem(IniSection& section, const std::string& name, MachineDescription& machine);
// [probesystem NAME]
// What only the whole shows.
void check_probes(const IniSection& section, const MachineDescription& machine);

}  // namespace zendrix::sim
