#include "axes_table.h"

#include <nlohmann/json.hpp>

namespace zxhost {

void write_axes(std::ostream& out, const Json& rows) {
    write_table(out,
                {{"axis", "axis"},
                 {"value", "value", 4},
                 {"unit", "unit"},
                 {"flags", "flags"},
                 {"is", "which means"},
                 {"number1", "lower", 4},
                 {"number2", "upper", 4},
                 {"number3", "resolution", 4},
                 {"number4", "acceleration", 4},
                 {"number5", "speed", 4},
                 {"step", "step", 4},
                 {"values", "values", 4}},
                rows);
}

}  // namespace zxhost
