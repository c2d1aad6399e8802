#pragma once

#include "mmachcommand.h"

class MMachProbeUnloadCommand : public MMachCommand {
public:
    explicit MMachProbeUnloadCommand(MOutputChannel* output) : MMachCommand(output) {}

    static const char* ClassName() { return "MMachProbeUnloadCommand"; }
    const char* GetCommandName() override { return "probe unload"; }
};
