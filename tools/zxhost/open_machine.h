// The machine of this run: the plug-in loaded, a driver made, the connection open.
#pragma once

#include <memory>
#include <string>

#include "mmachabstract.h"
#include "moutputchannel.h"
#include "notifier.h"
#include "plugin.h"
#include "settings.h"

namespace zxhost {

// A channel whose owner may leave text in it without a report.
class QuietChannel : public MOutputChannel {
public:
    using MOutputChannel::MOutputChannel;
    ~QuietChannel() override { clear(); }
};

class OpenMachine {
public:
    // Throws HostError: wrong usage for the plug-in or the settings, no connection if the machine doesn't
    // answer.
    explicit OpenMachine(const Settings& settings);
    ~OpenMachine();
    OpenMachine(const OpenMachine&) = delete;
    OpenMachine& operator=(const OpenMachine&) = delete;

    // Closes the connection and opens it again with a driver that knows nothing of the old one. Throws
    // HostError (no connection); there is no machine then, and this may be called again.
    void renew();

    // Another one after renew.
    MMachAbstract& machine() { return *m_machine; }
    MOutputChannel& channel() { return m_channel; }
    HostNotifier& notifier() { return m_notifier; }
    const std::string& address() const { return m_address; }  // as a person reads it

private:
    void connect();
    void open(const std::string& name, const std::string& directory);

    Settings m_settings;
    std::string m_address;
    Plugin m_plugin;
    HostNotifier m_notifier;
    QuietChannel m_channel{0};
    std::unique_ptr<MMachAbstract> m_machine;
};

}  // namespace zxhost
