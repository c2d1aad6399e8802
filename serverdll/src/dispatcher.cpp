#include "dispatcher.h"

#include <iterator>
#include <utility>

namespace serverdll {

namespace {

constexpr std::size_t most_spares = 8;

}  // namespace

Dispatcher::Dispatcher(Callbacks& callbacks) : m_callbacks(callbacks) {}

Dispatcher::~Dispatcher() {
    stop();
    join();
}

void Dispatcher::start() {
    m_thread = std::thread([this] { run(); });
}

void Dispatcher::stop() {
    {
        const os::LockGuard guard(m_lock);
        m_stopped = true;
        m_queuedSome.notify_all();
        m_deliveredSome.notify_all();
    }
    m_callbacks.drop_all();
}

void Dispatcher::join() {
    if (m_thread.joinable()) m_thread.join();
}

void Dispatcher::push(std::vector<Delivery>& batch, std::vector<std::vector<double>>& spares) {
    std::size_t bytes = 0;
    for (const Delivery& delivery : batch) bytes += delivery.bytes();
    {
        const os::LockGuard guard(m_lock);
        m_queuedCount += batch.size();
        m_bytes.fetch_add(bytes, std::memory_order_relaxed);
        if (m_queue.empty()) {
            m_queue.swap(batch);
        } else {
            m_queue.insert(m_queue.end(), std::move_iterator(batch.begin()), std::move_iterator(batch.end()));
        }
        if (spares.empty()) spares.swap(m_spares);
        if (m_idle) m_queuedSome.notify_one();
    }
    batch.clear();
}

void Dispatcher::push(Delivery delivery) {
    std::vector<Delivery> batch;
    std::vector<std::vector<double>> spares(1);  // takes none
    batch.push_back(std::move(delivery));
    push(batch, spares);
}

bool Dispatcher::wait_for_queued(milliseconds at_most) {
    const Clock::time_point end = Clock::now() + at_most;
    os::WaitLock lock(m_lock);
    const std::uint64_t target = m_queuedCount;
    ++m_waiting;
    while (m_deliveredCount < target && !m_stopped) {
        if (!lock.wait_until(m_deliveredSome, end)) break;
    }
    --m_waiting;
    return m_deliveredCount >= target;
}

void Dispatcher::run() {
    std::vector<Delivery> all;
    while (take_all(all)) {
        for (Delivery& delivery : all) {
            m_callbacks.deliver(delivery);
            done_with(delivery);
        }
        all.clear();
    }
}

bool Dispatcher::take_all(std::vector<Delivery>& all) {
    os::WaitLock lock(m_lock);
    m_idle = true;
    while (m_queue.empty() && !m_stopped) lock.wait(m_queuedSome);
    m_idle = false;
    all.swap(m_queue);
    return !m_stopped;
}

void Dispatcher::done_with(Delivery& delivery) {
    const std::size_t bytes = delivery.bytes();
    const os::LockGuard guard(m_lock);
    m_bytes.fetch_sub(bytes, std::memory_order_relaxed);
    ++m_deliveredCount;
    if (m_waiting > 0) m_deliveredSome.notify_all();
    if (delivery.values.capacity() == 0 || m_spares.size() >= most_spares) return;
    delivery.values.clear();
    m_spares.push_back(std::move(delivery.values));
}

}  // namespace serverdll
