#pragma once

#include "mmachaxistargets.h"
#include "mmachcommand.h"

class MMachWobbleCommand : public MMachCommand {
public:
    MMachWobbleCommand(MOutputChannel* output, const MMachWobbleParameters& parameters)
        : MMachCommand(output), m_parameters(parameters) {}

    static const char* ClassName() { return "MMachWobbleCommand"; }
    const char* GetCommandName() override { return "wobble"; }

    MMachWobbleParameters m_parameters;
};
