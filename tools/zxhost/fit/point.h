// Points of the plane and of space, and their small vector arithmetic.
#pragma once

#include <array>
#include <cmath>
#include <cstddef>
#include <stdexcept>

namespace zxhost {

template <std::size_t N>
using Point = std::array<double, N>;  // mm

template <std::size_t N>
double dot(const Point<N>& a, const Point<N>& b) {
    double sum = 0.0;
    for (std::size_t i = 0; i < N; ++i) sum += a[i] * b[i];
    return sum;
}

template <std::size_t N>
double length(const Point<N>& a) {
    return std::sqrt(dot(a, a));
}

// a + factor * b
template <std::size_t N>
Point<N> plus(Point<N> a, const Point<N>& b, double factor = 1.0) {
    for (std::size_t i = 0; i < N; ++i) a[i] += factor * b[i];
    return a;
}

template <std::size_t N>
Point<N> minus(const Point<N>& a, const Point<N>& b) {
    return plus(a, b, -1.0);
}

// The points determine no such shape; what() says why, for a person.
struct NoFit : std::runtime_error {
    using std::runtime_error::runtime_error;
};

}  // namespace zxhost
