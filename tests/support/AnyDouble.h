#pragma once

#include <bit>
#include <cmath>
#include <random>

/// Finite doubles of every size, drawn by their bits.
inline double AnyFiniteDouble(std::mt19937_64& generator) {
    while (true) {
        const double value = std::bit_cast<double>(generator());
        if (std::isfinite(value)) return value;
    }
}
