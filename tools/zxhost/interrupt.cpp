#include "interrupt.h"

#include <atomic>
#include <csignal>
#include <cstdlib>

#include "exit_status.h"

namespace zxhost {
namespace {

std::atomic<int> interrupts{0};
std::atomic<bool> remembered{false};
static_assert(std::atomic<int>::is_always_lock_free && std::atomic<bool>::is_always_lock_free,
              "a signal handler needs it");

extern "C" void remember_interrupt(int number) {
    remembered = true;
    std::signal(number, remember_interrupt);  // some systems forget the handler once it has run
}

extern "C" void on_interrupt(int number) {
    remembered = true;
    if (interrupts.fetch_add(1) > 0) std::_Exit(static_cast<int>(ExitStatus::MachineError));
    std::signal(number, on_interrupt);
}

}  // namespace

InterruptMemory::InterruptMemory() : m_previous(std::signal(SIGINT, remember_interrupt)) { take(); }

InterruptMemory::~InterruptMemory() { std::signal(SIGINT, m_previous); }

bool InterruptMemory::take() { return remembered.exchange(false); }

InterruptWatch::InterruptWatch() {
    interrupts = 0;
    m_previous = std::signal(SIGINT, on_interrupt);
}

InterruptWatch::~InterruptWatch() { std::signal(SIGINT, m_previous); }

bool InterruptWatch::interrupted() const { return interrupts.load() > 0; }

}  // namespace zxhost
