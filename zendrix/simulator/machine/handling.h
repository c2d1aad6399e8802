// Something that takes time but moves no axis: the change of a probe, say.
#pragma once

#include <algorithm>
#include <cstddef>
#include <functional>
#include <utility>
#include <vector>

namespace zendrix::sim {

class Handling {
public:
    // What is done once its time has passed, counted from the step before.
    struct Step {
        double seconds;
        std::function<void()> effect;
    };

    explicit Handling(std::vector<Step> steps) : m_steps(std::move(steps)) {}

    // Goes on for up to `seconds`, and carries out what falls due. True at the end.
    bool advance(double seconds) {
        for (; m_next < m_steps.size(); ++m_next) {
            Step& step = m_steps[m_next];
            if (seconds < step.seconds - rounding) {
                step.seconds -= seconds;
                return false;
            }
            seconds = std::max(0.0, seconds - step.seconds);
            step.effect();
        }
        return true;
    }

    // Until the end, if nothing stops it.
    double remaining() const {
        double sum = 0.0;
        for (std::size_t i = m_next; i < m_steps.size(); ++i) sum += m_steps[i].seconds;
        return sum;
    }

    // Nothing more is done.
    void stop() { m_next = m_steps.size(); }

private:
    // What the clock's additions may cost; a rest below it would never pass.
    static constexpr double rounding = 1e-9;

    std::vector<Step> m_steps;
    std::size_t m_next = 0;
};

}  // namespace zendrix::sim
