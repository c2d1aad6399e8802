// Names in a configuration that the driver doesn't read.
#pragma once

#include <string>

#include "configfile.h"

namespace zxhost {

struct Stray {
    std::string text;                        // empty: it is read
    const configfile::Key* meant = nullptr;  // what it is near to
    bool counts_elsewhere = false;           // it is near in a section that is far
};

Stray stray_entry(const std::string& section, const std::string& name);

// Of a section without entries: only one that is near to another is a stray.
Stray stray_section(const std::string& section);

}  // namespace zxhost
