#include "tests/head/HeadChecks.h"
#include "tests/head/HeadTest.h"
#include "tests/support/SimulatedHead.h"

#include <cmath>
#include <limits>

namespace {

using namespace failures;

const double notANumber = std::numeric_limits<double>::quiet_NaN();

class AlignmentData : public HeadTest {
protected:
    AlignmentPoints First(const AlignmentPoints& points, std::size_t count) const {
        return AlignmentPoints(points.begin(), points.begin() + static_cast<std::ptrdiff_t>(count));
    }

    /// The points, moved back by the shift of unlocking.
    static std::vector<Triple> WithoutShift(const AlignmentPoints& points, const Triple& shift) {
        std::vector<Triple> moved = PointsOf(points);
        for (Triple& point : moved) point = point - shift;
        return moved;
    }

    const SimulatedHead simulated{.pole = {100.0, -200.0, -300.0}};
    const AlignmentPoints aSet = simulated.ASet(45.0);
    const AlignmentPoints bSet = simulated.BSet(75.0);
    RoundThePole head;
};

TEST_F(AlignmentData, EachSetNeedsFourPointsAndTheASetIsReportedFirst) {
    const struct {
        std::size_t aCount, bCount;
        Failure expected;
    } cases[] = {{0, 7, tooFewA}, {3, 7, tooFewA}, {7, 0, tooFewB}, {7, 3, tooFewB}, {3, 3, tooFewA}};
    for (const auto& [aCount, bCount, expected] : cases) {
        SCOPED_TRACE(testing::Message() << aCount << " and " << bCount);
        ExpectFailure(Computing(head, First(aSet, aCount), First(bSet, bCount)), expected);
    }
    EXPECT_EQ(Computing(head, First(aSet, 4), First(bSet, 4)).code, S_OK);
}

TEST_F(AlignmentData, TheASetIsCheckedCompletelyBeforeTheBSet) {
    AlignmentPoints moved = aSet;
    moved.back().BPosition = 60.0;
    ExpectFailure(Computing(head, moved, First(bSet, 3)), bMoved);
}

TEST_F(AlignmentData, TheFixedAxisIsComparedWithoutTolerance) {
    struct Case {
        double other;
        const char* why;
    };
    for (const Case& c :
         {Case{std::nextafter(45.0, 90.0), "one bit above"}, Case{std::nextafter(45.0, 0.0), "one bit below"},
          Case{-45.0, "another sign"}, Case{notANumber, "not a number"}}) {
        SCOPED_TRACE(c.why);
        for (std::size_t i = 1; i < aSet.size(); ++i) {
            AlignmentPoints moved = aSet;
            moved[i].BPosition = c.other;
            ExpectFailure(Computing(head, moved, bSet), bMoved);
        }
    }
    for (const Case& c : {Case{std::nextafter(75.0, 90.0), "one bit above"}, Case{notANumber, "not a number"}}) {
        SCOPED_TRACE(c.why);
        AlignmentPoints moved = bSet;
        moved[2].APosition = c.other;
        ExpectFailure(Computing(head, aSet, moved), aMoved);
    }
}

TEST_F(AlignmentData, AFixedAxisThatIsNotANumberInEveryElementIsRefused) {
    AlignmentPoints a = aSet;
    AlignmentPoints b = bSet;
    for (HeadAlignmentDataItem& item : a) item.BPosition = notANumber;
    for (HeadAlignmentDataItem& item : b) item.APosition = notANumber;
    ExpectFailure(Computing(head, a, bSet), bMoved);
    ExpectFailure(Computing(head, aSet, b), aMoved);
}

TEST_F(AlignmentData, PlusAndMinusZeroAreTheSameFixedAngle) {
    AlignmentPoints a = simulated.ASet(0.0);
    a[3].BPosition = -0.0;
    EXPECT_EQ(Computing(head, a, bSet).code, S_OK);
}

TEST_F(AlignmentData, TheAngleOfTheTurningAxisIsNotChecked) {
    RoundThePole plain;
    ASSERT_EQ(Computing(plain, aSet, bSet).code, S_OK);
    AlignmentPoints a = aSet;
    AlignmentPoints b = bSet;
    for (HeadAlignmentDataItem& item : a) item.APosition = notANumber;
    b[0].BPosition = 1e300;
    b[1].BPosition = b[2].BPosition;
    ASSERT_EQ(Computing(head, a, b).code, S_OK);
    EXPECT_EQ(TripleOf(head.HeadCentre()), TripleOf(plain.HeadCentre()));
    EXPECT_EQ(head.RequiredRotationAroundZ(), plain.RequiredRotationAroundZ());
}

TEST_F(AlignmentData, StoredPointsAreTheMeasuredOnesWithoutTheShiftOfUnlocking) {
    // Bit for bit. The points are so far from their planes that a projection would change them.
    const AlignmentPoints noisyA = WithNoise(aSet, 0.5, 1), noisyB = WithNoise(bSet, 0.5, 2);
    const auto expectWithoutShift = [&](const Triple& shift) {
        ASSERT_EQ(Computing(head, noisyA, noisyB).code, S_OK);
        EXPECT_EQ(PointsOf(head.AAxisPoints()), WithoutShift(noisyA, shift));
        EXPECT_EQ(PointsOf(head.BAxisPoints()), WithoutShift(noisyB, shift));
    };
    expectWithoutShift({0.0, 0.0, -1.5}); // the built-in one
    Store("Locked To Unlocked X Offset", "0.1000");
    Store("Locked To Unlocked Y Offset", "-2.25");
    Store("Locked To Unlocked Z Offset", "0.7");
    expectWithoutShift({0.1, -2.25, 0.7});
}

TEST_F(AlignmentData, TheCallersArraysAreNotChanged) {
    AlignmentArray a(aSet);
    AlignmentArray b(bSet);
    head.ComputeGeometry(a.Address(), b.Address());
    const auto same = [](const AlignmentPoints& left, const AlignmentPoints& right) {
        return left.size() == right.size() &&
               std::memcmp(left.data(), right.data(), left.size() * sizeof(HeadAlignmentDataItem)) == 0;
    };
    EXPECT_TRUE(same(a.Items(), aSet));
    EXPECT_TRUE(same(b.Items(), bSet));
}

TEST_F(AlignmentData, TheCallersArraysAreLeftUnlocked) {
    AlignmentArray a(First(aSet, 3));
    AlignmentArray b(bSet);
    EXPECT_EQ(RaisedBy([&] { head.ComputeGeometry(a.Address(), b.Address()); }).code, QMV_E_TOO_FEW_POINTS);
    EXPECT_EQ(a.Get()->cLocks, 0U);
    EXPECT_EQ(b.Get()->cLocks, 0U);
}

TEST_F(AlignmentData, TheBAngleOfTheASetIsKeptEvenWhenTheBSetIsRefused) {
    ASSERT_EQ(Computing(head, simulated.ASet(-135.0), bSet).code, S_OK);
    EXPECT_EQ(head.AAxisCaptureBPosition(), -135.0);
    EXPECT_EQ(Computing(head, simulated.ASet(-45.0), First(bSet, 3)).code, QMV_E_TOO_FEW_POINTS);
    EXPECT_EQ(head.AAxisCaptureBPosition(), -45.0);
}

TEST_F(AlignmentData, ASecondComputationForgetsTheFirst) {
    ASSERT_EQ(Computing(head, simulated.ASet(45.0, 9), simulated.BSet(90.0, 11)).code, S_OK);
    ASSERT_EQ(Computing(head, aSet, bSet).code, S_OK);
    RoundThePole once;
    ASSERT_EQ(Computing(once, aSet, bSet).code, S_OK);
    EXPECT_EQ(PointsOf(head.AAxisPoints()), PointsOf(once.AAxisPoints()));
    EXPECT_EQ(PointsOf(head.BAxisPoints()), PointsOf(once.BAxisPoints()));
    EXPECT_EQ(TripleOf(head.HeadCentre()), TripleOf(once.HeadCentre()));
    EXPECT_EQ(TripleOf(head.AAxis()), TripleOf(once.AAxis()));
    EXPECT_EQ(TripleOf(head.DriveCupOffset()), TripleOf(once.DriveCupOffset()));
    EXPECT_EQ(AnswerFor(head, &RoundThePole::LeverLockedPosition, 0),
              AnswerFor(once, &RoundThePole::LeverLockedPosition, 0));
}

TEST_F(AlignmentData, AddingASetAppendsToWhatTheArrayHolds) {
    AlignmentArray a(aSet);
    CMaPointArray points = ArrayOf({{1.0, 2.0, 3.0}});
    head.AddDataToPointArrays(a.Address(), points);
    std::vector<Triple> expected = PointsOf(aSet);
    expected.insert(expected.begin(), {1.0, 2.0, 3.0});
    EXPECT_EQ(PointsOf(points), expected);
    EXPECT_EQ(a.Get()->cLocks, 0U);
}

TEST_F(AlignmentData, AddingASetOfOnePointAddsIt) {
    AlignmentArray a(First(aSet, 1));
    CMaPointArray points(0);
    head.AddDataToPointArrays(a.Address(), points);
    EXPECT_EQ(PointsOf(points), PointsOf(First(aSet, 1)));
}

TEST_F(AlignmentData, AnArrayThatCannotBeLockedOnceMoreIsRefused) {
    constexpr ULONG mostLocks = 0xFFFF;
    AlignmentArray a(aSet);
    AlignmentArray b(bSet);
    for (AlignmentArray* const locked : {&a, &b}) {
        locked->Get()->cLocks = mostLocks;
        ExpectFailure(RaisedBy([&] { head.ValidateSafeArrayData(a.Address(), b.Address()); }),
                      {E_UNEXPECTED, validatingArrays, unspecified, unspecified});
        ExpectFailure(RaisedBy([&] { head.ModifyDataForLockedPosition(locked->Address()); }),
                      {E_UNEXPECTED, L"RoundThePole::ModifyDataForLockedPosition", unspecified, unspecified});
        locked->Get()->cLocks = 0;
    }
}

TEST_F(AlignmentData, TheShiftDoesNotChangeTheAngles) {
    AlignmentArray a(aSet);
    head.ModifyDataForLockedPosition(a.Address());
    const AlignmentPoints shifted = a.Items();
    for (std::size_t i = 0; i < aSet.size(); ++i) {
        EXPECT_EQ(shifted[i].APosition, aSet[i].APosition);
        EXPECT_EQ(shifted[i].BPosition, aSet[i].BPosition);
        EXPECT_EQ(shifted[i].XPosition, aSet[i].XPosition);
        EXPECT_EQ(shifted[i].YPosition, aSet[i].YPosition);
        EXPECT_EQ(shifted[i].ZPosition, aSet[i].ZPosition + 1.5);
    }
    EXPECT_EQ(a.Get()->cLocks, 0U);
}

/// Arrays that do not hold one point of 40 bytes at every index from 0 to their upper bound.
TEST_F(AlignmentData, AnArrayOfAnotherShapeIsRefused) {
    using Points = AlignmentPoints;
    const struct {
        const char* why;
        AlignmentArray (*shaped)(const Points&);
        Failure expected = arrayOfAnotherShape;
    } cases[] = {
        {"no array", [](const Points&) { return AlignmentArray::Null(); }, noArray},
        {"no element at index 0", [](const Points& points) { return AlignmentArray::WithLowerBound(points, 1); }},
        {"three elements from index 1: the upper bound is 3, as of four points",
         [](const Points& points) { return AlignmentArray::WithLowerBound(Points(3, points[0]), 1); }},
        {"indices from 1,000,000",
         [](const Points& points) { return AlignmentArray::WithLowerBound(points, 1000000); }},
        {"no element, and an upper bound that wraps to the highest number",
         [](const Points&) { return AlignmentArray::WithLowerBound({}, std::numeric_limits<LONG>::min()); }},
        {"elements too small to be points",
         [](const Points& points) { return AlignmentArray::WithElementSize(points, 8); }},
        {"elements one byte short", [](const Points& points) { return AlignmentArray::WithElementSize(points, 39); }},
        {"elements larger than a point",
         [](const Points& points) { return AlignmentArray::WithElementSize(points, 48); }},
        {"two dimensions", [](const Points& points) { return AlignmentArray::WithDimensions(points, 2); }},
        {"three dimensions", [](const Points& points) { return AlignmentArray::WithDimensions(points, 3); }}};
    for (const auto& [why, shaped, expected] : cases) {
        SCOPED_TRACE(why);
        AlignmentArray a(aSet), b(bSet), otherA = shaped(aSet), otherB = shaped(bSet);
        ExpectFailure(RaisedBy([&] { head.ComputeGeometry(otherA.Address(), b.Address()); }), expected);
        ExpectFailure(RaisedBy([&] { head.ComputeGeometry(a.Address(), otherB.Address()); }), expected);
    }
}

TEST_F(AlignmentData, TooFewPointsAreReportedBeforeTheShape) {
    const AlignmentPoints three = First(aSet, 3);
    const AlignmentPoints two = First(aSet, 2);
    AlignmentArray cases[] = {AlignmentArray::WithElementSize(three, 48), AlignmentArray::WithDimensions(three, 2),
                              AlignmentArray::WithLowerBound(two, 1), AlignmentArray::WithLowerBound(aSet, -5)};
    for (AlignmentArray& a : cases) {
        AlignmentArray b(bSet);
        const Raised raised = RaisedBy([&] { head.ComputeGeometry(a.Address(), b.Address()); });
        ExpectFailure(raised, tooFewA);
    }
}

TEST_F(AlignmentData, AnArrayThatBeginsBelowZeroIsReadFromItsFirstElement) {
    // Seven elements from index -2: the upper bound is 4, so five points are used, and they are the first five stored.
    AlignmentArray a = AlignmentArray::WithLowerBound(aSet, -2);
    AlignmentArray b = AlignmentArray::WithLowerBound(bSet, -1);
    ASSERT_EQ(RaisedBy([&] { head.ComputeGeometry(a.Address(), b.Address()); }).code, S_OK);
    RoundThePole plain;
    ASSERT_EQ(Computing(plain, First(aSet, 5), First(bSet, 6)).code, S_OK);
    EXPECT_EQ(PointsOf(head.AAxisPoints()), PointsOf(plain.AAxisPoints()));
    EXPECT_EQ(PointsOf(head.BAxisPoints()), PointsOf(plain.BAxisPoints()));
}

TEST_F(AlignmentData, ARefusedSetLeavesIdealAxesAndNoPoints) {
    SimulatedHead turned = simulated;
    turned.mountingAngle = 20.0;
    ASSERT_EQ(Computing(head, turned.ASet(45.0), turned.BSet(75.0)).code, S_OK);
    const Triple centre = TripleOf(head.HeadCentre());
    const double rotation = head.RequiredRotationAroundZ();
    const Triple lever = AnswerFor(head, &RoundThePole::LeverLockedPosition, 0);
    ASSERT_GT(std::abs(head.AAxis()[1]), 0.1);

    EXPECT_EQ(Computing(head, First(aSet, 3), bSet).code, QMV_E_TOO_FEW_POINTS);
    EXPECT_EQ(TripleOf(head.AAxis()), (Triple{-1.0, 0.0, 0.0}));
    EXPECT_EQ(TripleOf(head.BAxis()), (Triple{0.0, 0.0, 1.0}));
    EXPECT_EQ(TripleOf(head.ApproachDirection()), (Triple{0.0, 1.0, 0.0}));
    EXPECT_EQ(TripleOf(head.DriveCupOffset()), (Triple{-6.95, 24.0, -11.5}));
    EXPECT_TRUE(PointsOf(head.AAxisPoints()).empty());
    EXPECT_TRUE(PointsOf(head.BAxisPoints()).empty());
    // There is no roll-back: the fields of later steps keep their old values.
    EXPECT_EQ(TripleOf(head.HeadCentre()), centre);
    EXPECT_EQ(head.RequiredRotationAroundZ(), rotation);
    EXPECT_EQ(AnswerFor(head, &RoundThePole::LeverLockedPosition, 0), lever);
}

} // namespace
