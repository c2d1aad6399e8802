// Takes the place of what the needy plug-in needs, and lacks it.
#include "export.h"

PLUGIN_API bool zx_stranger();

bool zx_stranger() { return false; }
