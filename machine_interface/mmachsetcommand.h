#pragma once

#include <map>
#include <string>

#include "mmachcommand.h"

class MMachSetCommand : public MMachCommand {
public:
    MMachSetCommand(MOutputChannel* output, const std::map<std::string, double>& values)
        : MMachCommand(output), m_values(values) {}

    static const char* ClassName() { return "MMachSetCommand"; }
    const char* GetCommandName() override { return "set"; }

    std::map<std::string, double> m_values;
};
