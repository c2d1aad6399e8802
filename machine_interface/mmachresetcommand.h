#pragma once

#include "mmachcommand.h"

class MMachResetCommand : public MMachCommand {
public:
    explicit MMachResetCommand(MOutputChannel* output) : MMachCommand(output) {}

    void Abort() override {}
    const char* GetCommandName() override { return "reset"; }
};
