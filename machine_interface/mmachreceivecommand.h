#pragma once

#include <string>

#include "mmachcommand.h"

class MMachReceiveCommand : public MMachCommand {
public:
    MMachReceiveCommand(MOutputChannel* output, const std::string& name)
        : MMachCommand(output), m_name(name) {}

    static const char* ClassName() { return "MMachReceiveCommand"; }
    const char* GetCommandName() override { return "receive"; }

    std::string m_name;
    std::string m_data;  // the block, any bytes; valid after IsDone
};
