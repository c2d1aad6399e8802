// The thread that runs a client's callbacks, one after the other, in the order in which they were queued.
#pragma once

#include <cstddef>
#include <cstdint>
#include <thread>
#include <vector>

#include "callbacks.h"
#include "clientoptions.h"
#include "os/waitlock.h"

namespace serverdll {

class Dispatcher {
public:
    explicit Dispatcher(Callbacks& callbacks);
    ~Dispatcher();

    void start();
    // What isn't delivered yet never will be. Doesn't wait for a callback that runs.
    void stop();
    void join();

    bool is_this_thread() const noexcept { return std::this_thread::get_id() == m_thread.get_id(); }

    // Queues and empties the batch. `spares` gets buffers of former batches to use again.
    void push(std::vector<Delivery>& batch, std::vector<std::vector<double>>& spares);
    void push(Delivery delivery);

    // Waits until all that is queued now was delivered; false if that takes too long or never comes.
    // Not on the dispatching thread.
    bool wait_for_queued(milliseconds at_most);

    // Bytes held by what isn't delivered yet.
    std::size_t queued_bytes() const noexcept { return m_bytes.load(std::memory_order_relaxed); }

private:
    void run();
    bool take_all(std::vector<Delivery>& all);
    void done_with(Delivery& delivery);

    Callbacks& m_callbacks;
    std::thread m_thread;
    std::atomic<std::size_t> m_bytes = 0;
    os::Mutex m_lock;
    std::condition_variable m_queuedSome;
    std::condition_variable m_deliveredSome;
    std::vector<Delivery> m_queue OS_GUARDED_BY(m_lock);
    std::vector<std::vector<double>> m_spares OS_GUARDED_BY(m_lock);
    std::uint64_t m_queuedCount OS_GUARDED_BY(m_lock) = 0;
    std::uint64_t m_deliveredCount OS_GUARDED_BY(m_lock) = 0;
    std::size_t m_waiting OS_GUARDED_BY(m_lock) = 0;  // in wait_for_queued
    bool m_idle OS_GUARDED_BY(m_lock) = false;
    bool m_stopped OS_GUARDED_BY(m_lock) = false;
};

}  // namespace serverdll
