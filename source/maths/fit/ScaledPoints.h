#pragma once

#include "maths/CMaPointArray.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace qmv40::fit {

/// The points of a fit, relative to a base point in their middle and scaled by a power of two. The largest extent of
/// the scaled points along an axis is 2 to 4, so that no square or product of them overflows. Those that underflow are
/// too small to change a sum. The scaling itself is exact. The points are not copied: each sum reads them where they
/// are stored, in one pass.
class ScaledPoints {
public:
    /// Throws GeometryError (Impossible) when there are no points, when all are in one place, when a coordinate is not
    /// finite, or when the scaled coordinates overflow: then the extent is below 1e-307 of the largest coordinate.
    /// Refers to `points`, which must outlive it and stay as they are.
    explicit ScaledPoints(const CMaPointArray& points);

    /// Some of the points of `whole`, with its scale and its base.
    ScaledPoints(const CMaPointArray& part, const ScaledPoints& whole) noexcept;

    std::size_t GetSize() const noexcept { return xs.size(); }
    /// A bound of the rounding error of a scaled coordinate.
    double GetRounding() const noexcept { return rounding; }

    /// Moves the base. After construction it is the middle of the bounding box.
    void MoveBase(double x, double y, double z) noexcept {
        base[0] += x;
        base[1] += y;
        base[2] += z;
    }

    /// Converts a position relative to the other's base to one relative to this base.
    CMaVector FromBaseOf(const ScaledPoints& other, const CMaVector& position) const noexcept {
        return {position[0] + (other.base[0] - base[0]), position[1] + (other.base[1] - base[1]),
                position[2] + (other.base[2] - base[2])};
    }

    /// Back to the caller's frame and unit.
    CMaPoint ToCaller(const CMaVector& position) const noexcept {
        return {(base[0] + position[0]) / scale, (base[1] + position[1]) / scale, (base[2] + position[2]) / scale};
    }
    double ToCaller(double length) const noexcept { return length / scale; }

    /// Sums `termsOf(x, y, z)`, an array of doubles, over all points. Each block of 512 points is summed separately,
    /// and then added to the total, so that the rounding error grows with the number of blocks instead of the number of
    /// points. The order of the additions, and hence each bit of the result, does not depend on the width of the vector
    /// registers.
    template <typename TermsOf> auto SumOver(const TermsOf& termsOf) const {
#ifdef QMV40_MAY_USE_AVX2
        if (__builtin_cpu_supports("avx2")) return SumWithAvx2(termsOf);
#endif
        return Sum(termsOf);
    }

private:
    static constexpr std::size_t laneCount = 8;

#ifdef QMV40_MAY_USE_AVX2
    template <typename TermsOf> [[gnu::target("avx2"), gnu::flatten]] auto SumWithAvx2(const TermsOf& termsOf) const {
        return Sum(termsOf);
    }
#endif

    template <typename TermsOf> [[gnu::flatten]] auto Sum(const TermsOf& termsOf) const {
        constexpr std::size_t blockSize = 512;
        decltype(termsOf(0.0, 0.0, 0.0)) totals{};
        for (std::size_t begin = 0; begin < xs.size(); begin += blockSize)
            AddBlock(begin, std::min(begin + blockSize, xs.size()), termsOf, totals);
        return totals;
    }

    /// Keeps eight partial sums (lanes): point i of the block is added to lane i modulo 8. The compiler holds two or
    /// four lanes in one vector register, with the same result.
    template <typename TermsOf, std::size_t Count>
    void AddBlock(std::size_t begin, std::size_t end, const TermsOf& termsOf, std::array<double, Count>& totals) const {
        double sums[Count][laneCount] = {};
        const auto add = [&](std::size_t i, std::size_t lane) {
            const auto terms = termsOf(xs[i] * scale - base[0], ys[i] * scale - base[1], zs[i] * scale - base[2]);
            for (std::size_t k = 0; k < Count; ++k) sums[k][lane] += terms[k];
        };
        std::size_t i = begin;
        for (; i + laneCount <= end; i += laneCount)
            for (std::size_t lane = 0; lane < laneCount; ++lane) add(i + lane, lane);
        for (std::size_t lane = 0; i + lane < end; ++lane) add(i + lane, lane);
        static_assert(laneCount == 8);
        for (std::size_t k = 0; k < Count; ++k) {
            const double* const l = sums[k];
            totals[k] += ((l[0] + l[4]) + (l[2] + l[6])) + ((l[1] + l[5]) + (l[3] + l[7]));
        }
    }

    std::span<const double> xs, ys, zs;
    double scale = 1.0;
    double rounding = 0.0;
    double base[3] = {};
};

} // namespace qmv40::fit
