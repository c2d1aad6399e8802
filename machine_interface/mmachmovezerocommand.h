#pragma once

#include "mmachaxistargets.h"
#include "mmachcommand.h"

class MMachMovezeroCommand : public MMachCommand {
public:
    MMachMovezeroCommand(MOutputChannel* output, const MMachAxisTargets& targets)
        : MMachCommand(output), m_targets(targets) {}

    static const char* ClassName() { return "MMachMovezeroCommand"; }
    const char* GetCommandName() override { return "movezero"; }

    MMachAxisTargets m_targets;
};
