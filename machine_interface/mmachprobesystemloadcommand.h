#pragma once

#include "mmachcommand.h"

class MMachProbesystemLoadCommand : public MMachCommand {
public:
    explicit MMachProbesystemLoadCommand(MOutputChannel* output) : MMachCommand(output) {}

    static const char* ClassName() { return "MMachProbesystemLoadCommand"; }
    const char* GetCommandName() override { return "probesystem load"; }
};
