#pragma once

#include "mmachcommand.h"

class MMachProbeLoadCommand : public MMachCommand {
public:
    explicit MMachProbeLoadCommand(MOutputChannel* output) : MMachCommand(output) {}

    static const char* ClassName() { return "MMachProbeLoadCommand"; }
    const char* GetCommandName() override { return "probe load"; }
};
