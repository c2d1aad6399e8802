// All that there is to know about the machine at this moment, as data lines; docs/simulator.md lists them.
#pragma once

#include <cstdint>
#include <string>

#include "machine/machine.h"

namespace zendrix::sim {

void append_truth(std::string& out, std::int64_t id, const Machine& machine);

}  // namespace zendrix::sim
