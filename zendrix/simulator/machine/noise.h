// Probing noise: Gaussian numbers that depend on the seed alone, on every system.
#pragma once

#include <cmath>
#include <cstdint>

#include "machine/vector3.h"

namespace zendrix::sim {

class Noise {
public:
    explicit Noise(std::uint64_t seed) : m_state(seed) {}

    // Of mean 0 and standard deviation 1.
    double next() {
        if (m_has_spare) {
            m_has_spare = false;
            return m_spare;
        }
        const double radius = std::sqrt(-2.0 * std::log(uniform()));
        const double angle = 2.0 * pi * uniform();
        m_spare = radius * std::sin(angle);
        m_has_spare = true;
        return radius * std::cos(angle);
    }

private:
    // In (0, 1]: the logarithm above must exist.
    double uniform() { return (static_cast<double>(bits() >> 11) + 1.0) * 0x1p-53; }

    // SplitMix64: one addition and a mix a number, any seed as good as any other.
    std::uint64_t bits() {
        std::uint64_t z = (m_state += 0x9E3779B97F4A7C15u);
        z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9u;
        z = (z ^ (z >> 27)) * 0x94D049BB133111EBu;
        return z ^ (z >> 31);
    }

    std::uint64_t m_state;
    double m_spare = 0.0;
    bool m_has_spare = false;
};

}  // namespace zendrix::sim
