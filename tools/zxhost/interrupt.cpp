#include "interrupt.h"

#include <atomic>
#include <csignal>
#include <cstdlib>

#include "exit_status.h"

namespace zxhost {
namespace {

std::atomic<int> interrupts{0};
static_assert(std::atomic<int>::is_always_lock_free, "a signal handler needs it");

extern "C" void on_interrupt(int number) {
    if (interrupts.fetch_add(1) > 0) std::_Exit(static_cast<int>(ExitStatus::MachineError));
    std::signal(number, on_interrupt);  // some systems forget the handler once it has run
}

}  // namespace

InterruptWatch::InterruptWatch() {
    interrupts = 0;
    m_previous = std::signal(SIGINT, on_interrupt);
}

InterruptWatch::~InterruptWatch() { std::signal(SIGINT, m_previous); }

bool InterruptWatch::interrupted() const { return interrupts.load() > 0; }

}  // namespace zxhost
