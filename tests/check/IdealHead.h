#pragma once

#include "check/HeadModel.h"
#include "check/Vectors.h"

#include <gtest/gtest.h>

/// A head with the built-in dimensions, as docs/conventions.md shows it: the pole sphere at the origin.
inline check::HeadModel IdealHead(double mountedTurn = 0.0, const CMaVector& pole = {0.0, 0.0, 0.0}) {
    return {pole,
            mountedTurn,
            {{-6.95, 24.0, -11.5}, {30.3, 0.0, -32.25}, {0.0, -19.3, -4.3}, {0.0, 19.3, -4.3}, 135.0, 138.0}};
}

/// A machine's coordinates of some hundreds of millimetres, a dozen roundings each.
inline constexpr double rounding = 1e-11;

/// Worked numbers that are printed with four decimals, in each of three coordinates.
inline constexpr double printedDecimals = 0.0001;

inline testing::AssertionResult IsAt(const CMaVector& expected, const CMaVector& actual, double tolerance) {
    const double distance = check::Distance(expected, actual);
    if (distance <= tolerance) return testing::AssertionSuccess();
    return testing::AssertionFailure() << "(" << actual[0] << ", " << actual[1] << ", " << actual[2] << ") is "
                                       << distance << " away from (" << expected[0] << ", " << expected[1] << ", "
                                       << expected[2] << ")";
}
