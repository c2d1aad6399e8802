#pragma once

#include <string>
#include <vector>

#include "mmachcommand.h"

class MMachScandataCommand : public MMachCommand {
public:
    MMachScandataCommand(MOutputChannel* output, const std::vector<std::string>& names)
        : MMachCommand(output), m_names(names) {}

    static const char* ClassName() { return "MMachScandataCommand"; }
    const char* GetCommandName() override { return "scandata"; }

    std::vector<std::string> m_names;
};
