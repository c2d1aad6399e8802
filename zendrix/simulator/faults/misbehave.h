// Carries a planned fault out on what is just being sent.
#pragma once

#include <cstddef>
#include <cstdint>

#include "faults/faultplan.h"
#include "protocol/transport.h"

namespace zendrix::sim {

class Hub;

// `begin`: where, in the transport's out(), the lines begin that the fault is about; `id`: theirs.
void misbehave(const PlannedFault& fault, Transport& transport, std::size_t begin, std::int64_t id, Hub& hub);

}  // namespace zendrix::sim
