// Spin axes with their sense of turning, as they stand on the command line.
#pragma once

#include <map>
#include <string>
#include <vector>

namespace zxhost {

// "c" and "c=+" turn forward (true), "c=-" in reverse. Throws HostError (wrong usage) for any other text, and
// for an axis named twice.
std::map<std::string, bool> parse_spin_axes(const std::vector<std::string>& texts);

}  // namespace zxhost
