#pragma once

#include "mmachcommand.h"

class MMachProbesystemDeleteCommand : public MMachCommand {
public:
    explicit MMachProbesystemDeleteCommand(MOutputChannel* output) : MMachCommand(output) {}

    static const char* ClassName() { return "MMachProbesystemDeleteCommand"; }
    const char* GetCommandName() override { return "probesystem delete"; }
};
