// The table of a machine's axes.
#pragma once

#include <ostream>

#include "table.h"

namespace zxhost {

// `rows` as axis_rows gives them, with the present value of each axis under "value".
void write_axes(std::ostream& out, const Json& rows);

}  // namespace zxhost
