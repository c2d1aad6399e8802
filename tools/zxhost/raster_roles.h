// Which axes take the roles of a raster or a scan base, and why.
#pragma once

#include <string>
#include <vector>

#include "mmachaxistargets.h"

class MMachAbstract;

namespace zxhost {

enum class RasterForm {
    Axes,     // one set of axes
    Polygon,  // a set for each point
    Circle,   // x, y and z, and these further axes
    Scanbase
};

struct RasterRequest {
    RasterForm form = RasterForm::Axes;
    std::vector<AxisSet> groups;  // the points of a polygon; one set for the other forms

    // All axes that take part, x, y and z of a circle too.
    AxisSet axes() const;
};

struct RasterRole {
    std::string role;    // "raster1", "raster2", "raster3" or "rotary"; empty for an axis that takes none
    std::string axis;    // empty: the role stays empty
    std::string reason;  // in words
};

// Asks the rules of the driver's interface, and gives the four roles in their order, then the axes of the
// request that take none. Throws HostError (error of the machine) for a request that is none.
std::vector<RasterRole> raster_roles(MMachAbstract& machine, const RasterRequest& request);

}  // namespace zxhost
