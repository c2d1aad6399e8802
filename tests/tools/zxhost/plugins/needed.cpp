// What the needy plug-in needs.
#include "export.h"

PLUGIN_API bool zx_needed();

bool zx_needed() { return false; }
