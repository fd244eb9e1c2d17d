#include "interface/ErrorCodes.h"
#include "tests/support/PreparedCalculator.h"

#include <cmath>

/// A null pointer for an output or an array is refused, and nothing changes.

namespace {

class NullPointers : public PreparedCalculator {};

TEST_F(NullPointers, AreRefusedForFileNames) {
    const auto calculator = At(15.0, 30.0);
    const XYZData before = Pole(*calculator.Get());
    EXPECT_EQ(calculator->LoadHeadGeometryFromFile(nullptr), E_POINTER);
    EXPECT_EQ(calculator->SaveHeadGeometryToFile(nullptr), E_POINTER);
    EXPECT_EQ(Pole(*calculator.Get()), before);
}

TEST_F(NullPointers, AreRefusedForEachAngleAndNothingIsWritten) {
    const auto calculator = At(15.0, 30.0);
    double angle = 1.25;
    EXPECT_EQ(calculator->GetCurrentHeadPosition(nullptr, &angle), E_POINTER);
    EXPECT_EQ(calculator->GetCurrentHeadPosition(&angle, nullptr), E_POINTER);
    EXPECT_EQ(calculator->GetCurrentHeadPosition(nullptr, nullptr), E_POINTER);
    EXPECT_EQ(angle, 1.25);
    EXPECT_EQ(CurrentPosition(*calculator.Get()), (Position{15.0, 30.0}));
}

// CalculateMove throws all its failures.
TEST_F(NullPointers, AreRefusedForTheMovesWithAnException) {
    const auto calculator = At(15.0, 30.0);
    EXPECT_EQ(Plan(*calculator.Get(), 45.0, 90.0, nullptr).code, E_POINTER);
    EXPECT_EQ(CurrentPosition(*calculator.Get()), (Position{15.0, 30.0}));
}

TEST_F(NullPointers, AreRefusedForEachSetOfPoints) {
    const auto calculator = WithGeometry();
    const XYZData before = Pole(*calculator.Get());
    SimulatedHead elsewhere = Head();
    elsewhere.pole = {-1.0, -2.0, -3.0};
    AlignmentArray points(elsewhere.ASet(45.0));
    EXPECT_EQ(calculator->EnterHeadGeometry(nullptr, points.Address()), E_POINTER);
    EXPECT_EQ(calculator->EnterHeadGeometry(points.Address(), nullptr), E_POINTER);
    EXPECT_EQ(calculator->EnterHeadGeometry(nullptr, nullptr), E_POINTER);
    EXPECT_EQ(Pole(*calculator.Get()), before);
}

TEST_F(NullPointers, AreCheckedAfterTheFlagsAndTheTarget) {
    const auto fresh = CreateCalculator();
    EXPECT_EQ(Plan(*fresh.Get(), 0.0, 0.0, nullptr).code, QMV_E_NO_HEAD_GEOMETRY);
    EXPECT_EQ(fresh->GetStartPosition(nullptr), QMV_E_NO_HEAD_GEOMETRY);
    double angle = 1.25;
    EXPECT_EQ(fresh->GetCurrentHeadPosition(nullptr, nullptr), QMV_E_POSITION_UNKNOWN);
    EXPECT_EQ(fresh->GetCurrentHeadPosition(&angle, nullptr), QMV_E_POSITION_UNKNOWN);
    EXPECT_EQ(fresh->GetCurrentHeadPosition(nullptr, &angle), QMV_E_POSITION_UNKNOWN);
    EXPECT_EQ(angle, 1.25);

    const auto unplaced = WithGeometry();
    EXPECT_EQ(Plan(*unplaced.Get(), 7.0, 0.0, nullptr).code, QMV_E_POSITION_UNKNOWN);
    EXPECT_EQ(unplaced->GetStartPosition(nullptr), QMV_E_POSITION_UNKNOWN);

    const auto ready = At(15.0, 30.0);
    EXPECT_EQ(Plan(*ready.Get(), 7.0, 0.0, nullptr).code, QMV_E_INVALID_TARGET);
    EXPECT_EQ(Plan(*ready.Get(), 0.0, 195.0, nullptr).code, QMV_E_INVALID_TARGET);
    EXPECT_EQ(Plan(*ready.Get(), 45.0, 90.0, nullptr).code, E_POINTER);
    EXPECT_EQ(CurrentPosition(*ready.Get()), (Position{15.0, 30.0}));
}

TEST_F(NullPointers, AreRefusedForPositions) {
    const auto calculator = At(-0.0, -0.0);
    EXPECT_EQ(calculator->GetStartPosition(nullptr), E_POINTER);
    EXPECT_EQ(calculator->GetPoleSpherePosition(nullptr), E_POINTER);
    EXPECT_TRUE(std::signbit(CurrentPosition(*calculator.Get()).a)) << "the stored position must not be rounded";
}

TEST_F(NullPointers, DoNotMakeAGeometryAvailable) {
    const auto calculator = CreateCalculator();
    EXPECT_EQ(calculator->SetCurrentHeadPosition(0.0, 0.0), S_OK);
    EXPECT_EQ(calculator->LoadHeadGeometryFromFile(nullptr), E_POINTER);
    EXPECT_EQ(calculator->EnterHeadGeometry(nullptr, nullptr), E_POINTER);
    EXPECT_EQ(Plan(*calculator.Get(), 0.0, 0.0).code, QMV_E_NO_HEAD_GEOMETRY);
}

} // namespace
