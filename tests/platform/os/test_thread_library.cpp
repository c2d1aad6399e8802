// A library that leaves a thread behind, and tells when it goes itself.
#include "os/threads.h"

#if defined(_WIN32)
#define TEST_API __declspec(dllexport)
#else
#define TEST_API __attribute__((visibility("default")))
#endif

namespace {

struct Host {
    ~Host() {
        if (tell_end) tell_end(argument);
    }

    void (*work)(void*) = nullptr;  // of the thread, which comes back from there to here
    void (*tell_end)(void*) = nullptr;
    void* argument = nullptr;
};

Host host;

unsigned run(void*) {
    host.work(host.argument);
    return 0;
}

}  // namespace

extern "C" TEST_API bool test_library_start(void (*work)(void*), void (*tell_end)(void*), void* argument);

bool test_library_start(void (*work)(void*), void (*tell_end)(void*), void* argument) {
    host.work = work;
    host.tell_end = tell_end;
    host.argument = argument;
    os::ThreadHandle handle = os::no_thread;
    std::uint32_t id = 0;
    return os::threads().start(run, nullptr, handle, id) && os::threads().close(handle);
}
