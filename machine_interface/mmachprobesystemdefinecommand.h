#pragma once

#include "mmachcommand.h"

class MMachProbesystemDefineCommand : public MMachCommand {
public:
    explicit MMachProbesystemDefineCommand(MOutputChannel* output) : MMachCommand(output) {}

    static const char* ClassName() { return "MMachProbesystemDefineCommand"; }
    const char* GetCommandName() override { return "probesystem define"; }
};
