// What a person can do about an error of the machine.
#pragma once

#include <string>

namespace zxhost {

// A hint for this error, with or without the action before it (`probe define: invalid argument`); empty if
// there is nothing to say.
std::string way_out_of(const std::string& error);

}  // namespace zxhost
