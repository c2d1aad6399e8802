// The host's side of a test with a machine: a notifier that wakes it, and the wait for a command's end.
#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <string>

#include "mmachabstract.h"
#include "mmachnotifier.h"

// Counts notifications and lets the host wait for the next.
class WakingNotifier : public MMachNotifier {
public:
    int HasNotification() override {
        std::lock_guard guard(m_mutex);
        return m_waiting ? 1 : 0;
    }

    bool Notify() override {
        {
            std::lock_guard guard(m_mutex);
            m_waiting = true;
            ++m_count;
        }
        m_woken.notify_all();
        return true;
    }

    // Until a notification has come since the last wait, at most this long.
    void wait(std::chrono::milliseconds at_most) {
        std::unique_lock lock(m_mutex);
        m_woken.wait_for(lock, at_most, [this] { return m_waiting; });
        m_waiting = false;
    }

    int count() {
        std::lock_guard guard(m_mutex);
        return m_count;
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_woken;
    bool m_waiting = false;
    int m_count = 0;
};

constexpr std::chrono::seconds host_patience{30};

// Runs a host's loop, `step` in each turn, until `is_over` says so. False if that takes too long.
template <class IsOver, class Step>
bool run_host(WakingNotifier& notifier, IsOver&& is_over, Step&& step) {
    const auto deadline = std::chrono::steady_clock::now() + host_patience;
    while (true) {
        step();
        if (is_over()) return true;
        if (std::chrono::steady_clock::now() > deadline) return false;
        notifier.wait(std::chrono::milliseconds(50));
    }
}
