#pragma once

#include "tests/support/BuiltInHead.h"
#include "tools/model/Angles.h"

#include <gtest/gtest.h>

/// For machine coordinates of some hundreds of millimetres with a dozen roundings each.
inline constexpr double rounding = 1e-11;

/// Worked numbers that are printed with four decimals, in each of three coordinates.
inline constexpr double printedDecimals = 0.0001;

inline testing::AssertionResult IsAt(const qmv40::model::Vector3& expected, const qmv40::model::Vector3& actual,
                                     double tolerance) {
    const double distance = qmv40::model::Distance(expected, actual);
    if (distance <= tolerance) return testing::AssertionSuccess();
    return testing::AssertionFailure() << "(" << actual.x << ", " << actual.y << ", " << actual.z << ") is " << distance
                                       << " away from (" << expected.x << ", " << expected.y << ", " << expected.z
                                       << ")";
}
