// A plug-in that needs another library.
#include "export.h"

extern "C" bool zx_needed();
PLUGIN_API bool IsProxy();

bool IsProxy() { return zx_needed(); }
