// The system's threads, but what a test asks for fails, and the handles are counted.
#pragma once

#include <condition_variable>
#include <functional>
#include <map>
#include <mutex>
#include <set>
#include <string>
#include <utility>

#include "os/error.h"
#include "os/threads.h"

class FaultyThreads final : public os::ThreadSystem {
public:
    FaultyThreads() : m_real(*os::replace_threads(this)) {}
    ~FaultyThreads() override { os::replace_threads(nullptr); }

    // The call number `nth`, counted from 1 and from now, of this operation fails with `error`.
    void fail(const std::string& operation, int error, int nth = 1) {
        const std::lock_guard guard(m_mutex);
        m_failures[operation] = {nth, error};
    }

    // Is called with the handle when a thread was started, before its maker hears of it.
    void on_start(std::function<void(os::ThreadHandle)> action) { m_on_start = std::move(action); }
    // Every thread gets this id.
    void give_id(std::uint32_t id) { m_id = id; }

    int calls(const std::string& operation) {
        const std::lock_guard guard(m_mutex);
        return m_calls[operation];
    }
    void wait_for_calls(const std::string& operation, int count) {
        std::unique_lock lock(m_mutex);
        m_called.wait(lock, [&] { return m_calls[operation] >= count; });
    }
    std::size_t open_handles() {
        const std::lock_guard guard(m_mutex);
        return m_open.size();
    }
    // Calls with a handle that isn't open.
    int stray_calls() {
        const std::lock_guard guard(m_mutex);
        return m_stray;
    }

    os::ThreadSystem& real() { return m_real; }

    bool start(unsigned (*function)(void*), void* argument, os::ThreadHandle& handle,
               std::uint32_t& id) override {
        if (!passes("start") || !m_real.start(function, argument, handle, id)) return false;
        opened(handle);
        if (m_id != 0) id = m_id;
        if (m_on_start) m_on_start(handle);
        return true;
    }
    bool set_normal_priority(os::ThreadHandle handle) override {
        return passes("set_normal_priority", handle) && m_real.set_normal_priority(handle);
    }
    bool duplicate(os::ThreadHandle handle, os::ThreadHandle& copy) override {
        if (!passes("duplicate", handle) || !m_real.duplicate(handle, copy)) return false;
        opened(copy);
        return true;
    }
    bool wait(os::ThreadHandle handle) override { return passes("wait", handle) && m_real.wait(handle); }
    bool exit_code(os::ThreadHandle handle, unsigned& code) override {
        return passes("exit_code", handle) && m_real.exit_code(handle, code);
    }
    // The handle is closed, also when the call fails.
    bool close(os::ThreadHandle handle) override {
        const bool passed = passes("close", handle);
        const int error = os::last_error();
        {
            const std::lock_guard guard(m_mutex);
            m_open.erase(handle);
        }
        m_real.close(handle);
        os::set_last_error(error);
        return passed;
    }

private:
    void opened(os::ThreadHandle handle) {
        const std::lock_guard guard(m_mutex);
        m_open.insert(handle);
    }

    bool passes(const std::string& operation, os::ThreadHandle handle) {
        {
            const std::lock_guard guard(m_mutex);
            if (!m_open.contains(handle)) ++m_stray;
        }
        return passes(operation);
    }

    bool passes(const std::string& operation) {
        const std::lock_guard guard(m_mutex);
        ++m_calls[operation];
        m_called.notify_all();
        const auto failure = m_failures.find(operation);
        if (failure == m_failures.end() || --failure->second.first != 0) return true;
        os::set_last_error(failure->second.second);
        return false;
    }

    os::ThreadSystem& m_real;
    std::mutex m_mutex;
    std::condition_variable m_called;
    std::map<std::string, std::pair<int, int>> m_failures;
    std::map<std::string, int> m_calls;
    std::set<os::ThreadHandle> m_open;
    int m_stray = 0;
    std::uint32_t m_id = 0;
    std::function<void(os::ThreadHandle)> m_on_start;
};
