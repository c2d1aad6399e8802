// Connection, mode, callbacks, and what the machine says of itself.
#include "czendrixcom.h"

#include "operations.h"

using serverdll::bad_argument;

CZendrixCOM::CZendrixCOM(void (*progress)(void* user, const char* text), void* user, const char* server,
                         CZXConnection* /*connection*/)
    : m_client(new Client(progress, user, server)) {}

CZendrixCOM::~CZendrixCOM() { delete m_client; }

bool CZendrixCOM::ThrowExceptions(bool on) {
    m_client->throws = on;
    return true;
}

bool CZendrixCOM::HasConnection() const { return m_client->is_alive(); }

bool CZendrixCOM::SetSync3(SyncType mode) {
    if (mode != ZX_ASYNC && mode != ZX_SYNC) return m_client->refuse(bad_argument);
    m_client->mode = mode;
    return true;
}

bool CZendrixCOM::GetSync3(SyncType* mode) {
    if (mode == nullptr) return m_client->refuse(bad_argument);
    *mode = m_client->mode;
    return true;
}

bool CZendrixCOM::Master() { return m_client->ask("master"); }

bool CZendrixCOM::GetMachine(bool at_once) {
    return m_client->ask(at_once ? "machine get now" : "machine get");
}

bool CZendrixCOM::ReleaseMachine(bool /*at_once*/) { return m_client->ask("machine release"); }

bool CZendrixCOM::Abort(long tid) {
    wire::RequestWriter request = m_client->request("abort");
    return m_client->query(request.integer(tid));
}

long CZendrixCOM::GetMajorRevision() { return static_cast<long>(m_client->hello.major); }

long CZendrixCOM::GetMinorRevision() { return static_cast<long>(m_client->hello.minor); }

long CZendrixCOM::GetLatency() { return m_client->latency; }

void CZendrixCOM::SetAsyncCallback(ZXAsyncCallback callback, void* user) {
    m_client->callbacks.async.set(callback, user);
}

void CZendrixCOM::GetAsyncCallback(ZXAsyncCallback& callback, void*& user) {
    m_client->callbacks.async.get(callback, user);
}

void CZendrixCOM::SetErrorMsgCallback(ZXMessageCallback callback, void* user) {
    m_client->callbacks.error.set(callback, user);
}

void CZendrixCOM::GetErrorMsgCallback(ZXMessageCallback& callback, void*& user) {
    m_client->callbacks.error.get(callback, user);
}

void CZendrixCOM::SetWarningMsgCallback(ZXMessageCallback callback, void* user) {
    m_client->callbacks.warning.set(callback, user);
}

void CZendrixCOM::GetWarningMsgCallback(ZXMessageCallback& callback, void*& user) {
    m_client->callbacks.warning.get(callback, user);
}

void CZendrixCOM::SetCommandCompleteCallback(ZXCompleteCallback callback, void* user) {
    m_client->callbacks.complete.set(callback, user);
}

void CZendrixCOM::SetScanCallback(ZXDataCallback callback, void* user) {
    m_client->callbacks.scan.set(callback, user);
}

void CZendrixCOM::SetWatchAxisCallback(ZXDataCallback callback, void* user) {
    m_client->callbacks.watch.set(callback, user);
}

bool CZendrixCOM::HasReceiver(long id) { return m_client->replies.has(id); }

std::size_t CZendrixCOM::ReplyLineCount(long id) { return m_client->replies.count(id); }

bool CZendrixCOM::TakeReplyLine(long id, std::string& line) { return m_client->replies.take(id, line); }

std::size_t CZendrixCOM::PerLineSize() { return m_client->replies.longest_line(); }
