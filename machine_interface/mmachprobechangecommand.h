#pragma once

#include "mmachcommand.h"

class MMachProbeChangeCommand : public MMachCommand {
public:
    explicit MMachProbeChangeCommand(MOutputChannel* output) : MMachCommand(output) {}

    static const char* ClassName() { return "MMachProbeChangeCommand"; }
    const char* GetCommandName() override { return "probe change"; }
};
