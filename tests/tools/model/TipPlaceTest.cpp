#include "tools/model/TipPlace.h"
#include "tests/support/IdealHead.h"
#include "tools/check/AllPairs.h"

#include <gtest/gtest.h>
#include <random>

using namespace qmv40;

namespace {

using model::HeadAngles;
using model::Measured;
using model::Vector3;

constexpr unsigned seed = 20261122;
/// Degrees and mm: the rounding error of an iteration for two angles, at coordinates of some hundred millimetres.
constexpr double fitTolerance = 1e-7;

/// A head with a locked-to-unlocked offset other than the built-in one, at machine coordinates of hundreds of mm.
model::HeadModel OtherHead(double mountedTurn) {
    model::HeadDimensions dimensions{
        {-6.95, 24.0, -11.5}, {30.3, 0.0, -32.25}, {0.0, -19.3, -4.3}, {0.0, 19.3, -4.3}, 135.0, 138.0};
    dimensions.lockedToUnlocked = {0.2, -0.3, -1.5};
    return {{412.5, -178.25, -655.0}, mountedTurn, dimensions};
}

TEST(PlaceOf, HasTheTipInTheCentreOfThePoleSphere) {
    const model::HeadModel head = IdealHead();
    const struct {
        HeadAngles angles;
        Vector3 tip;
        Vector3 place;
        const char* why;
    } cases[] = {
        {{0, 0}, {0, 0, -180}, {0, 0, 180}, "the stylus hangs straight down: the machine is above"},
        {{90, 0}, {0, 0, -180}, {0, 180, 0}, "A turns right-handed about -X: the stylus points to -Y"},
        {{90, 90}, {0, 0, -180}, {-180, 0, 0}, "B turns right-handed about Z: the stylus points to +X"},
        {{0, 90}, {20, 0, -180}, {0, -20, 180}, "a tip beside the axis turns with B"},
    };
    for (const auto& each : cases) {
        EXPECT_TRUE(IsAt(each.place, PlaceOf(head, each.angles, each.tip, Measured::Locked), rounding)) << each.why;
    }
}

TEST(PlaceOf, IsShiftedByTheSameOffsetAtAllAnglesWhenUnlocked) {
    const model::HeadModel head = OtherHead(30.0);
    for (const HeadAngles& angles : check::HeadPositions(0)) {
        const Vector3 locked = PlaceOf(head, angles, {3, 4, -100}, Measured::Locked);
        const Vector3 unlocked = PlaceOf(head, angles, {3, 4, -100}, Measured::Unlocked);
        EXPECT_TRUE(IsAt(locked + Vector3{0.2, -0.3, -1.5}, unlocked, rounding));
    }
}

TEST(AnglesAt, IsTheInverseOfPlaceOfAtEveryPosition) {
    std::mt19937_64 random(seed);
    std::uniform_real_distribution<double> side(-15.0, 15.0);
    std::uniform_real_distribution<double> turn(-180.0, 180.0);
    const std::vector<HeadAngles> positions = check::HeadPositions(0);
    ASSERT_EQ(175u, positions.size());
    for (const double length : {20.0, 60.0, 180.0, 300.0}) {
        for (const bool isStraight : {true, false}) {
            const model::HeadModel head = OtherHead(turn(random));
            const double x = side(random);
            const Vector3 tip = isStraight ? Vector3{0, 0, -length} : Vector3{x, side(random), -length};
            for (const Measured measured : {Measured::Locked, Measured::Unlocked}) {
                for (const HeadAngles& angles : positions) {
                    const Vector3 place = PlaceOf(head, angles, tip, measured);
                    const model::MeasuredAngles found = AnglesAt(head, place, tip, measured, positions);
                    SCOPED_TRACE(std::to_string(angles.a) + " " + std::to_string(angles.b) + " seed " +
                                 std::to_string(seed));
                    EXPECT_LE(found.offPlace, fitTolerance);
                    EXPECT_NEAR(angles.a, found.angles.a, fitTolerance);
                    const bool isHanging = isStraight && angles.a == 0.0;
                    const bool isHalfTurnOfB = std::abs(angles.b) == 180.0;
                    EXPECT_EQ(isHanging ? 25u : isHalfTurnOfB ? 2u : 1u, found.samePlace.size());
                    EXPECT_EQ(!isHanging, found.isBKnown);
                    if (isHanging) continue;
                    EXPECT_NEAR(0.0, model::Wrapped(angles.b - found.angles.b), fitTolerance);
                }
            }
        }
    }
}

TEST(AnglesAt, FindsTheAnglesOfAHeadBetweenItsPositions) {
    const model::HeadModel head = OtherHead(-3.0);
    const Vector3 tip{0, 0, -180};
    const std::vector<HeadAngles> positions = check::HeadPositions(0);
    for (const HeadAngles& angles : {HeadAngles{47.0, 92.0}, HeadAngles{30.2, -44.5}, HeadAngles{83.0, 7.0}}) {
        const Vector3 place = PlaceOf(head, angles, tip, Measured::Locked);
        const model::MeasuredAngles found = AnglesAt(head, place, tip, Measured::Locked, positions);
        EXPECT_NEAR(angles.a, found.angles.a, fitTolerance);
        EXPECT_NEAR(angles.b, found.angles.b, fitTolerance);
        EXPECT_NEAR(model::Distance(place, PlaceOf(head, found.nearest, tip, Measured::Locked)), found.offPlace,
                    rounding);
        EXPECT_LT(1.0, found.offPlace);
    }
}

TEST(AnglesAt, ListsAllPositionsWithTheTipInOnePlace) {
    // The tip is 45 degrees from straight down. A = 30 and A = 60 bring it to the same height on opposite sides.
    const model::HeadModel head = OtherHead(0.0);
    const Vector3 tip{0, 100, -100};
    const Vector3 place = PlaceOf(head, {30, 0}, tip, Measured::Locked);
    const model::MeasuredAngles found = AnglesAt(head, place, tip, Measured::Locked, check::HeadPositions(0));
    EXPECT_EQ(3u, found.samePlace.size()) << "A 30, B 0; A 60, B -180; A 60, B 180";
    EXPECT_TRUE(found.isBKnown);
}

} // namespace
