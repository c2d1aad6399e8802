// The system's threads, but each of them starts its work only when it is released; at the end of the object
// all are released and waited for.
#pragma once

#include <memory>
#include <utility>
#include <vector>

#include "gate.h"
#include "os/threads.h"

class HeldThreads final : public os::ThreadSystem {
public:
    HeldThreads() : m_real(*os::replace_threads(this)) {}
    ~HeldThreads() override {
        finish();
        os::replace_threads(nullptr);
    }

    // Lets the threads go that have been started, and waits until they have ended.
    void finish() {
        for (const Started& thread : std::exchange(m_started, {})) {
            thread.released->open();
            m_real.wait(thread.handle);
            m_real.close(thread.handle);
        }
    }

    bool start(unsigned (*function)(void*), void* argument, os::ThreadHandle& handle,
               std::uint32_t& id) override {
        const auto released = std::make_shared<Gate>();
        auto* work = new Work{function, argument, released};
        os::ThreadHandle copy = os::no_thread;
        if (!m_real.start(run, work, handle, id) || !m_real.duplicate(handle, copy)) return false;
        m_started.push_back({copy, released});
        return true;
    }
    bool set_normal_priority(os::ThreadHandle handle) override { return m_real.set_normal_priority(handle); }
    bool duplicate(os::ThreadHandle handle, os::ThreadHandle& copy) override {
        return m_real.duplicate(handle, copy);
    }
    bool wait(os::ThreadHandle handle) override { return m_real.wait(handle); }
    bool exit_code(os::ThreadHandle handle, unsigned& code) override {
        return m_real.exit_code(handle, code);
    }
    bool close(os::ThreadHandle handle) override { return m_real.close(handle); }

private:
    struct Work {
        unsigned (*function)(void*);
        void* argument;
        std::shared_ptr<Gate> released;
    };

    struct Started {
        os::ThreadHandle handle;
        std::shared_ptr<Gate> released;
    };

    static unsigned run(void* pointer) {
        const Work work = *static_cast<Work*>(pointer);
        delete static_cast<Work*>(pointer);
        work.released->wait();
        return work.function(work.argument);
    }

    os::ThreadSystem& m_real;
    std::vector<Started> m_started;
};
