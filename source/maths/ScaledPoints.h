#pragma once

#include "maths/CMaPointArray.h"
#include "maths/Lanes.h"

#include <algorithm>
#include <array>
#include <cstddef>

/// The points of a fit as the fits want them: about a point in their middle, and scaled by a power of two so that the
/// set is about 1 in size. Neither costs accuracy (the scaling changes no digit), and nothing overflows or vanishes,
/// whatever the size of the coordinates. The points are not copied: every sum reads them where they are stored, in one
/// pass.
class ScaledPoints {
public:
    /// Throws GeometryError (Impossible) when there are no points, all are in one place or a coordinate is not finite.
    /// Refers to `points`, which must outlive it and stay as they are.
    explicit ScaledPoints(const CMaPointArray& points);

    /// Some of the points of `whole`, scaled alike and about its base.
    ScaledPoints(const CMaPointArray& part, const ScaledPoints& whole) noexcept;

    std::size_t GetSize() const noexcept { return xs.size(); }
    /// How far a point can have been moved by the rounding of its coordinates.
    double GetRounding() const noexcept { return rounding; }

    /// Moves the base, from which the points are counted. At first it is the middle of the box around them.
    void MoveBase(double x, double y, double z) noexcept {
        base[0] += x;
        base[1] += y;
        base[2] += z;
    }

    /// The same place, counted from this base instead of the other's.
    CMaVector FromBaseOf(const ScaledPoints& other, const CMaVector& position) const noexcept {
        return {position[0] + (other.base[0] - base[0]), position[1] + (other.base[1] - base[1]),
                position[2] + (other.base[2] - base[2])};
    }

    /// Back to the caller's frame and unit.
    CMaPoint ToCaller(const CMaVector& position) const noexcept {
        return {(base[0] + position[0]) / scale, (base[1] + position[1]) / scale, (base[2] + position[2]) / scale};
    }
    double ToCaller(double length) const noexcept { return length / scale; }

    /// Calls `kernel(x, y, z, sums)` for all points, which adds to each of the `Count` sums; x, y, z are Lanes or
    /// double. The sums are taken in short runs, so that their rounding hardly grows with the number of points.
    template <std::size_t Count, typename Kernel> std::array<double, Count> SumOver(const Kernel& kernel) const {
        constexpr std::size_t runLength = 512;
        std::array<double, Count> totals{};
        for (std::size_t begin = 0; begin < xs.size(); begin += runLength)
            AddRun(begin, std::min(begin + runLength, xs.size()), kernel, totals);
        return totals;
    }

private:
    template <std::size_t Count, typename Kernel>
    void AddRun(std::size_t begin, std::size_t end, const Kernel& kernel, std::array<double, Count>& totals) const {
        Lanes sums[Count]{};
        double oddSums[Count]{};
        std::size_t i = begin;
        for (; i + laneCount <= end; i += laneCount)
            kernel(LoadLanes(&xs[i]) * scale - base[0], LoadLanes(&ys[i]) * scale - base[1],
                   LoadLanes(&zs[i]) * scale - base[2], sums);
        for (; i < end; ++i) kernel(xs[i] * scale - base[0], ys[i] * scale - base[1], zs[i] * scale - base[2], oddSums);
        for (std::size_t k = 0; k < Count; ++k) totals[k] += Total(sums[k]) + oddSums[k];
    }

    std::span<const double> xs, ys, zs;
    double scale = 1.0;
    double rounding = 0.0;
    double base[3] = {};
};
