#include "maths/ScaledPoints.h"

#include <cmath>
#include <limits>

namespace {

[[noreturn]] void ThrowImpossible() { throw GeometryError(GeometryError::Reason::Impossible); }

struct Range {
    double lowest, highest;

    /// Half, because the whole can overflow.
    double HalfExtent() const noexcept { return 0.5 * highest - 0.5 * lowest; }
    double LargestMagnitude() const noexcept { return std::max(std::fabs(lowest), std::fabs(highest)); }
};

Range RangeOf(std::span<const double> values) {
    Lanes lowest{values[0], values[0]}, highest = lowest, notFinite{};
    std::size_t i = 0;
    for (; i + laneCount <= values.size(); i += laneCount) {
        const Lanes v = LoadLanes(&values[i]);
        lowest = Smaller(v, lowest);
        highest = Larger(v, highest);
        notFinite += v * 0.0; // not-a-number from the first value that is not finite
    }
    for (; i < values.size(); ++i) {
        lowest[0] = Smaller(values[i], lowest[0]);
        highest[0] = Larger(values[i], highest[0]);
        notFinite[0] += values[i] * 0.0;
    }
    if (Total(notFinite) != 0.0) ThrowImpossible();
    return {Smaller(lowest[0], lowest[1]), Larger(highest[0], highest[1])};
}

} // namespace

ScaledPoints::ScaledPoints(const CMaPointArray& points) : xs(points.X()), ys(points.Y()), zs(points.Z()) {
    if (xs.empty()) ThrowImpossible();
    const Range ranges[] = {RangeOf(xs), RangeOf(ys), RangeOf(zs)};
    double halfExtent = 0.0, largest = 0.0;
    for (const Range& range : ranges) {
        halfExtent = std::max(halfExtent, range.HalfExtent());
        largest = std::max(largest, range.LargestMagnitude());
    }
    if (halfExtent == 0.0) ThrowImpossible();

    using Limits = std::numeric_limits<double>;
    scale = std::ldexp(1.0, -std::clamp(std::ilogb(halfExtent), -1022, 1022));
    rounding = std::max(Limits::epsilon() * largest, Limits::denorm_min()) * scale;
    for (int axis = 0; axis < 3; ++axis)
        base[axis] = 0.5 * (ranges[axis].lowest * scale) + 0.5 * (ranges[axis].highest * scale);
    const double count = static_cast<double>(xs.size());
    const auto sums = SumOver<3>([](auto x, auto y, auto z, auto* sum) {
        sum[0] += x;
        sum[1] += y;
        sum[2] += z;
    });
    MoveBase(sums[0] / count, sums[1] / count, sums[2] / count);
}

ScaledPoints::ScaledPoints(const CMaPointArray& part, const ScaledPoints& whole) noexcept : ScaledPoints(whole) {
    xs = part.X();
    ys = part.Y();
    zs = part.Z();
}
