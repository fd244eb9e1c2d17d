#include "calculator/CQMVCalculator.h"
#include "interface/ErrorCodes.h"
#include "maths/GeometryError.h"
#include "server/CreatableObjects.h"
#include "tests/support/AlignmentArray.h"
#include "tests/support/ErrorRecord.h"
#include "tests/support/SimulatedHead.h"

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <string>
#include <vector>

using namespace qmv40;

/// The order in which a plan queries the head and the settings, and the fields that it has written when a query fails.
/// This program replaces the head's queries by its own: they record the calls, return numbers that identify them, and
/// fail on request.

namespace {

struct Recorder {
    std::vector<std::string> queries;
    std::string failing; ///< this query fails
} recorder;

std::string QueryText(const std::string& name, const std::vector<double>& arguments) {
    std::string text = name;
    for (const double argument : arguments) text += ' ' + std::to_string(static_cast<int>(argument));
    return text;
}

void RecordQuery(const std::string& query) {
    recorder.queries.push_back(query);
    if (query == recorder.failing) throw GeometryError(GeometryError::Reason::Impossible);
}

void ReturnNumbers(const std::string& query, CMaVector& out) {
    RecordQuery(query);
    const auto number = static_cast<double>(recorder.queries.size());
    out = CMaVector(number, number * number, -number);
}

} // namespace

void RoundThePole::ApproachPosition(double a, double b, double distance, CMaVector& out) const {
    ReturnNumbers(QueryText("approach", {a, b, distance}), out);
}
void RoundThePole::EngagementPosition(double a, double b, CMaVector& out) const {
    ReturnNumbers(QueryText("engagement", {a, b}), out);
}
void RoundThePole::RotatedAAxis(double b, CMaVector& out) const { ReturnNumbers(QueryText("A axis", {b}), out); }

void RoundThePole::LeverCentrePosition(int lever, CMaVector& out) const {
    ReturnNumbers(QueryText("lever centre", {double(lever)}), out);
}
void RoundThePole::LeverLockedPosition(int lever, CMaVector& out) const {
    ReturnNumbers(QueryText("locked", {double(lever)}), out);
}
void RoundThePole::LeverLockedApproachPosition(int lever, CMaVector& out) const {
    ReturnNumbers(QueryText("locked approach", {double(lever)}), out);
}
void RoundThePole::LeverUnlockingCentreOfRotation(int lever, CMaVector& out) const {
    ReturnNumbers(QueryText("unlocking centre", {double(lever)}), out);
}
void RoundThePole::LeverUnlockedPosition(int lever, CMaVector& out) const {
    ReturnNumbers(QueryText("unlocked", {double(lever)}), out);
}
void RoundThePole::LeverUnlockedApproachPosition(int lever, CMaVector& out) const {
    ReturnNumbers(QueryText("unlocked approach", {double(lever)}), out);
}
void RoundThePole::LeverLockingCentreOfRotation(int lever, CMaVector& out) const {
    ReturnNumbers(QueryText("locking centre", {double(lever)}), out);
}
void RoundThePole::LeverAxisOfRotation(int which, CMaVector& out) const {
    ReturnNumbers(QueryText("lever axis", {double(which)}), out);
}

namespace qmv40 {

FixedOffset ReadFixedOffset(HeadOffset, int) { return {}; }
double ReadFixedRotation(HeadOffset offset) {
    const bool isUnlocking = offset == HeadOffset::UnlockingRotation;
    RecordQuery(isUnlocking ? "unlocking rotation" : "locking rotation");
    return isUnlocking ? 135.0 : 138.0;
}

} // namespace qmv40

namespace {

constexpr double notWritten = -777.0;

using Numbers = std::array<double, sizeof(RequiredMoves) / sizeof(double)>;

RequiredMoves UnwrittenMoves() {
    Numbers numbers{};
    numbers.fill(notWritten);
    return std::bit_cast<RequiredMoves>(numbers);
}

bool IsWritten(const XYZData& position) { return position.XPosition != notWritten; }

class OpenCalculator : public CQMVCalculator {
public:
    using CQMVCalculator::currentA;

protected:
    ~OpenCalculator() = default;
};

class StepOrder : public testing::Test {
protected:
    /// From A = 45, B = 90 to A = 0, B = 30: the levers of the two ends are 0 and 1.
    void SetUp() override {
        AlignmentArray aSet(SimulatedHead().ASet(45.0));
        AlignmentArray bSet(SimulatedHead().BSet(60.0));
        ASSERT_EQ(calculator.EnterHeadGeometry(aSet.Address(), bSet.Address()), S_OK);
        ASSERT_EQ(calculator.SetCurrentHeadPosition(45.0, 90.0), S_OK);
        recorder = {};
    }
    void TearDown() override { recorder = {}; }

