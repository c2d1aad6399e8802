// Ctrl-C while an action of the machine runs.
#pragma once

namespace zxhost {

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
    void (*m_previous)(int);
};

}  // namespace zxhost
