// Machines from ini files, as docs/simulator.md tells.
#pragma once

#include <string>

#include "machine/description.h"
#include "machine/inisection.h"

namespace zendrix::sim {

// Both throw DescriptionError, whose text names the file, the section and the key.
MachineDescription read_machine(const std::string& filename);
MachineDescription parse_machine(const std::string& content, const std::string& name_for_messages);

// The machine of machines/round4.ini, built in.
MachineDescription builtin_machine();

}  // namespace zendrix::sim
