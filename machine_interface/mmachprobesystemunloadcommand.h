#pragma once

#include "mmachcommand.h"

class MMachProbesystemUnloadCommand : public MMachCommand {
public:
    explicit MMachProbesystemUnloadCommand(MOutputChannel* output) : MMachCommand(output) {}

    static const char* ClassName() { return "MMachProbesystemUnloadCommand"; }
    const char* GetCommandName() override { return "probesystem unload"; }
};
