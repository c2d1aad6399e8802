// Ctrl-C while an action of the machine runs.
#pragma once

#include "os/interrupt.h"

namespace zxhost {

// For a program that plays many actions: while this lives, Ctrl-C between them doesn't end the program
// either.
class InterruptMemory {
public:
    InterruptMemory();
    ~InterruptMemory();
    InterruptMemory(const InterruptMemory&) = delete;
    InterruptMemory& operator=(const InterruptMemory&) = delete;

    // True if Ctrl-C came since the last call, within an action or between two.
    static bool take();

private:
    os::InterruptHandler m_previous;
};

// While one of these lives, the first Ctrl-C is only remembered and the second ends the program at once,
// with the exit status of a machine error. At most one lives at a time.
class InterruptWatch {
public:
    InterruptWatch();
    ~InterruptWatch();
    InterruptWatch(const InterruptWatch&) = delete;
    InterruptWatch& operator=(const InterruptWatch&) = delete;

    bool interrupted() const;

private:
    os::InterruptHandler m_previous;
};

}  // namespace zxhost
