// The plug-in, loaded at run time: its three exports and the drivers it makes.
#pragma once

#include <memory>
#include <string>

#include "mmachabstract.h"
#include "os/library.h"

namespace zxhost {

class Plugin {
public:
    // Loads this file; an empty text means the plug-in that lies beside the program. Throws HostError (wrong
    // usage) if it can't be loaded or lacks one of the exports.
    explicit Plugin(const std::string& file);

    bool is_proxy();
    void set_trace_level(unsigned level);

    // A driver without a connection. It must be gone before the plug-in, the channel and the notifier are.
    std::unique_ptr<MMachAbstract> new_machine(const std::string& name, const std::string& directory,
                                               MOutputChannel& channel, MMachNotifier& notifier);

private:
    using IsProxyFunction = bool();
    using NewMachineFunction = MMachAbstract*(const std::string*, const std::string*, MOutputChannel*,
                                              MMachNotifier*);
    using SetTraceLevelFunction = void(unsigned);

    template <class Function>
    Function* find(const char* name);

    os::SharedLibrary m_library;
    std::string m_file;
    IsProxyFunction* m_is_proxy = nullptr;
    NewMachineFunction* m_new_machine = nullptr;
    SetTraceLevelFunction* m_set_trace_level = nullptr;
};

}  // namespace zxhost
