#include "tests/head/ReferenceCase.h"
#include "tests/planning/Planner.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <limits>

namespace {

constexpr double untouched = -777.25;

RequiredMoves UntouchedRecord() {
    RequiredMoves moves;
    std::array<double, numbersInAPlan> numbers{};
    numbers.fill(untouched);
    std::memcpy(&moves, numbers.data(), sizeof moves);
    return moves;
}

class Sequence : public Planning {};

TEST_F(Sequence, EachStepWritesItsOwnFieldsAndNoOther) {
    const CMaVector point(1.0, 2.0, 3.0);
    struct Case {
        const char* step;
        std::function<void(RequiredMoves&)> run;
        std::size_t first; ///< offset of the first field that the step writes, in bytes
        std::size_t end;   ///< offset of the first byte after its last field
    };
    const Case cases[] = {
        {"unlock", [&](RequiredMoves& m) { planner.CalculateUnlockMoves(m); }, 0, 128},
        {"rotate to peg", [&](RequiredMoves& m) { planner.CalculateRotateToPeg(m, point, point); }, 128, 184},
        {"engage with peg", [&](RequiredMoves& m) { planner.CalculateEngageWithPeg(m, point, point); }, 184, 256},
        {"index", [&](RequiredMoves& m) { planner.CalculateHeadIndexingMoves(m, 1, 2, point, point, point, point); },
         256, 424},
        {"disengage from peg", [&](RequiredMoves& m) { planner.CalculateDisengageFromPeg(m, point); }, 424, 472},
        {"rotate to lock lever", [&](RequiredMoves& m) { planner.CalculateRotateToLockLeverMoves(m, point, 45, 90); },
         472, 528},
        {"lock", [&](RequiredMoves& m) { planner.CalculateLockMoves(m, 45, 90); }, 528, 680}};
    for (const Case& c : cases) {
        RequiredMoves record = UntouchedRecord();
        c.run(record);
        const auto numbers = NumbersOf(record);
        for (std::size_t i = 0; i < numbers.size(); ++i) {
            const bool own = i * sizeof(double) >= c.first && i * sizeof(double) < c.end;
            EXPECT_EQ(numbers[i] != untouched, own) << c.step << ": " << NameOfNumber(i);
        }
    }
}

TEST_F(Sequence, FillsEveryFieldEvenWhenTheHeadStaysWhereItIs) {
    for (const double b : {-180.0, 0.0, 180.0}) {
        planner.StandAt(0.0, b);
        const auto numbers = NumbersOf(planner.Plan(0.0, b, UntouchedRecord()));
        for (std::size_t i = 0; i < numbers.size(); ++i) {
            EXPECT_NE(numbers[i], untouched) << NameOfNumber(i);
            EXPECT_TRUE(std::isfinite(numbers[i])) << NameOfNumber(i);
        }
    }
}

TEST_F(Sequence, CombinesTheStepsForCurrentAnglesAndTarget) {
    LoadWorkedHead(30.0);
    planner.StandAt(30.0, -45.0);
    const RequiredMoves plan = planner.Plan(75.0, 120.0);
    const RoundThePole& head = planner.Head();
    const auto approach = [&](double a, double b) {
        return Answer([&](CMaVector& out) { head.ApproachPosition(a, b, 10.0, out); });
    };
    const auto aAxis = [&](double b) { return Answer([&](CMaVector& out) { head.RotatedAAxis(b, out); }); };
    EXPECT_EQ(TripleOf(plan.ApproachPeg), approach(30.0, -45.0));
    EXPECT_EQ(TripleOf(plan.EngageWithPeg), Answer([&](CMaVector& out) { head.EngagementPosition(30.0, -45.0, out); }));
    EXPECT_EQ(TripleOf(plan.DisengageFromPeg), approach(75.0, 120.0));
    EXPECT_EQ(VectorOf(plan.IntermediateAPosition), aAxis(-45.0));
    EXPECT_EQ(VectorOf(plan.MoveToBPosition), (Triple{0.0, 0.0, 1.0}));
    EXPECT_EQ(VectorOf(plan.MoveToAPosition), aAxis(120.0));
    for (const ArcData& arc : {plan.IntermediateAPosition, plan.MoveToBPosition, plan.MoveToAPosition})
        EXPECT_EQ(OriginOf(arc), workedCentre);
    // The head is unlocked at the lever of the current position (1) and locked at the lever of the target (0).
    EXPECT_EQ(TripleOf(plan.EngageWithUnLockLever), AnswerFor(head, &RoundThePole::LeverLockedPosition, 1));
    EXPECT_EQ(TripleOf(plan.EngageWithLockLever), AnswerFor(head, &RoundThePole::LeverUnlockedPosition, 0));
}

TEST_F(Sequence, CrossesAtTheSafeHeight) {
    for (int a = 0; a <= 90; a += 45)
        for (int b = -180; b <= 180; b += 60) {
            planner.StandAt(a, b);
            const RequiredMoves plan = planner.Plan(90.0 - a, -b);
            for (const XYZData& high : {plan.DisengageFromUnLockLever, plan.MoveToPegAtSafeZ,
                                        plan.DisengageFromPegToSafeZ, plan.MoveToLockLeverAtSafeZ})
                EXPECT_EQ(high.ZPosition, workedSafeZ);
        }
}

TEST_F(Sequence, GivesTheSameOutputForTheSameInput) {
    planner.StandAt(30.0, -45.0);
    const auto first = NumbersOf(planner.Plan(75.0, 120.0));
    planner.Plan(0.0, -180.0);
    EXPECT_EQ(NumbersOf(planner.Plan(75.0, 120.0)), first);
}

class ReferencePlans : public ReferenceHeadTest {
protected:
    double AgreementOf(const std::string& number) const {
        if (number.ends_with("RotationAngle")) return angleAgreement;
        return number.ends_with("RotationVector") ? agreement : LengthAgreement();
    }
    void Compare(const RequiredMoves& actual, const RequiredMoves& expected) const {
        const auto numbers = NumbersOf(actual);
        const auto reference = NumbersOf(expected);
        for (std::size_t i = 0; i < numbers.size(); ++i)
            EXPECT_NEAR(numbers[i], reference[i], AgreementOf(NameOfNumber(i))) << NameOfNumber(i);
    }

    Planner planner;
};

TEST_P(ReferencePlans, AgreeInEveryNumber) {
    ASSERT_EQ(Computing(planner.Head(), GetParam().aAxisPoints, GetParam().bAxisPoints).code, S_OK);
    ASSERT_FALSE(GetParam().plans.empty());
    for (const ReferenceHead::Plan& plan : GetParam().plans) {
        SCOPED_TRACE(testing::Message() << plan.from.a << ' ' << plan.from.b << " to " << plan.to.a << ' '
                                        << plan.to.b);
        planner.StandAt(plan.from.a, plan.from.b);
        Compare(planner.Plan(plan.to.a, plan.to.b), plan.moves);
    }
}

INSTANTIATE_TEST_SUITE_P(All, ReferencePlans, testing::ValuesIn(LoadReferenceHeads()), TestNameOf);

} // namespace
