// The addresses that a host's name stands for.
#pragma once

#include <string>
#include <vector>

namespace zxhost {

// In the system's order; none, with the reason in `failure`, if there is no such host. Takes what the system
// takes for it.
std::vector<std::string> resolve(const std::string& host, std::string& failure);

}  // namespace zxhost
