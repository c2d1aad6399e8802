// The six callbacks of a client, and how each kind of delivery reaches its own.
#pragma once

#include <functional>

#include "callbackslot.h"
#include "czendrixcom.h"
#include "delivery.h"

namespace serverdll {

class Callbacks {
public:
    // `completed` is told the id after each complete callback has run.
    explicit Callbacks(std::function<void(long)> completed) : m_completed(std::move(completed)) {}

    // On the dispatching thread only. What leaves a callback as an exception is logged.
    void deliver(Delivery& delivery);
    // Nothing is told any more; doesn't wait.
    void drop_all();

    CallbackSlot<ZXAsyncCallback> async;
    CallbackSlot<ZXMessageCallback> error;
    CallbackSlot<ZXMessageCallback> warning;
    CallbackSlot<ZXCompleteCallback> complete;
    CallbackSlot<ZXDataCallback> scan;
    CallbackSlot<ZXDataCallback> watch;

private:
    std::function<void(long)> m_completed;
    int m_errorDepth = 0;
    bool m_silent = false;
};

}  // namespace serverdll
