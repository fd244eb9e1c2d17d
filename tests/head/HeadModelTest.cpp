#include "tests/head/HeadChecks.h"
#include "tests/head/HeadTest.h"
#include "tests/head/SavedHead.h"
#include "tests/support/SimulatedHead.h"

#include <cstring>
#include <new>

namespace {

class HeadModel : public HeadTest {
protected:
    const SimulatedHead simulated{.pole = {312.5, -48.25, -610.0}, .mountingAngle = 12.0};
};

TEST_F(HeadModel, IsAtTheOriginWithIdealAxesWhenNew) {
    const RoundThePole head;
    EXPECT_EQ(TripleOf(head.HeadCentre()), (Triple{0.0, 0.0, 0.0}));
    EXPECT_EQ(TripleOf(head.AAxis()), (Triple{-1.0, 0.0, 0.0}));
    EXPECT_EQ(TripleOf(head.BAxis()), (Triple{0.0, 0.0, 1.0}));
    EXPECT_EQ(TripleOf(head.ApproachDirection()), (Triple{0.0, 1.0, 0.0}));
    EXPECT_EQ(TripleOf(head.DriveCupOffset()), (Triple{-6.95, 24.0, -11.5}));
}

TEST_F(HeadModel, HasNoPointsAndNoLeverOffsetsWhenNew) {
    const RoundThePole head;
    EXPECT_EQ(head.AAxisPoints().GetSize(), 0);
    EXPECT_EQ(head.BAxisPoints().GetSize(), 0);
    for (const int lever : {0, 1}) {
        for (const LeverPosition& position : leverPositions)
            EXPECT_EQ(AnswerFor(head, position.query, lever), (Triple{0.0, 0.0, 0.0})) << position.name;
        EXPECT_EQ(AnswerFor(head, &RoundThePole::LeverAxisOfRotation, lever), (Triple{0.0, 0.0, 0.0}));
    }
}

TEST_F(HeadModel, SetsAllNumbersToZeroWhenNew) {
    alignas(RoundThePole) unsigned char memory[sizeof(RoundThePole)];
    std::memset(memory, 0xA5, sizeof memory);
    RoundThePole* const head = new (memory) RoundThePole;
    EXPECT_EQ(head->RequiredRotationAroundZ(), 0.0);
    EXPECT_EQ(head->AAxisCaptureBPosition(), 0.0);
    EXPECT_EQ(head->SafePositionX(), 0.0);
    EXPECT_EQ(head->SafePositionY(), 0.0);
    EXPECT_EQ(head->SafePositionZ(), 0.0);
    head->~RoundThePole();
}

TEST_F(HeadModel, ReadsTheDriveCupOffsetWhenNewAndAtEachInitialisation) {
    Store("Head Centre To Drive Cup X Offset", "-7.25");
    RoundThePole head;
    EXPECT_EQ(TripleOf(head.DriveCupOffset()), (Triple{-7.25, 24.0, -11.5}));
    Store("Head Centre To Drive Cup X Offset", "-8.50");
    EXPECT_EQ(TripleOf(head.DriveCupOffset()), (Triple{-7.25, 24.0, -11.5}));
    head.InitialiseFixedGeometry();
    EXPECT_EQ(TripleOf(head.DriveCupOffset()), (Triple{-8.5, 24.0, -11.5}));
    Store("Head Centre To Drive Cup X Offset", "-9.75");
    SavedHead().LoadInto(head);
    EXPECT_EQ(TripleOf(head.DriveCupOffset()), (Triple{-9.75, 24.0, -11.5}));
}

TEST_F(HeadModel, KeepsItsBAxisVerticalWithATiltedBCircle) {
    // The B circle of this head is tilted by 5 degrees. Its axis is used for the head centre only.
    std::vector<Triple> tilted;
    for (int i = 0; i < 8; ++i) {
        const Triple onCircle = TurnedAboutZ({100.0, 0.0, 0.0}, 45.0 * i);
        const double tilt = 5.0 * 3.14159265358979323846 / 180.0;
        tilted.push_back({onCircle[0], std::cos(tilt) * onCircle[1], std::sin(tilt) * onCircle[1]});
    }
    RoundThePole head;
    ASSERT_EQ(Computing(head, simulated.ASet(45.0), ItemsAt(tilted, 90.0, 0.0)).code, S_OK);
    EXPECT_EQ(TripleOf(head.BAxis()), (Triple{0.0, 0.0, 1.0}));
}

TEST_F(HeadModel, PutsTheSafeHeightExactly35AboveTheHeadCentre) {
    RoundThePole head;
    for (const double z : {-610.0, 0.1, 1234.5678}) {
        SimulatedHead raised = simulated;
        raised.pole[2] = z;
        ASSERT_EQ(Computing(head, raised.ASet(45.0), raised.BSet(75.0)).code, S_OK);
        EXPECT_EQ(head.SafePositionZ(), head.HeadCentre()[2] + 35.0);
    }
}

TEST_F(HeadModel, KeepsTheLoadedSafeXAndYInAComputation) {
    RoundThePole head;
    ASSERT_EQ(Computing(head, simulated.ASet(45.0), simulated.BSet(75.0)).code, S_OK);
    EXPECT_EQ(head.SafePositionX(), 0.0);
    EXPECT_EQ(head.SafePositionY(), 0.0);
    SavedHead{.safePosition = {11.5, -22.25, 99.0}}.LoadInto(head);
    ASSERT_EQ(Computing(head, simulated.ASet(45.0), simulated.BSet(75.0)).code, S_OK);
    EXPECT_EQ(head.SafePositionX(), 11.5);
    EXPECT_EQ(head.SafePositionY(), -22.25);
}

TEST_F(HeadModel, TurnsItsDirectionsOnceForEachComputationOrLoad) {
    RoundThePole head;
    for (int i = 0; i < 3; ++i) {
        ASSERT_EQ(Computing(head, simulated.ASet(45.0), simulated.BSet(75.0)).code, S_OK);
        EXPECT_TRUE(AreNear(TripleOf(head.AAxis()), TurnedAboutZ({-1.0, 0.0, 0.0}, 12.0), 1e-12));
        SavedHead{.rotation = -70.0}.LoadInto(head);
        EXPECT_TRUE(AreNear(TripleOf(head.AAxis()), TurnedAboutZ({-1.0, 0.0, 0.0}, -70.0), 1e-15));
    }
}

TEST_F(HeadModel, ReturnsItsCurrentHeadCentreAndBAxis) {
    RoundThePole head;
    const CMaVector& centre = head.HeadCentre();
    const CMaVector& axis = head.BAxis();
    SavedHead{.headCentre = {1.0, 2.0, 3.0}}.LoadInto(head);
    EXPECT_EQ(TripleOf(centre), (Triple{1.0, 2.0, 3.0}));
    ASSERT_EQ(Computing(head, simulated.ASet(45.0), simulated.BSet(75.0)).code, S_OK);
    EXPECT_TRUE(AreNear(TripleOf(centre), simulated.pole, 1e-9));
    EXPECT_EQ(&axis, &head.BAxis());
    EXPECT_EQ(&centre, &head.HeadCentre());
}

TEST_F(HeadModel, IsRightAfterAFailureAndASuccessfulComputation) {
    RoundThePole head;
    EXPECT_EQ(Computing(head, simulated.ASet(45.0, 3), simulated.BSet(75.0)).code, QMV_E_TOO_FEW_POINTS);
    ASSERT_EQ(Computing(head, simulated.ASet(45.0), simulated.BSet(75.0)).code, S_OK);
    RoundThePole fresh;
    ASSERT_EQ(Computing(fresh, simulated.ASet(45.0), simulated.BSet(75.0)).code, S_OK);
    EXPECT_EQ(TripleOf(head.HeadCentre()), TripleOf(fresh.HeadCentre()));
    EXPECT_EQ(TripleOf(head.AAxis()), TripleOf(fresh.AAxis()));
    EXPECT_EQ(head.RequiredRotationAroundZ(), fresh.RequiredRotationAroundZ());
}

} // namespace
