#include "maths/ElementaryFunctions.h"
#include "tests/planning/Planner.h"

#include <cmath>
#include <limits>

namespace {

/// 180 over pi, with pi shortened to 14 decimals. The shortened factor is required: most angles differ by it in their
/// last digits.
constexpr double factor = 57.29577951308238;

class Pole : public Planning {
protected:
    /// The angle from the X axis to (x, y). The dot product is exactly x, the cross product exactly y.
    double AngleTo(double x, double y) const {
        return planner.CalculateAngleAndDirection(CMaVector(1.0, 0.0, 0.0), CMaVector(x, y, 0.0));
    }
    Triple Location() const {
        Triple pole{};
        planner.CalculatePoleLocation(pole[0], pole[1], pole[2]);
        return pole;
    }
};

TEST_F(Pole, IsMidwayBetweenTheTwoLeverCentres) {
    EXPECT_TRUE(AreNear(Location(), FromCentre(0.0, 0.0, -32.25), workedRounding));
    LoadWorkedHead(77.0);
    EXPECT_TRUE(AreNear(Location(), FromCentre(0.0, 0.0, -32.25), workedRounding));
}

TEST_F(Pole, UsesTheLeverCentresOfTheSettings) {
    Store("Head Centre To Lever Centre X Offset", "31.0000");
    Store("Head Centre To Lever Centre Y Offset", "1.500");
    Store("Head Centre To Lever Centre Z Offset", "-40");
    LoadWorkedHead();
    EXPECT_TRUE(AreNear(Location(), FromCentre(0.0, 1.5, -40.0), workedRounding));
}

TEST_F(Pole, IsTheFirstCentrePlusHalfTheDifferenceBitForBit) {
    int meanWouldShow = 0;
    for (int i = 1; i <= 40; ++i) {
        SavedHead{.headCentre = {i * 1.2345, i * -7.65432, i * 0.12345}, .rotation = i * 7.77}.LoadInto(planner.Head());
        const Triple positive = AnswerFor(planner.Head(), &RoundThePole::LeverCentrePosition, 0);
        const Triple negative = AnswerFor(planner.Head(), &RoundThePole::LeverCentrePosition, 1);
        Triple expected{};
        Triple mean{};
        for (std::size_t c = 0; c < 3; ++c) {
            expected[c] = positive[c] + (negative[c] - positive[c]) / 2.0;
            mean[c] = (positive[c] + negative[c]) / 2.0;
        }
        EXPECT_EQ(Location(), expected) << i;
        meanWouldShow += expected != mean;
    }
    EXPECT_GT(meanWouldShow, 0); // otherwise the inputs do not distinguish the two formulas
}

TEST_F(Pole, MeasuresAnglesCounterClockwiseSeenFromAbove) {
    struct Case {
        double x;
        double y;
        double angle;
        const char* why;
    };
    for (const Case& c :
         {Case{1.0, 0.0, 0.0, "the same direction"}, Case{5.0, 0.0, 0.0, "the same direction, another length"},
          Case{3.0, 3.0, 45.0, "first quadrant"}, Case{0.0, 2.0, 90.0, "perpendicular: the quotient is infinite"},
          Case{-3.0, 3.0, 135.0, "second quadrant"}, Case{-4.0, 0.0, 180.0, "opposite is 180, never -180"},
          Case{-3.0, -3.0, -135.0, "third quadrant"}, Case{0.0, -2.0, -90.0, "perpendicular, clockwise"},
          Case{3.0, -3.0, -45.0, "fourth quadrant"}, Case{std::sqrt(0.75), 0.5, 30.0, "thirty degrees"},
          Case{-0.5, std::sqrt(0.75), 120.0, "a hundred and twenty"}})
        EXPECT_NEAR(AngleTo(c.x, c.y), c.angle, 2e-13) << c.why;
}

TEST_F(Pole, MeasuresFromAnyDirectionOfAnyLength) {
    for (int from = -180; from <= 180; from += 20)
        for (int turn = -175; turn <= 175; turn += 25) {
            const Triple first = TurnedAboutZ({0.7, 0.0, 0.0}, from);
            const Triple second = TurnedAboutZ({130.0, 0.0, 0.0}, from + turn);
            EXPECT_NEAR(planner.CalculateAngleAndDirection(MaVectorOf(first), MaVectorOf(second)), turn, 1e-12);
        }
}

TEST_F(Pole, MeasuresOppositeDirectionsAs180OnBothSidesOfZero) {
    EXPECT_EQ(AngleTo(-1.0, 0.0), 180.0);
    // A cross product of minus zero is not below zero.
    EXPECT_EQ(planner.CalculateAngleAndDirection(CMaVector(1.0, -0.0, 0.0), CMaVector(-1.0, -0.0, 0.0)), 180.0);
}

TEST_F(Pole, ConvertsTheArctangentWithTheShortenedFactor) {
    // The arctangent of 1 is 0.7853981633974483. Times the exact factor it is 45; times the required factor it is not.
    EXPECT_EQ(AngleTo(1.0, 1.0), 45.00000000000004);
    EXPECT_EQ(AngleTo(1.0, -1.0), -45.00000000000004);
    EXPECT_EQ(AngleTo(-1.0, 1.0), 134.99999999999994);
    EXPECT_EQ(AngleTo(-1.0, -1.0), -134.99999999999994);
    EXPECT_EQ(AngleTo(0.0, 1.0), 90.00000000000009);
    EXPECT_EQ(AngleTo(0.0, -1.0), -90.00000000000009);
}

TEST_F(Pole, UsesTheArctangentOfTheQuotient) {
    int twoArgumentsWouldShow = 0;
    for (int x = 1; x <= 60; ++x)
        for (int y = 1; y <= 60; ++y) {
            // The component's arctangent, because C libraries differ in the last bit. It has its own tests.
            const double quotient =
                std::abs(qmv40::ArcTangent(static_cast<double>(y) / static_cast<double>(x)) * factor);
            EXPECT_EQ(AngleTo(x, y), quotient) << x << ' ' << y;
            EXPECT_EQ(AngleTo(-x, y), 180.0 - quotient) << x << ' ' << y;
            EXPECT_EQ(AngleTo(-x, -y), -(180.0 - quotient)) << x << ' ' << y;
            EXPECT_EQ(AngleTo(x, -y), -quotient) << x << ' ' << y;
            twoArgumentsWouldShow += quotient != std::atan2(static_cast<double>(y), static_cast<double>(x)) * factor;
        }
    EXPECT_GT(twoArgumentsWouldShow, 0); // otherwise the inputs do not distinguish the two arctangents
}

TEST_F(Pole, MeasuresNotANumberForADirectionOfLength0) {
    const CMaVector nowhere(0.0, 0.0, 0.0);
    const CMaVector somewhere(1.0, 2.0, 0.0);
    EXPECT_TRUE(std::isnan(planner.CalculateAngleAndDirection(nowhere, somewhere)));
    EXPECT_TRUE(std::isnan(planner.CalculateAngleAndDirection(somewhere, nowhere)));
    EXPECT_TRUE(std::isnan(planner.CalculateAngleAndDirection(nowhere, nowhere)));
    // The same between directions so long that both products overflow. The arctangent of two arguments would give 45
    // degrees.
    EXPECT_TRUE(
        std::isnan(planner.CalculateAngleAndDirection(CMaVector(1e200, 0.0, 0.0), CMaVector(1e200, 1e200, 0.0))));
}

} // namespace
