// Small systems of linear equations, as least squares leads to them.
#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <optional>
#include <utility>

namespace zxhost {

// The sums over all rows of an overdetermined system: M coefficients, and behind them the right side.
template <std::size_t M>
struct NormalEquations {
    std::array<std::array<double, M + 1>, M> sums{};

    void add(const std::array<double, M>& row, double right) {
        for (std::size_t i = 0; i < M; ++i) {
            for (std::size_t k = 0; k < M; ++k) sums[i][k] += row[i] * row[k];
            sums[i][M] += row[i] * right;
        }
    }
};

// Gauss-Jordan with pivoting; nothing if the equations don't determine a solution.
template <std::size_t M>
std::optional<std::array<double, M>> solve(NormalEquations<M> equations) {
    auto& m = equations.sums;
    double scale = 0.0;
    for (std::size_t i = 0; i < M; ++i) scale = std::max(scale, m[i][i]);
    for (std::size_t column = 0; column < M; ++column) {
        std::size_t pivot = column;
        for (std::size_t row = column + 1; row < M; ++row)
            if (std::abs(m[row][column]) > std::abs(m[pivot][column])) pivot = row;
        if (!(std::abs(m[pivot][column]) > 1e-15 * scale)) return std::nullopt;
        std::swap(m[column], m[pivot]);
        for (std::size_t row = 0; row < M; ++row) {
            if (row == column) continue;
            const double factor = m[row][column] / m[column][column];
            for (std::size_t k = column; k <= M; ++k) m[row][k] -= factor * m[column][k];
        }
    }
    std::array<double, M> solution{};
    for (std::size_t i = 0; i < M; ++i) solution[i] = m[i][M] / m[i][i];
    return solution;
}

}  // namespace zxhost
