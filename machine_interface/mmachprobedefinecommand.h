#pragma once

#include "mmachcommand.h"

class MMachProbeDefineCommand : public MMachCommand {
public:
    explicit MMachProbeDefineCommand(MOutputChannel* output) : MMachCommand(output) {}

    static const char* ClassName() { return "MMachProbeDefineCommand"; }
    const char* GetCommandName() override { return "probe define"; }
};
