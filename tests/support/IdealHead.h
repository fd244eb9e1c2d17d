#pragma once

#include "tools/model/Angles.h"
#include "tools/model/HeadModel.h"

#include <gtest/gtest.h>

/// A head with the built-in dimensions, as docs/conventions.md shows it: the pole sphere at the origin.
inline qmv40::model::HeadModel IdealHead(double mountedTurn = 0.0,
                                         const qmv40::model::Vector3& pole = {0.0, 0.0, 0.0}) {
    return {pole,
            mountedTurn,
            {{-6.95, 24.0, -11.5}, {30.3, 0.0, -32.25}, {0.0, -19.3, -4.3}, {0.0, 19.3, -4.3}, 135.0, 138.0}};
}

/// A machine's coordinates of some hundreds of millimetres, a dozen roundings each.
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
