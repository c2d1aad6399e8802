#include "plugin.h"

#include "exit_status.h"
#include "os/program.h"

namespace zxhost {

Plugin::Plugin(const std::string& file)
    : m_file(file.empty() ? os::program_directory() + os::library_file_name("m2zendrix") : file) {
    if (!m_library.load(m_file))
        throw HostError(ExitStatus::WrongUsage,
                        "the plug-in " + m_file + " can't be loaded: " + m_library.error_text(),
                        "name it with --plugin FILE");
    m_is_proxy = find<IsProxyFunction>("IsProxy");
    m_new_machine = find<NewMachineFunction>("NewMMachAbstract");
    m_set_trace_level = find<SetTraceLevelFunction>("SetDefaultTracelevel");
}

template <class Function>
Function* Plugin::find(const char* name) {
    Function* const function = m_library.function<Function>(name);
    if (!function)
        throw HostError(ExitStatus::WrongUsage,
                        m_file + " is no machine driver: it lacks " + name +
                            "; wanted are IsProxy, NewMMachAbstract and SetDefaultTracelevel",
                        "name the plug-in with --plugin FILE");
    return function;
}

bool Plugin::is_proxy() { return m_is_proxy(); }

void Plugin::set_trace_level(unsigned level) { m_set_trace_level(level); }

std::unique_ptr<MMachAbstract> Plugin::new_machine(const std::string& name, const std::string& directory,
                                                   MOutputChannel& channel, MMachNotifier& notifier) {
    std::unique_ptr<MMachAbstract> machine(m_new_machine(&name, &directory, &channel, &notifier));
    if (!machine) throw HostError(ExitStatus::NoConnection, "the plug-in made no driver: out of memory");
    return machine;
}

}  // namespace zxhost
