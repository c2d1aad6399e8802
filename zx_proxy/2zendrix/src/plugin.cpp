// What the plug-in exports: these three names, with plain C linkage.
#include <new>

#include "m2zendrixmachabstract.h"
#include "mtrace.h"

#if defined(_WIN32)
#define PLUGIN_API extern "C" __declspec(dllexport)
#else
#define PLUGIN_API extern "C" __attribute__((visibility("default")))
#endif

// False in every state.
PLUGIN_API bool IsProxy() { return false; }

// A driver without a connection, which the caller owns and deletes; null only if there is no memory for it.
// Channel and notifier are borrowed for the driver's whole life, the texts are copied.
PLUGIN_API MMachAbstract* NewMMachAbstract(const std::string* name, const std::string* directory,
                                           MOutputChannel* output, MMachNotifier* notifier) {
    return new (std::nothrow) M2ZendrixMachAbstract(output, notifier, *name, *directory);
}

// Sets the level of the trace; at any time, also before there is a driver. The result has no use.
PLUGIN_API int SetDefaultTracelevel(unsigned level) {
    _MTrace_SetLevel("default", level);
    return MTrace_SetMasterLevel(level);
}
