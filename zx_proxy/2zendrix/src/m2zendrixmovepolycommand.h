#pragma once

#include "m2zendrixconcretecommand.h"
#include "mmachmovepolycommand.h"

// Moves through the points of a polygon.
class M2ZendrixMovepolyCommand : public M2ZendrixConcreteCommand<MMachMovepolyCommand> {
public:
    M2ZendrixMovepolyCommand(M2ZendrixMachAbstract* mach, MOutputChannel* output,
                             const std::vector<AxisTargetMap>& points);
};
