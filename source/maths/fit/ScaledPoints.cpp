#include "maths/fit/ScaledPoints.h"

#include <cmath>
#include <limits>

namespace qmv40::fit {

namespace {

[[noreturn]] void ThrowImpossible() { throw GeometryError(GeometryError::Reason::Impossible); }

struct Range {
    double lowest, highest;

    /// Half, because the extent itself can overflow. Never 0 for different values: half of the smallest double, which
    /// would be rounded to 0, counts as the smallest double.
    double HalfExtent() const noexcept {
        const double half = 0.5 * highest - 0.5 * lowest;
        return half == 0.0 && highest > lowest ? std::numeric_limits<double>::denorm_min() : half;
    }
    double LargestMagnitude() const noexcept { return std::max(std::fabs(lowest), std::fabs(highest)); }
};

/// Two doubles in one SSE2 register: the compiler does not vectorise this loop by itself.
using Pair [[gnu::vector_size(16)]] = double;

Range RangeOf(std::span<const double> values) {
    struct Extremes {
        Pair lowest, highest, notFinite;

        void Take(Pair v) noexcept {
            lowest = v < lowest ? v : lowest;
            highest = v > highest ? v : highest;
            notFinite += v * 0.0; // infinity and not-a-number times 0 are not-a-number, which stays in the sum
        }
    };
    const Pair first{values[0], values[0]};
    Extremes even{first, first, {}}, odd = even; // two independent chains of dependent operations
    std::size_t i = 0;
    for (; i + 4 <= values.size(); i += 4) {
        even.Take(Pair{values[i], values[i + 1]});
        odd.Take(Pair{values[i + 2], values[i + 3]});
    }
    for (; i < values.size(); ++i) even.Take(Pair{values[i], values[i]});
    even.Take(odd.lowest);
    even.Take(odd.highest);
    even.notFinite += odd.notFinite;
    if (even.notFinite[0] + even.notFinite[1] != 0.0) ThrowImpossible();
    return {std::min(even.lowest[0], even.lowest[1]), std::max(even.highest[0], even.highest[1])};
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
    // The exponent is limited so that the scale is a normal double.
    scale = std::ldexp(1.0, -std::clamp(std::ilogb(halfExtent), -1022, 1022));
    if (std::isinf(largest * scale)) ThrowImpossible();
    rounding = std::max(Limits::epsilon() * largest, Limits::denorm_min()) * scale;
    for (int axis = 0; axis < 3; ++axis)
        base[axis] = 0.5 * (ranges[axis].lowest * scale) + 0.5 * (ranges[axis].highest * scale);
}

ScaledPoints::ScaledPoints(const CMaPointArray& part, const ScaledPoints& whole) noexcept : ScaledPoints(whole) {
    xs = part.X();
    ys = part.Y();
    zs = part.Z();
}

} // namespace qmv40::fit
