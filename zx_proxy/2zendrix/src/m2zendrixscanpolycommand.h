#pragma once

#include "m2zendrixconcretecommand.h"
#include "mmachscanpolycommand.h"

// Scans through the points of a polygon.
class M2ZendrixScanpolyCommand : public M2ZendrixConcreteScanCommand<MMachScanpolyCommand> {
public:
    M2ZendrixScanpolyCommand(M2ZendrixMachAbstract* mach, MOutputChannel* output,
                             const std::vector<AxisTargetMap>& points);
};
