// What the driver makes of each value in its configuration.
#pragma once

#include <string>
#include <vector>

#include "config_report.h"

namespace zxhost {

struct ValueNote {
    const ConfigValue* value;
    std::string text;
};

// Completes the values, in the order of configfile::keys, from what is written of them, and tells what a
// person may not have meant.
std::vector<ValueNote> explain_values(std::vector<ConfigValue>& values);

}  // namespace zxhost
