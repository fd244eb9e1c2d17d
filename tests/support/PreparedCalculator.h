#pragma once

#include "tests/support/AlignmentArray.h"
#include "tests/support/Calculator.h"
#include "tests/support/ErrorRecord.h"
#include "tests/support/SettingsFixture.h"
#include "tests/support/SimulatedHead.h"

#include <gtest/gtest.h>

/// Calculators in the states in which the tests begin. The head centre is (100, -200, 300), the head is mounted turned
/// by 10 degrees, and the A set is captured at B = 45, where the quadrant is unambiguous.
class PreparedCalculator : public testing::Test {
protected:
    SettingsFixture settings; // without a key at first: the built-in dimensions, not those of this machine

    static SimulatedHead Head() {
        SimulatedHead head;
        head.pole = {100.0, -200.0, 300.0};
        head.mountingAngle = 10.0;
        return head;
    }

    static HRESULT Enter(IQMVCalculator& calculator, const SimulatedHead& head = Head()) {
        AlignmentArray aAxisPoints(head.ASet(45.0));
        AlignmentArray bAxisPoints(head.BSet(60.0));
        return calculator.EnterHeadGeometry(aAxisPoints.Address(), bAxisPoints.Address());
    }

    /// A calculator with a geometry. The head's position is unknown.
    static qmv40::ComPointer<IQMVCalculator2> WithGeometry() {
        auto calculator = CreateCalculator();
        EXPECT_EQ(Enter(*calculator.Get()), S_OK);
        return calculator;
    }

    /// A calculator with a geometry and a position.
    static qmv40::ComPointer<IQMVCalculator2> At(double a, double b) {
        auto calculator = WithGeometry();
        EXPECT_EQ(calculator->SetCurrentHeadPosition(a, b), S_OK);
        return calculator;
    }

    /// The failure of a plan. Checks also that CalculateMove never returns a failure.
    static Raised Plan(IQMVCalculator& calculator, double a, double b, RequiredMoves* moves) {
        return RaisedBy([&] { EXPECT_EQ(calculator.CalculateMove(a, b, moves), S_OK); });
    }
    static Raised Plan(IQMVCalculator& calculator, double a, double b) {
        RequiredMoves moves{};
        return Plan(calculator, a, b, &moves);
    }

    struct Position {
        double a;
        double b;
        bool operator==(const Position&) const = default;
    };
    static Position CurrentPosition(IQMVCalculator& calculator) {
        Position position{-1.0, -1.0};
        EXPECT_EQ(calculator.GetCurrentHeadPosition(&position.a, &position.b), S_OK);
        return position;
    }
    static HRESULT PositionCode(IQMVCalculator& calculator) {
        Position position{};
        return calculator.GetCurrentHeadPosition(&position.a, &position.b);
    }

    static XYZData Pole(IQMVCalculator2& calculator) {
        XYZData pole{};
        EXPECT_EQ(calculator.GetPoleSpherePosition(&pole), S_OK);
        return pole;
    }
};

/// For a circle fit of exact points and some rotations: far above their rounding at these coordinates, and far below
/// the accuracy of any machine.
inline constexpr double geometryTolerance = 1e-9;

inline void ExpectNear(const XYZData& actual, const XYZData& expected, double tolerance = geometryTolerance) {
    EXPECT_NEAR(actual.XPosition, expected.XPosition, tolerance);
    EXPECT_NEAR(actual.YPosition, expected.YPosition, tolerance);
    EXPECT_NEAR(actual.ZPosition, expected.ZPosition, tolerance);
}

inline bool operator==(const XYZData& left, const XYZData& right) {
    return left.XPosition == right.XPosition && left.YPosition == right.YPosition && left.ZPosition == right.ZPosition;
}
