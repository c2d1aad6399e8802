#pragma once

#include "mmachaxistargets.h"
#include "mmachcommand.h"

class MMachProbeOffsetCommand : public MMachCommand {
public:
    MMachProbeOffsetCommand(MOutputChannel* output, const AxisTargetMap& targets)
        : MMachCommand(output), m_targets(targets) {}

    static const char* ClassName() { return "MMachProbeOffsetCommand"; }
    const char* GetCommandName() override { return "probe offset"; }

    AxisTargetMap m_targets;
};
