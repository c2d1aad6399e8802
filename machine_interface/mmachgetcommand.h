#pragma once

#include <string>
#include <vector>

#include "mmachcommand.h"

class MMachGetCommand : public MMachCommand {
public:
    MMachGetCommand(MOutputChannel* output, const std::vector<std::string>& axes)
        : MMachCommand(output), m_axes(axes) {}

    static const char* ClassName() { return "MMachGetCommand"; }
    const char* GetCommandName() override { return "get"; }

    std::vector<std::string> m_axes;
    std::vector<double> m_values;  // the result, one per axis in the order of m_axes; valid after IsDone
};
