// One of the names that a machine driver exports, and no more.
#include "export.h"

PLUGIN_API bool IsProxy();

bool IsProxy() { return false; }
