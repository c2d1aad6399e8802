// The ini model with names compared byte by byte.
#pragma once

#include "MIniData_template_core.h"

using MIniDataSection = MIniDataSectionT<MIniDataCaseSensitiveCompare>;
using MIniData = MIniDataT<MIniDataCaseSensitiveCompare>;

extern template class MIniDataSectionT<MIniDataCaseSensitiveCompare>;
extern template class MIniDataT<MIniDataCaseSensitiveCompare>;
