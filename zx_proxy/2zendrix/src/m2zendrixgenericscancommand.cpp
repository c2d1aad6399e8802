#include "m2zendrixgenericscancommand.h"

#include "errtrace.h"
#include "m2zendrixmachabstract.h"
#include "mmachnotifier.h"

namespace {

constexpr const char* source = "m2zendrixgenericscancommand.cpp";
constexpr double notify_interval = 0.01;  // s

// What is kept for later points, at the most: so many vectors, none larger than this.
constexpr std::size_t max_spares = 4096;
constexpr std::size_t max_spare_values = 64;

}  // namespace

M2ZendrixGenericScanCommand::M2ZendrixGenericScanCommand(M2ZendrixMachAbstract* mach, MOutputChannel* output)
    : M2ZendrixCommand(mach, output) {
    // So that keeping a spare can't fail half-way through handing out a point.
    m_spares.reserve(max_spares);
    m_pZendrixCom->SetScanCallback(scan_callback, this);
}

M2ZendrixGenericScanCommand::~M2ZendrixGenericScanCommand() {
    m_pZendrixCom->SetScanCallback(nullptr, nullptr);
}

void M2ZendrixGenericScanCommand::scan_callback(void* user, unsigned count, double* const values) {
    auto* command = static_cast<M2ZendrixGenericScanCommand*>(user);
    MErrTraceContext trace(source);
    command->m_scratch.assign(values, values + count);
    command->append_point();
    command->notify_at_times();
}

void M2ZendrixGenericScanCommand::append_point() {
    os::LockGuard guard(m_scanLock);
    if (m_spares.empty()) {
        m_points.push_back(m_scratch);
        return;
    }
    // Filled where it lies: if memory runs out, neither list has changed.
    m_spares.back().assign(m_scratch.begin(), m_scratch.end());
    m_points.push_back(std::move(m_spares.back()));
    m_spares.pop_back();
}

void M2ZendrixGenericScanCommand::notify_at_times() {
    if (m_notifyTimer.elapsed() < notify_interval) return;
    if (!m_pMach->notifier()->Notify())
        MERRTRACE_REPORT(source, "%s(): Notify() failed", "M2ZendrixGenericScanCommand::scan_callback");
    m_notifyTimer.restart();
}

bool M2ZendrixGenericScanCommand::GetNextScanPoint(std::vector<double>& point) {
    os::LockGuard guard(m_scanLock);
    if (m_points.empty()) return false;
    m_points.front().swap(point);
    if (m_points.front().capacity() <= max_spare_values && m_spares.size() < max_spares)
        m_spares.push_back(std::move(m_points.front()));
    m_points.pop_front();
    return true;
}
