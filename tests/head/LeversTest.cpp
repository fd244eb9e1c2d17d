#include "tests/head/HeadChecks.h"
#include "tests/head/HeadTest.h"
#include "tests/head/SavedHead.h"

namespace {

class Levers : public HeadTest {
protected:
    /// Loads a head with its centre at the origin, not turned: every position is equal to its offset.
    void LoadAtOrigin() { SavedHead().LoadInto(head); }
    Triple At(LeverQuery query, int lever) const { return AnswerFor(head, query, lever); }

    RoundThePole head;
};

TEST_F(Levers, AreAtTheirBuiltInOffsetsFromTheHeadCentre) {
    constexpr double rounding = 1e-13; // of the sum with the head centre
    const Triple centre{128.0, -64.0, 512.0};
    RoundThePole elsewhere;
    LoadAtOrigin();
    SavedHead{.headCentre = centre}.LoadInto(elsewhere);
    for (const LeverPosition& position : leverPositions)
        for (const int lever : {0, 1}) {
            const Triple offset = position.OffsetOf(lever);
            EXPECT_EQ(At(position.query, lever), offset) << position.name;
            EXPECT_TRUE(AreNear(AnswerFor(elsewhere, position.query, lever), offset + centre, rounding))
                << position.name;
        }
}

TEST_F(Levers, MirrorXOfTheirCentresByTheSideAndYOfTheirBallsWhenUnlocked) {
    // No other number is mirrored, in particular not X from the lever centre to the ball. The centres of rotation are
    // offsets from the lever centre, not from the ball.
    Store("Head Centre To Lever Centre X Offset", "31.0000");
    Store("Head Centre To Lever Centre Y Offset", "1.500");
    Store("Head Centre To Lever Centre Z Offset", "-40");
    Store("Lever Centre To Ball Centre X Offset", "1.25000");
    Store("Lever Centre To Ball Centre Y Offset", "-20.0");
    LoadAtOrigin();
    const Triple offsets[] = {{0.0, 0.0, 0.0},    {1.25, -20.0, -4.3}, {1.25, -25.0, -4.3}, {0.0, -2.0, -4.0},
                              {1.25, 20.0, -4.3}, {1.25, 25.0, -4.3},  {0.0, 2.0, -4.0}};
    constexpr double rounding = 1e-14; // of a sum of decimal numbers
    for (std::size_t i = 0; i < std::size(offsets); ++i)
        for (const int lever : {0, 1})
            EXPECT_TRUE(AreNear(At(leverPositions[i].query, lever),
                                offsets[i] + Triple{lever == 0 ? 31.0 : -31.0, 1.5, -40.0}, rounding))
                << leverPositions[i].name;
}

TEST_F(Levers, UseNewSettingsFromTheNextLoadOn) {
    LoadAtOrigin();
    Store("Head Centre To Lever Centre X Offset", "31.0");
    EXPECT_EQ(At(&RoundThePole::LeverCentrePosition, 0)[0], 30.3);
    LoadAtOrigin();
    EXPECT_EQ(At(&RoundThePole::LeverCentrePosition, 0)[0], 31.0);
}

TEST_F(Levers, WithAnySideExcept0AreTheNegativeLever) {
    LoadAtOrigin();
    for (const int side : {1, 2, 5, -1, 2147483647, -2147483647 - 1}) {
        for (const LeverPosition& position : leverPositions)
            EXPECT_EQ(At(position.query, side), position.OffsetOf(1)) << position.name;
        EXPECT_EQ(At(&RoundThePole::LeverAxisOfRotation, side), (Triple{-1.0, 0.0, 0.0}));
    }
}

TEST_F(Levers, HaveAxesThatAreDirectionsAndNotPositions) {
    SavedHead{.headCentre = {128.0, -64.0, 512.0}}.LoadInto(head);
    EXPECT_EQ(At(&RoundThePole::LeverAxisOfRotation, 0), (Triple{1.0, 0.0, 0.0}));
    EXPECT_EQ(At(&RoundThePole::LeverAxisOfRotation, 1), (Triple{-1.0, 0.0, 0.0}));
}

TEST_F(Levers, AreTurnedWithTheirAxesInALoadedHead) {
    SavedHead{.rotation = 30.0}.LoadInto(head);
    const double cosine = std::sqrt(0.75);
    EXPECT_TRUE(AreNear(At(&RoundThePole::LeverAxisOfRotation, 0), {cosine, 0.5, 0.0}, 1e-15));
    EXPECT_TRUE(AreNear(At(&RoundThePole::LeverAxisOfRotation, 1), {-cosine, -0.5, 0.0}, 1e-15));
    EXPECT_TRUE(AreNear(At(&RoundThePole::LeverCentrePosition, 0), {30.3 * cosine, 15.15, -32.25}, 3e-14));
    EXPECT_NE(At(&RoundThePole::LeverAxisOfRotation, 0), (Triple{1.0, 0.0, 0.0}));
}

TEST_F(Levers, HaveConstantsThatNoSettingChanges) {
    Store("Head Centre To Lever Centre X Offset", "77.000");
    Store("Head Centre To Lever Centre Y Offset", "77.00");
    Store("Lever Centre To Ball Centre X Offset", "77.000");
    Store("Lever Centre To Ball Centre Y Offset", "77.00");
    EXPECT_EQ(TripleOf(*head.GetLeverLockedApproachOffset()), (Triple{0.0, -5.0, 0.0}));
    EXPECT_EQ(TripleOf(*head.GetLeverUnlockedApproachOffset()), (Triple{0.0, 5.0, 0.0}));
    EXPECT_EQ(TripleOf(*head.GetLeverUnlockingCentreOfRotation()), (Triple{0.0, -2.0, -4.0}));
    EXPECT_EQ(TripleOf(*head.GetLeverLockingCentreOfRotation()), (Triple{0.0, 2.0, -4.0}));
}

TEST_F(Levers, MirrorTheCentreBySideAndTheBallByState) {
    Store("Head Centre To Lever Centre X Offset", "31");
    Store("Lever Centre To Ball Centre X Offset", "0.000");
    Store("Lever Centre To Ball Centre Y Offset", "-20");
    const auto centre = [this](int side) {
        return Answer([&](CMaVector& out) { head.GetHeadCentreToLeverCentreOffset(side, out); });
    };
    const auto ball = [this](int state) {
        return Answer([&](CMaVector& out) { head.GetLeverCentreToBallCentreOffset(state, out); });
    };
    EXPECT_EQ(centre(0), (Triple{31.0, 0.0, -32.25}));
    for (const int side : {1, 7, -3}) EXPECT_EQ(centre(side), (Triple{-31.0, 0.0, -32.25}));
    EXPECT_EQ(ball(0), (Triple{0.0, -20.0, -4.3}));
    for (const int state : {1, 7, -3}) EXPECT_EQ(ball(state), (Triple{0.0, 20.0, -4.3}));
}

TEST_F(Levers, ReadTheirRotationsFromTheSettingsAtEachCall) {
    EXPECT_EQ(head.GetLockedToUnlockedLeverRotation(), 135.0);
    EXPECT_EQ(head.GetUnlockedToLockedLeverRotation(), 138.0);
    Store("Locked To Unlocked Lever Rotation", "120");
    Store("UnLocked To locked Lever Rotation", "121.5");
    EXPECT_EQ(head.GetLockedToUnlockedLeverRotation(), 120.0);
    EXPECT_EQ(head.GetUnlockedToLockedLeverRotation(), 121.5);
}

} // namespace
