#pragma once

#include "mmachcommand.h"

class MMachMovehomeCommand : public MMachCommand {
public:
    explicit MMachMovehomeCommand(MOutputChannel* output) : MMachCommand(output) {}

    static const char* ClassName() { return "MMachMovehomeCommand"; }
    const char* GetCommandName() override { return "movehome"; }
};
