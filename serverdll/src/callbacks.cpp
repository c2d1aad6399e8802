#include "callbacks.h"

#include <exception>

#include "clientlog.h"

namespace serverdll {

namespace {

// An error callback whose own call fails is told of that, too; this many deep, not for ever.
constexpr int deepest_error = 4;

void log_exception(const char* callback, const std::string& what) {
    log_error("callbacks.cpp", __LINE__,
              std::string("an exception left the ") + callback + " callback: " + what);
}

// Runs `call` and lets nothing out of it.
template <typename Call>
void guarded(const char* callback, Call&& call) {
    try {
        call();
    } catch (const CZendrixError& error) {
        log_exception(callback, error.m_text);
    } catch (const std::exception& error) {
        log_exception(callback, error.what());
    } catch (...) {
        log_exception(callback, "of an unknown kind");
    }
}

void deliver_message(CallbackSlot<ZXMessageCallback>& slot, const char* name, const Delivery& delivery) {
    slot.run(1, [&](ZXMessageCallback function, void* user, std::size_t) {
        guarded(name, [&] { function(user, delivery.id, delivery.text.c_str()); });
    });
}

void deliver_rows(CallbackSlot<ZXDataCallback>& slot, const char* name, Delivery& delivery) {
    const unsigned width = static_cast<unsigned>(delivery.width);
    slot.run(delivery.rows, [&](ZXDataCallback function, void* user, std::size_t row) {
        guarded(name, [&] { function(user, width, delivery.values.data() + row * delivery.width); });
    });
}

}  // namespace

void Callbacks::deliver(Delivery& delivery) {
    if (m_silent) return;
    switch (delivery.kind) {
        case Delivery::Kind::event:
            async.run(1, [&](ZXAsyncCallback function, void* user, std::size_t) {
                guarded("async", [&] { function(user, delivery.text.c_str()); });
            });
            break;
        case Delivery::Kind::error:
            if (m_errorDepth == deepest_error) return;
            ++m_errorDepth;
            deliver_message(error, "error", delivery);
            --m_errorDepth;
            break;
        case Delivery::Kind::warning:
            deliver_message(warning, "warning", delivery);
            break;
        case Delivery::Kind::complete:
            complete.run(1, [&](ZXCompleteCallback function, void* user, std::size_t) {
                guarded("complete", [&] { function(user, delivery.id); });
            });
            m_completed(delivery.id);
            break;
        case Delivery::Kind::points:
            deliver_rows(scan, "scan", delivery);
            break;
        case Delivery::Kind::watch:
            deliver_rows(watch, "watch", delivery);
            break;
        case Delivery::Kind::silence:
            m_silent = true;
            break;
    }
}

void Callbacks::drop_all() {
    async.drop();
    error.drop();
    warning.drop();
    complete.drop();
    scan.drop();
    watch.drop();
}

}  // namespace serverdll
