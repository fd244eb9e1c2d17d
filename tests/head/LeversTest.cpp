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

/// The rounding of a sum of two decimal numbers.
constexpr double rounding = 1e-14;

struct DefaultPosition {
    LeverQuery query;
    Triple offset; ///< of lever 0
    const char* name;
};
const DefaultPosition defaults[] = {
    {&RoundThePole::LeverCentrePosition, {30.3, 0.0, -32.25}, "lever centre"},
    {&RoundThePole::LeverLockedPosition, {30.3, -19.3, -36.55}, "locked ball"},
    {&RoundThePole::LeverLockedApproachPosition, {30.3, -24.3, -36.55}, "locked approach"},
    {&RoundThePole::LeverUnlockingCentreOfRotation, {30.3, -2.0, -36.25}, "unlocking centre"},
    {&RoundThePole::LeverUnlockedPosition, {30.3, 19.3, -36.55}, "unlocked ball"},
    {&RoundThePole::LeverUnlockedApproachPosition, {30.3, 24.3, -36.55}, "unlocked approach"},
    {&RoundThePole::LeverLockingCentreOfRotation, {30.3, 2.0, -36.25}, "locking centre"}};

TEST_F(Levers, AreAtTheirBuiltInOffsetsFromTheHeadCentre) {
    const Triple centre{128.0, -64.0, 512.0};
    SavedHead{.headCentre = centre}.LoadInto(head);
    for (const DefaultPosition& d : defaults) {
        EXPECT_TRUE(AreNear(At(d.query, 0), d.offset + centre, 1e-13)) << d.name;
        EXPECT_TRUE(AreNear(At(d.query, 1), Triple{-d.offset.x, d.offset.y, d.offset.z} + centre, 1e-13)) << d.name;
    }
}

TEST_F(Levers, AreExactlyAtTheirBuiltInOffsetsWhenTheHeadIsAtTheOrigin) {
    LoadAtOrigin();
    EXPECT_EQ(At(&RoundThePole::LeverCentrePosition, 0), (Triple{30.3, 0.0, -32.25}));
    EXPECT_EQ(At(&RoundThePole::LeverCentrePosition, 1), (Triple{-30.3, 0.0, -32.25}));
    EXPECT_EQ(At(&RoundThePole::LeverLockedPosition, 0), (Triple{30.3, -19.3, -32.25 + -4.3}));
    EXPECT_EQ(At(&RoundThePole::LeverLockedApproachPosition, 0), (Triple{30.3, -19.3 - 5.0, -32.25 + -4.3}));
    EXPECT_EQ(At(&RoundThePole::LeverUnlockedApproachPosition, 1), (Triple{-30.3, 19.3 + 5.0, -32.25 + -4.3}));
}

TEST_F(Levers, DifferOnlyInTheMirroredXOfTheirCentres) {
    Store("Lever Centre To Ball Centre X Offset", "1.25000");
    Store("Lever Centre To Ball Centre Y Offset", "-20.0");
    LoadAtOrigin();
    // The X offset from the lever centre to the ball is not mirrored.
    EXPECT_TRUE(AreNear(At(&RoundThePole::LeverLockedPosition, 0), {31.55, -20.0, -36.55}, rounding));
    EXPECT_TRUE(AreNear(At(&RoundThePole::LeverLockedPosition, 1), {-29.05, -20.0, -36.55}, rounding));
    EXPECT_TRUE(AreNear(At(&RoundThePole::LeverUnlockedPosition, 1), {-29.05, 20.0, -36.55}, rounding));
}

TEST_F(Levers, ReadTheirCentresFromTheSettings) {
    Store("Head Centre To Lever Centre X Offset", "31.0");
    LoadAtOrigin();
    for (const DefaultPosition& d : defaults) {
        EXPECT_TRUE(AreNear(At(d.query, 0), {31.0, d.offset[1], d.offset[2]}, rounding)) << d.name;
        EXPECT_TRUE(AreNear(At(d.query, 1), {-31.0, d.offset[1], d.offset[2]}, rounding)) << d.name;
    }
}

TEST_F(Levers, DoNotMirrorYAndZOfTheirCentres) {
    Store("Head Centre To Lever Centre X Offset", "31.0000");
    Store("Head Centre To Lever Centre Y Offset", "1.500");
    Store("Head Centre To Lever Centre Z Offset", "-40");
    LoadAtOrigin();
    EXPECT_EQ(At(&RoundThePole::LeverCentrePosition, 0), (Triple{31.0, 1.5, -40.0}));
    EXPECT_EQ(At(&RoundThePole::LeverCentrePosition, 1), (Triple{-31.0, 1.5, -40.0}));
}

TEST_F(Levers, MirrorTheYOfTheirBallsWhenUnlocked) {
    Store("Lever Centre To Ball Centre X Offset", "0.0000");
    Store("Lever Centre To Ball Centre Y Offset", "-20.0");
    LoadAtOrigin();
    for (const int lever : {0, 1}) {
        EXPECT_EQ(At(&RoundThePole::LeverLockedPosition, lever)[1], -20.0);
        EXPECT_EQ(At(&RoundThePole::LeverLockedApproachPosition, lever)[1], -25.0);
        EXPECT_EQ(At(&RoundThePole::LeverUnlockedPosition, lever)[1], 20.0);
        EXPECT_EQ(At(&RoundThePole::LeverUnlockedApproachPosition, lever)[1], 25.0);
        // The centres of rotation are offsets from the lever centre, not from the ball.
        EXPECT_EQ(At(&RoundThePole::LeverUnlockingCentreOfRotation, lever)[1], -2.0);
        EXPECT_EQ(At(&RoundThePole::LeverLockingCentreOfRotation, lever)[1], 2.0);
    }
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
    for (const DefaultPosition& d : defaults)
        for (const int side : {1, 2, 5, -1, 2147483647, -2147483647 - 1}) EXPECT_EQ(At(d.query, side), At(d.query, 1));
    EXPECT_EQ(At(&RoundThePole::LeverAxisOfRotation, 5), At(&RoundThePole::LeverAxisOfRotation, 1));
    EXPECT_EQ(At(&RoundThePole::LeverAxisOfRotation, -1), At(&RoundThePole::LeverAxisOfRotation, 1));
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
    EXPECT_TRUE(AreNear(At(&RoundThePole::LeverCentrePosition, 0), {30.3 * cosine, 15.15, -32.25}, 3 * rounding));
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
