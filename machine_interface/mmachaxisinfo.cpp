#include "mmachaxisinfo.h"

bool operator==(const MMachAxisInfo& a, const MMachAxisInfo& b) {
    if (a.name != b.name) return false;
    if ((a.flags & b.flags & MMACH_AXIS_INACTIVE) != 0) return true;
    if (a.flags != b.flags) return false;
    if (a.number1 != b.number1 || a.number2 != b.number2 || a.number3 != b.number3) return false;
    if ((a.flags & MMACH_AXIS_BOUNDED) != 0 && (a.number4 != b.number4 || a.number5 != b.number5))
        return false;
    if ((a.flags & (MMACH_AXIS_BOUNDED | MMACH_AXIS_KIND_3 | MMACH_AXIS_UNBOUNDED)) == 0) return true;
    if (a.step != b.step) return false;
    return a.step != 0.0 || a.values == b.values;
}
