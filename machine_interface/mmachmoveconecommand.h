#pragma once

#include "mmachaxistargets.h"
#include "mmachcommand.h"

class MMachMoveconeCommand : public MMachCommand {
public:
    MMachMoveconeCommand(MOutputChannel* output, const MMachCone& cone)
        : MMachCommand(output), m_cone(cone) {}

    static const char* ClassName() { return "MMachMoveconeCommand"; }
    const char* GetCommandName() override { return "movecone"; }

    MMachCone m_cone;
};
