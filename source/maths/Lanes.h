#pragma once

#include <cmath>
#include <cstddef>
#include <cstring>

/// Two doubles that are computed with side by side; every operator works on each, and a double beside one stands for
/// both. Kernels are written once, for `auto`, and run on lanes and on the odd last point alike: the result is the same
/// on every machine, for it depends on no wider registers than these.
using Lanes [[gnu::vector_size(16)]] = double;

inline constexpr std::size_t laneCount = 2;

inline Lanes LoadLanes(const double* from) noexcept {
    Lanes lanes;
    std::memcpy(&lanes, from, sizeof lanes);
    return lanes;
}

inline double Total(Lanes lanes) noexcept { return lanes[0] + lanes[1]; }

inline double SquareRoot(double value) noexcept { return std::sqrt(value); }
inline Lanes SquareRoot(Lanes values) noexcept { return Lanes{std::sqrt(values[0]), std::sqrt(values[1])}; }

inline double Smaller(double a, double b) noexcept { return a < b ? a : b; }
inline Lanes Smaller(Lanes a, Lanes b) noexcept { return a < b ? a : b; }
inline double Larger(double a, double b) noexcept { return a > b ? a : b; }
inline Lanes Larger(Lanes a, Lanes b) noexcept { return a > b ? a : b; }
