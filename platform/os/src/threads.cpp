#include "os/threads.h"

#include "in_force.h"
#include "system_threads.h"

namespace os {

namespace {
InForce<ThreadSystem, system_threads> in_force;
}

ThreadSystem& threads() { return in_force.get(); }

ThreadSystem* replace_threads(ThreadSystem* thread_system) { return in_force.replace(thread_system); }

}  // namespace os
