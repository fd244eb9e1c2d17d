#pragma once

#include "tests/support/BuiltInHead.h"
#include "tools/model/Angles.h"

#include <gtest/gtest.h>

/// The effect of a dozen roundings of coordinates of some hundreds of millimetres.
inline constexpr double rounding = 1e-11;

/// The rounding to four decimals of numbers computed by hand, in three coordinates.
inline constexpr double printedDecimals = 0.0001;

inline testing::AssertionResult IsAt(const qmv40::model::Vector3& expected, const qmv40::model::Vector3& actual,
                                     double tolerance) {
    const double distance = qmv40::model::Distance(expected, actual);
    if (distance <= tolerance) return testing::AssertionSuccess();
    return testing::AssertionFailure() << "(" << actual.x << ", " << actual.y << ", " << actual.z << ") is " << distance
                                       << " away from (" << expected.x << ", " << expected.y << ", " << expected.z
                                       << ")";
}
