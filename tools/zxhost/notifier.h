// The host's bell: the driver rings it from any thread, the host's loop sleeps on it.
#pragma once

#include <chrono>
#include <condition_variable>

#include "mmachnotifier.h"
#include "os/mutex.h"

namespace zxhost {

class HostNotifier : public MMachNotifier {
public:
    int HasNotification() override;
    bool Notify() override;

    // Returns at the next ring, at once if one came since the last wait, or after this time.
    void wait(std::chrono::milliseconds at_most);

private:
    os::Mutex m_lock;
    std::condition_variable m_rang;
    bool m_waiting OS_GUARDED_BY(m_lock) = false;
};

}  // namespace zxhost