    Raised PlanWithFailing(const std::string& query) {
        recorder = {.queries = {}, .failing = query};
        moves = UnwrittenMoves();
        return RaisedBy([&] { calculator.CalculateMove(0.0, 30.0, &moves); });
    }

    StandaloneObject<OpenCalculator> calculator;
    RequiredMoves moves = UnwrittenMoves();
};

TEST_F(StepOrder, IsTheRequiredOne) {
    EXPECT_EQ(PlanWithFailing("").code, S_OK);
    const std::vector<std::string> required{
        // of the whole plan
        "approach 45 90 10",
        "engagement 45 90",
        "approach 0 30 10",
        "A axis 90",
        "A axis 30",
        // unlocking: about lever axis 1 for both levers
        "locked 0",
        "unlocking centre 0",
        "locked approach 0",
        "lever axis 1",
        "unlocked 0",
        "unlocking rotation",
        // to the peg: round the pole
        "lever centre 0",
        "lever centre 1",
        // to the lever: round the pole
        "unlocked approach 1",
        "lever centre 0",
        "lever centre 1",
        // locking: about lever axis 0 for both levers
        "unlocked 1",
        "locking centre 1",
        "unlocked approach 1",
        "lever axis 0",
        "locked 1",
        "locking rotation",
    };
    EXPECT_EQ(recorder.queries, required);
}

TEST_F(StepOrder, OfUnlockingWritesTheVectorBeforeTheRotation) {
    EXPECT_EQ(PlanWithFailing("unlocking rotation").code, QMV_E_GEOMETRY_IMPOSSIBLE);
    EXPECT_EQ(moves.UnLock.iRotationVector, 9.0)
        << "the ninth query: five of the whole plan, then the fourth of unlocking";
    EXPECT_EQ(moves.UnLock.jRotationVector, 81.0);
    EXPECT_EQ(moves.UnLock.kRotationVector, -9.0);
    EXPECT_EQ(moves.UnLock.RotationAngle, notWritten);
    EXPECT_EQ(moves.UnLock.XOrigin, notWritten);
    EXPECT_FALSE(IsWritten(moves.ApproachUnLockLever));
    EXPECT_FALSE(IsWritten(moves.EngageWithUnLockLever));
    EXPECT_FALSE(IsWritten(moves.DisengageFromUnLockLever));
}

TEST_F(StepOrder, OfLockingWritesTheVectorBeforeTheRotation) {
    EXPECT_EQ(PlanWithFailing("locking rotation").code, QMV_E_GEOMETRY_IMPOSSIBLE);
    EXPECT_EQ(moves.Lock.iRotationVector, 20.0) << "the twentieth query";
    EXPECT_EQ(moves.Lock.RotationAngle, notWritten);
    EXPECT_EQ(moves.Lock.XOrigin, notWritten);
    EXPECT_FALSE(IsWritten(moves.MoveToLockLeverAtSafeZ));
    EXPECT_FALSE(IsWritten(moves.ApproachLockLever));
    EXPECT_FALSE(IsWritten(moves.EngageWithLockLever));
    EXPECT_FALSE(IsWritten(moves.DisengageFromLockLever));
    EXPECT_NE(moves.RotateToLockLever.RotationAngle, notWritten) << "the step before must be complete";
}

TEST_F(StepOrder, NamesTheOperationWhoseQueryFails) {
    const struct {
        const char* failing;
        const wchar_t* source;
        const wchar_t* description;
    } cases[] = {
        {"approach 45 90 10", L"CQMVCalculator::CalculateMove", L"Unspecified"},
        {"A axis 30", L"CQMVCalculator::CalculateMove", L"Unspecified"},
        {"locked 0", L"CQMVCalculator::CalculateUnlockMoves", L"Unspecified"},
        {"unlocking rotation", L"CQMVCalculator::CalculateUnlockMoves", L"Unspecified"},
        {"lever centre 0", L"CQMVCalculator::CalculatePoleLocation", L"Getting Lever Centre Vectors."},
        {"unlocked approach 1", L"CQMVCalculator::CalculateRotateToLockLeverMoves", L"Unspecified"},
        {"unlocked 1", L"CQMVCalculator::CalculateLockMoves", L"Unspecified"},
        {"locking rotation", L"CQMVCalculator::CalculateLockMoves", L"Unspecified"},
    };
    for (const auto& [failing, source, description] : cases) {
        SCOPED_TRACE(failing);
        const Raised raised = PlanWithFailing(failing);
        EXPECT_EQ(raised.code, QMV_E_GEOMETRY_IMPOSSIBLE);
        ASSERT_TRUE(raised.record);
        EXPECT_EQ(raised.record->source, source);
        EXPECT_EQ(raised.record->description, description);
        EXPECT_EQ(raised.record->helpFile, L"Unspecified");
        EXPECT_EQ(calculator.currentA, 45.0) << "a failed plan does not move the head";
    }
}

} // namespace
