#include "principal_axes.h"

#include <Eigen/QR>
#include <Eigen/SVD>
#include <algorithm>
#include <limits>
#include <utility>

namespace zxhost {
namespace {

// The mean and the largest distance from it along an axis; about the first point, for points far away.
template <std::size_t N>
std::pair<Point<N>, double> place_of(const std::vector<Point<N>>& points) {
    Point<N> sum{};
    for (const Point<N>& point : points) sum = plus(sum, minus(point, points.front()));
    const Point<N> mean = plus(points.front(), sum, 1.0 / static_cast<double>(points.size()));
    double size = 0.0;
    for (const Point<N>& point : points)
        for (const double along : minus(point, mean))
            size = std::isfinite(along) ? std::max(size, std::abs(along)) : along;
    return {mean, size};
}

// The points about their mean, a row each. Rows of zeros, as there are for fewer points than axes, change
// nothing.
template <int N>
Eigen::Matrix<double, Eigen::Dynamic, N> rows_about(const Point<N>& mean, double scale,
                                                    const std::vector<Point<N>>& points) {
    const auto count = static_cast<Eigen::Index>(points.size());
    Eigen::Matrix<double, Eigen::Dynamic, N> rows(std::max<Eigen::Index>(count, N), N);
    rows.bottomRows(rows.rows() - count).setZero();
    for (std::size_t i = 0; i < points.size(); ++i)
        for (std::size_t k = 0; k < N; ++k)
            rows(static_cast<Eigen::Index>(i), static_cast<Eigen::Index>(k)) =
                (points[i][k] - mean[k]) / scale;
    return rows;
}

template <int N>
using SquareDecomposition = Eigen::JacobiSVD<Eigen::Matrix<double, N, N>, Eigen::NoQRPreconditioner>;

// The singular values and directions of the rows are those of the triangle that they can be turned into.
template <int N>
SquareDecomposition<N> decomposed(const Eigen::Matrix<double, Eigen::Dynamic, N>& rows) {
    const Eigen::ColPivHouseholderQR<Eigen::Matrix<double, Eigen::Dynamic, N>> qr(rows);
    Eigen::Matrix<double, N, N> triangle =
        qr.matrixR().template topRows<N>().template triangularView<Eigen::Upper>();
    triangle *= qr.colsPermutation().transpose();
    return SquareDecomposition<N>(triangle, Eigen::ComputeFullV);
}

}  // namespace

template <std::size_t N>
PrincipalAxes<N> principal_axes(const std::vector<Point<N>>& points) {
    if (points.empty()) throw NoFit("there are no points");
    for (const Point<N>& point : points)
        if (!std::all_of(point.begin(), point.end(), [](double v) { return std::isfinite(v); }))
            throw NoFit("a point has a number that isn't finite");
    const auto [mean, size] = place_of(points);
    if (!std::isfinite(size)) throw NoFit("the points lie too far from each other");
    const double scale = size > 0.0 ? size : 1.0;
    constexpr int columns = static_cast<int>(N);
    const auto svd = decomposed<columns>(rows_about<columns>(mean, scale, points));
    const double unit = scale / std::sqrt(static_cast<double>(points.size()));
    PrincipalAxes<N> axes{mean, {}, {}, 0.0};
    for (std::size_t i = 0; i < N; ++i) {
        const auto column = static_cast<Eigen::Index>(i);
        std::copy_n(svd.matrixV().col(column).data(), N, axes.directions[i].begin());
        axes.spread[i] = svd.singularValues()[column] * unit;
    }
    const double farthest = length(mean) + size;
    axes.noise = std::max(1e-9 * axes.spread[0], 4.0 * std::numeric_limits<double>::epsilon() * farthest);
    return axes;
}

template PrincipalAxes<2> principal_axes(const std::vector<Point<2>>&);
template PrincipalAxes<3> principal_axes(const std::vector<Point<3>>&);

}  // namespace zxhost
