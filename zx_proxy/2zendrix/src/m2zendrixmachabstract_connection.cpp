// From Open to Close: the client comes up, is lost, and goes.
#include <utility>

#include "TcpIpSpeeder.h"
#include "defaultaddress.h"
#include "drivertrace.h"
#include "errtrace.h"
#include "m2zendrixmachabstract.h"
#include "moutputchannel.h"

namespace {

constexpr const char* source = "m2zendrixmachabstract_connection.cpp";

bool contains(const std::string& text, const char* part) { return text.find(part) != std::string::npos; }

// Hands the queue on from its front; an entry leaves it only when the channel has taken it.
template <class Give>
void drain(std::deque<std::string>& queue, Give give) {
    while (!queue.empty()) {
        give(queue.front());
        queue.pop_front();
    }
}

}  // namespace

M2ZendrixMachAbstract::M2ZendrixMachAbstract(MOutputChannel* output, MMachNotifier* notifier,
                                             const std::string& name, const std::string& directory)
    : MMachAbstract(output, notifier, name, directory), m_host(default_host), m_port(default_port) {}

M2ZendrixMachAbstract::~M2ZendrixMachAbstract() { delete_clients(); }

bool M2ZendrixMachAbstract::Open() {
    MErrTraceContext context(source);
    read_app_ini_file();
    if (!connect()) {
        delete m_pZendrixCom.exchange(nullptr);
        return false;
    }
    set_up_picture();
    return true;
}

bool M2ZendrixMachAbstract::connect() {
    try {
        // A library or a serial line is named as a whole; everything else is an address and has a port.
        const bool named = contains(m_host, ".dll") || contains(m_host, "COM");
        const std::string server = named ? m_host : m_host + " " + m_port;
        m_pZendrixCom = new CZendrixCOM(nullptr, nullptr, server.c_str(), nullptr);
        if (!named) check_adapter();
        return prepare_client(*m_pZendrixCom.load());
    } catch (const CZendrixError& error) {
        MERRLOG_REPORT(source, "  error '%s'\n", error.m_text.c_str());
        MERRLOG_REPORT(source, "%s", "instantiating ZendrixCOM client object ...... failed.\n");
        return false;
    }
}

// A slow adapter is worth a warning and no more.
void M2ZendrixMachAbstract::check_adapter() {
    if (CTcpIpSpeeder(*m_registry).HasMaxTCPIPSpeed(m_host)) return;
    MERRLOG_REPORT(source,
                   "%s(): TCP are delays enabled. Expect additional latencies. Please update registry!",
                   "M2ZendrixMachAbstract::Open");
}

bool M2ZendrixMachAbstract::prepare_client(CZendrixCOM& client) {
    client.ThrowExceptions(true);
    if (!client.HasConnection()) {
        MERRLOG_REPORT(source, "inst_zx:client(): no machine connection");
        return false;
    }
    if (!client.SetSync3(ZX_ASYNC)) {
        MERRLOG_REPORT(source, "Open(): failed to set sync mode");
        return false;
    }
    if (!client.Master()) {
        MERRLOG_REPORT(source, "Open(): failed to enable asynchronous events");
        return false;
    }
    client.SetAsyncCallback(async_events_callback, this);
    client.SetErrorMsgCallback(async_errors_callback, this);
    client.SetWarningMsgCallback(async_warnings_callback, this);
    client.SetCommandCompleteCallback(command_complete_callback, this);
    return true;
}

void M2ZendrixMachAbstract::set_up_picture() {
    test_keypad_list_inactive(*client());
    enable_supported_commands();
    update_capabilities();
    if (HasInitList() && client()) update_init_list();
    update_spin_lists();
    update_cached_axes_values();
}

void M2ZendrixMachAbstract::test_keypad_list_inactive(CZendrixCOM& client) {
    const long major = client.GetMajorRevision();
    const bool supported = major > 2 || (major == 2 && client.GetMinorRevision() >= 2);
    if (supported) m_keypadListInactive = true;
    DRIVER_TRACE(source, 5, "%s(): machine %s %s \"keypad list +inactive\"", "M2ZendrixMachAbstract::Open",
                 GetMachineName(), supported ? "supports" : "does not support");
}

void M2ZendrixMachAbstract::Close() { delete_clients(); }

void M2ZendrixMachAbstract::delete_clients() {
    for (CZendrixCOM* older : m_retiredEarlier) delete older;
    m_retiredEarlier.clear();
    delete std::exchange(m_pZendrixComRetired, nullptr);
    // Callbacks that still run while the client goes see no machine.
    delete m_pZendrixCom.exchange(nullptr);
}

void M2ZendrixMachAbstract::PollAsyncErrors() {
    {
        os::LockGuard guard(m_errorsLock);
        drain(m_errors, [this](const std::string& text) { m_pOutput->error(text); });
    }
    poll_connection();
    {
        os::LockGuard guard(m_warningsLock);
        drain(m_warnings, [this](const std::string& text) { m_pOutput->warning(text); });
    }
    {
        os::LockGuard guard(m_eventsLock);
        drain(m_events, [this](const std::string& text) { m_pOutput->event(text); });
    }
}

void M2ZendrixMachAbstract::poll_connection() {
    CZendrixCOM* const lost = client();
    if (!lost || lost->HasConnection()) return;
    if (m_expectConnectionLoss) {
        DRIVER_TRACE(source, 3, "%s(): expected connection break: closing the connection",
                     "M2ZendrixMachAbstract::PollAsyncErrors");
        if (m_pZendrixComRetired) m_retiredEarlier.push_back(m_pZendrixComRetired);
        m_pZendrixComRetired = m_pZendrixCom.exchange(nullptr);
    } else if (!m_pOutput->is_fatal()) {
        m_pOutput->set_fatal();
        if (!m_pOutput->has_error()) m_pOutput->errorf("fatal: machine connection lost");
    }
}
