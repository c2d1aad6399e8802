#include "m2zendrixgenericscancommand.h"

#include "errtrace.h"
#include "m2zendrixmachabstract.h"
#include "mmachnotifier.h"

namespace {
constexpr const char* source = "m2zendrixgenericscancommand.cpp";
constexpr double notify_interval = 0.01;  // s
}  // namespace

M2ZendrixGenericScanCommand::M2ZendrixGenericScanCommand(M2ZendrixMachAbstract* mach, MOutputChannel* output)
    : M2ZendrixCommand(mach, output) {
    m_pZendrixCom->SetScanCallback(scan_callback, this);
}

M2ZendrixGenericScanCommand::~M2ZendrixGenericScanCommand() {
    m_pZendrixCom->SetScanCallback(nullptr, nullptr);
}

void M2ZendrixGenericScanCommand::scan_callback(void* user, unsigned count, double* const values) {
    auto* command = static_cast<M2ZendrixGenericScanCommand*>(user);
    command->m_scratch.assign(values, values + count);
    command->append_scratch();
    if (command->m_notifyTimer.has_elapsed(notify_interval)) command->wake_host();
}

void M2ZendrixGenericScanCommand::append_scratch() {
    os::LockGuard guard(m_scanLock);
    m_points.push(m_scratch);
}

void M2ZendrixGenericScanCommand::wake_host() {
    // Opened here and not for each point: nothing else in the callback has anything to record.
    MErrTraceContext trace(source);
    if (!m_pMach->notifier()->Notify())
        MERRTRACE_REPORT(source, "%s(): Notify() failed", "M2ZendrixGenericScanCommand::scan_callback");
    m_notifyTimer.restart();
}

bool M2ZendrixGenericScanCommand::GetNextScanPoint(std::vector<double>& point) {
    os::LockGuard guard(m_scanLock);
    return m_points.pop(point);
}
