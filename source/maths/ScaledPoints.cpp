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
    // Two of each, so that no step waits for the one before.
    Lanes lowest[2] = {{values[0], values[0]}, {values[0], values[0]}};
    Lanes highest[2] = {lowest[0], lowest[0]}, notFinite[2] = {};
    const auto take = [&](Lanes v, int which) {
        lowest[which] = Smaller(v, lowest[which]);
        highest[which] = Larger(v, highest[which]);
        notFinite[which] += v * 0.0; // not-a-number from the first value that is not finite
    };
    std::size_t i = 0;
    for (; i + 2 * laneCount <= values.size(); i += 2 * laneCount) {
        take(LoadLanes(&values[i]), 0);
        take(LoadLanes(&values[i + laneCount]), 1);
    }
    for (; i < values.size(); ++i) take(Lanes{values[i], values[i]}, 0);
    if (Total(notFinite[0] + notFinite[1]) != 0.0) ThrowImpossible();
    const Lanes least = Smaller(lowest[0], lowest[1]), greatest = Larger(highest[0], highest[1]);
    return {Smaller(least[0], least[1]), Larger(greatest[0], greatest[1])};
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
}

ScaledPoints::ScaledPoints(const CMaPointArray& part, const ScaledPoints& whole) noexcept : ScaledPoints(whole) {
    xs = part.X();
    ys = part.Y();
    zs = part.Z();
}
