#pragma once

#include <string>

#include "mmachcommand.h"

class MMachSendCommand : public MMachCommand {
public:
    MMachSendCommand(MOutputChannel* output, const std::string& name, const std::string& data)
        : MMachCommand(output), m_name(name), m_data(data) {}

    static const char* ClassName() { return "MMachSendCommand"; }
    const char* GetCommandName() override { return "send"; }

    std::string m_name;
    std::string m_data;
};
