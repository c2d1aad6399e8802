#pragma once

#include <map>
#include <string>

#include "mmachcommand.h"

class MMachSpinEnableCommand : public MMachCommand {
public:
    MMachSpinEnableCommand(MOutputChannel* output, const std::map<std::string, bool>& axes)
        : MMachCommand(output), m_axes(axes) {}

    static const char* ClassName() { return "MMachSpinEnableCommand"; }
    const char* GetCommandName() override { return "spin enable"; }

    std::map<std::string, bool> m_axes;
};
