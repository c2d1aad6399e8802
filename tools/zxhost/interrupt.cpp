#include "interrupt.h"

#include <atomic>
#include <cstdlib>

#include "exit_status.h"

namespace zxhost {
namespace {

std::atomic<int> interrupts{0};
std::atomic<bool> remembered{false};
static_assert(std::atomic<int>::is_always_lock_free && std::atomic<bool>::is_always_lock_free,
              "a handler of interrupts needs it");

void remember_interrupt() { remembered = true; }

void on_interrupt() {
    remembered = true;
    if (interrupts.fetch_add(1) > 0) std::_Exit(static_cast<int>(ExitStatus::MachineError));
}

}  // namespace

InterruptMemory::InterruptMemory() : m_previous(os::set_interrupt_handler(remember_interrupt)) { take(); }

InterruptMemory::~InterruptMemory() { os::set_interrupt_handler(m_previous); }

bool InterruptMemory::take() { return remembered.exchange(false); }

InterruptWatch::InterruptWatch() {
    interrupts = 0;
    m_previous = os::set_interrupt_handler(on_interrupt);
}

InterruptWatch::~InterruptWatch() { os::set_interrupt_handler(m_previous); }

bool InterruptWatch::interrupted() const { return interrupts.load() > 0; }

}  // namespace zxhost
