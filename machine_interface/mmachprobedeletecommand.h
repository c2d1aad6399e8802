#pragma once

#include "mmachcommand.h"

class MMachProbeDeleteCommand : public MMachCommand {
public:
    explicit MMachProbeDeleteCommand(MOutputChannel* output) : MMachCommand(output) {}

    static const char* ClassName() { return "MMachProbeDeleteCommand"; }
    const char* GetCommandName() override { return "probe delete"; }
};
