#include "interface/ErrorCodes.h"
#include "tests/calculator/PreparedCalculator.h"
#include "tests/support/Bstr.h"
#include "tests/support/ReferenceHeads.h"
#include "tests/support/TemporaryFolder.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <fstream>
#include <map>

using namespace qmv40;

namespace {

constexpr double untouched = 1234.5;

RequiredMoves UntouchedMoves() {
    RequiredMoves moves;
    std::fill_n(reinterpret_cast<double*>(&moves), numbersInAPlan, untouched);
    return moves;
}

std::size_t Untouched(const RequiredMoves& moves) {
    const auto numbers = NumbersOf(moves);
    return static_cast<std::size_t>(std::count(numbers.begin(), numbers.end(), untouched));
}

TEST(RequiredMovesRecord, HasItsFieldsAtTheRequiredOffsets) {
    EXPECT_EQ(sizeof(RequiredMoves), 680U);
    const std::pair<std::size_t, std::size_t> offsets[] = {{offsetof(RequiredMoves, ApproachUnLockLever), 0},
                                                           {offsetof(RequiredMoves, EngageWithUnLockLever), 24},
                                                           {offsetof(RequiredMoves, UnLock), 48},
                                                           {offsetof(RequiredMoves, DisengageFromUnLockLever), 104},
                                                           {offsetof(RequiredMoves, RotateToPeg), 128},
                                                           {offsetof(RequiredMoves, MoveToPegAtSafeZ), 184},
                                                           {offsetof(RequiredMoves, ApproachPeg), 208},
                                                           {offsetof(RequiredMoves, EngageWithPeg), 232},
                                                           {offsetof(RequiredMoves, IntermediateAPosition), 256},
                                                           {offsetof(RequiredMoves, MoveToBPosition), 312},
                                                           {offsetof(RequiredMoves, MoveToAPosition), 368},
                                                           {offsetof(RequiredMoves, DisengageFromPeg), 424},
                                                           {offsetof(RequiredMoves, DisengageFromPegToSafeZ), 448},
                                                           {offsetof(RequiredMoves, RotateToLockLever), 472},
                                                           {offsetof(RequiredMoves, MoveToLockLeverAtSafeZ), 528},
                                                           {offsetof(RequiredMoves, ApproachLockLever), 552},
                                                           {offsetof(RequiredMoves, EngageWithLockLever), 576},
                                                           {offsetof(RequiredMoves, Lock), 600},
                                                           {offsetof(RequiredMoves, DisengageFromLockLever), 656}};
    for (const auto& [actual, expected] : offsets) EXPECT_EQ(actual, expected);
}

class Moves : public PreparedCalculator {};

TEST_F(Moves, NeedAGeometryFirstAndThenAPosition) {
    const struct {
        const char* why;
        bool withGeometry, withPosition;
        HRESULT code;
    } cases[] = {
        {"neither", false, false, QMV_E_NO_HEAD_GEOMETRY},
        {"no geometry", false, true, QMV_E_NO_HEAD_GEOMETRY},
        {"no position", true, false, QMV_E_POSITION_UNKNOWN},
        {"both", true, true, S_OK},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.why);
        const auto calculator = c.withGeometry ? WithGeometry() : CreateCalculator();
        if (c.withPosition) {
            EXPECT_EQ(calculator->SetCurrentHeadPosition(0.0, 0.0), S_OK);
        }
        EXPECT_EQ(Plan(*calculator.Get(), 45.0, 90.0).code, c.code);
        XYZData start{untouched, untouched, untouched};
        EXPECT_EQ(calculator->GetStartPosition(&start), c.code);
        if (FAILED(c.code)) {
            EXPECT_EQ(start, (XYZData{untouched, untouched, untouched}));
        }
    }
}

TEST_F(Moves, NeedAGeometryBeforeTheTargetIsChecked) {
    EXPECT_EQ(Plan(*CreateCalculator().Get(), 7.0, 999.0).code, QMV_E_NO_HEAD_GEOMETRY);
    EXPECT_EQ(Plan(*WithGeometry().Get(), 7.0, 999.0).code, QMV_E_POSITION_UNKNOWN);
}

// Unlike the other seven methods, CalculateMove throws its failure code instead of returning it. This is required.
TEST_F(Moves, FailByThrowingTheCode) {
    RequiredMoves moves{};
    const auto calculator = CreateCalculator();
    EXPECT_THROW(calculator->CalculateMove(0.0, 0.0, &moves), HRESULT);
    const Raised raised = Plan(*calculator.Get(), 0.0, 0.0);
    EXPECT_EQ(raised.code, QMV_E_NO_HEAD_GEOMETRY);
    ASSERT_TRUE(raised.record) << "the record must be set as for every other failure";
    EXPECT_EQ(raised.record->source, L"CQMVCalculator::CalculateMove");
}

TEST_F(Moves, DoNotChangeTheRecordWhenTheyAreRefused) {
    const auto calculator = At(15.0, 30.0);
    RequiredMoves moves = UntouchedMoves();
    EXPECT_EQ(Plan(*calculator.Get(), 7.0, 0.0, &moves).code, QMV_E_INVALID_TARGET);
    EXPECT_EQ(Untouched(moves), numbersInAPlan);
}

TEST_F(Moves, FromAPositionToItselfFillEveryField) {
    for (const auto& [a, b] : {std::pair{0.0, 0.0}, {45.0, 90.0}, {90.0, -180.0}, {90.0, 180.0}}) {
        SCOPED_TRACE(testing::Message() << a << ", " << b);
        const auto calculator = At(a, b);
        RequiredMoves moves = UntouchedMoves();
        EXPECT_EQ(calculator->CalculateMove(a, b, &moves), S_OK);
        EXPECT_EQ(Untouched(moves), 0U);
        EXPECT_EQ(moves.MoveToBPosition.RotationAngle, 0.0);
        EXPECT_EQ(moves.IntermediateAPosition.RotationAngle, a);
        EXPECT_EQ(moves.MoveToAPosition.RotationAngle, -a);
    }
}

TEST_F(Moves, AreTheSameForTargetsWithTheSameRounding) {
    RequiredMoves exact{};
    RequiredMoves rounded{};
    ASSERT_EQ(At(15.0, 30.0)->CalculateMove(45.0, -90.0, &exact), S_OK);
    ASSERT_EQ(At(15.0, 30.0)->CalculateMove(44.5, -90.4, &rounded), S_OK);
    EXPECT_EQ(NumbersOf(exact), NumbersOf(rounded));
}

TEST_F(Moves, PlannedOneAfterTheOtherMakeATour) {
    const auto touring = At(0.0, 0.0);
    const auto starting = At(0.0, 0.0);
    constexpr std::pair<double, double> stops[] = {{45.0, 90.0}, {90.0, -180.0}, {0.0, 180.0}, {15.0, -15.0}};
    for (const auto& [a, b] : stops) {
        SCOPED_TRACE(testing::Message() << a << ", " << b);
        const Position from = CurrentPosition(*touring.Get());
        ASSERT_EQ(starting->SetCurrentHeadPosition(from.a, from.b), S_OK);
        RequiredMoves onTour{};
        RequiredMoves alone{};
        ASSERT_EQ(touring->CalculateMove(a, b, &onTour), S_OK);
        ASSERT_EQ(starting->CalculateMove(a, b, &alone), S_OK);
        EXPECT_EQ(NumbersOf(onTour), NumbersOf(alone));
    }
}

TEST_F(Moves, BeginAtTheStartPosition) {
    for (double a = 0.0; a <= 90.0; a += 45.0) {
        for (double b = -180.0; b <= 180.0; b += 45.0) {
            SCOPED_TRACE(testing::Message() << a << ", " << b);
            const auto calculator = At(a, b);
            XYZData start{};
            EXPECT_EQ(calculator->GetStartPosition(&start), S_OK);
            EXPECT_EQ(CurrentPosition(*calculator.Get()), (Position{a, b}));
            RequiredMoves moves{};
            EXPECT_EQ(calculator->CalculateMove(a, b, &moves), S_OK);
            EXPECT_EQ(start, moves.ApproachUnLockLever);
            EXPECT_EQ(calculator->CalculateMove(90.0 - a, -b, &moves), S_OK);
            EXPECT_EQ(start, moves.ApproachUnLockLever) << "for every target";
        }
    }
}

TEST_F(Moves, ThatFailMakeGetStartPositionReturnTheCode) {
    XYZData start{};
    const auto calculator = CreateCalculator();
    const Raised raised = ReturnedBy([&] { return calculator->GetStartPosition(&start); });
    EXPECT_EQ(raised.code, QMV_E_NO_HEAD_GEOMETRY);
    ASSERT_TRUE(raised.record);
    EXPECT_EQ(raised.record->source, L"CQMVCalculator::CalculateMove")
        << "the record names the operation that failed, not GetStartPosition";
}

class ReferenceGeometry : public PreparedCalculator {
protected:
    static constexpr double relativeTolerance = 1e-9;

    void Store(const ReferenceHead& head) {
        settings.RemoveKey();
        for (const auto& [name, text] : head.settings) settings.SetText(name.c_str(), text.c_str());
    }
    static ComPointer<IQMVCalculator2> Measured(const ReferenceHead& head) {
        auto calculator = CreateCalculator();
        AlignmentArray aAxisPoints(head.aAxisPoints);
        AlignmentArray bAxisPoints(head.bAxisPoints);
        EXPECT_EQ(calculator->EnterHeadGeometry(aAxisPoints.Address(), bAxisPoints.Address()), S_OK);
        return calculator;
    }
    /// Relative for large numbers, and absolute for small ones: coordinates and angles near zero are computed from
    /// numbers of about 1 and more.
    static void ExpectClose(double actual, double expected, const std::string& what) {
        if (std::isnan(expected)) {
            EXPECT_TRUE(std::isnan(actual)) << what;
            return;
        }
        EXPECT_NEAR(actual, expected, relativeTolerance * std::max(1.0, std::abs(expected))) << what;
    }
};

TEST_F(ReferenceGeometry, HasTheHeadCentresOfTheReference) {
    for (const ReferenceHead& head : LoadReferenceHeads()) {
        SCOPED_TRACE(head.name);
        Store(head);
        const XYZData pole = Pole(*Measured(head).Get());
        ExpectClose(pole.XPosition, head.headCentre[0], "X");
        ExpectClose(pole.YPosition, head.headCentre[1], "Y");
        ExpectClose(pole.ZPosition, head.headCentre[2], "Z");
    }
}

TEST_F(ReferenceGeometry, HasTheMovesOfTheReference) {
    for (const ReferenceHead& head : LoadReferenceHeads()) {
        SCOPED_TRACE(head.name);
        Store(head);
        const auto calculator = Measured(head);
        for (const ReferenceHead::Plan& plan : head.plans) {
            SCOPED_TRACE(testing::Message()
                         << plan.from.a << ", " << plan.from.b << " to " << plan.to.a << ", " << plan.to.b);
            ASSERT_EQ(calculator->SetCurrentHeadPosition(plan.from.a, plan.from.b), S_OK);
            RequiredMoves moves = UntouchedMoves();
            ASSERT_EQ(calculator->CalculateMove(plan.to.a, plan.to.b, &moves), S_OK);
            const auto actual = NumbersOf(moves);
            const auto expected = NumbersOf(plan.moves);
            for (std::size_t i = 0; i < numbersInAPlan; ++i) ExpectClose(actual[i], expected[i], NameOfNumber(i));
        }
    }
}

TEST_F(ReferenceGeometry, IsSavedWithTheDigitsOfTheReference) {
    // A value this near to the middle between two texts may have either text.
    constexpr double tie = 1e-12;
    for (const ReferenceHead& head : LoadReferenceHeads()) {
        SCOPED_TRACE(head.name);
        Store(head);
        const TemporaryFolder folder;
        const auto path = folder.Path("head.ini");
        ASSERT_EQ(Measured(head)->SaveHeadGeometryToFile(Bstr(path).Address()), S_OK);
        const std::map<std::string, double> exact{
            {"HEADCENTRE X", head.headCentre[0]},
            {"HEADCENTRE Y", head.headCentre[1]},
            {"HEADCENTRE Z", head.headCentre[2]},
            {"SAFEPOSITION X", 0.0},
            {"SAFEPOSITION Y", 0.0},
            {"SAFEPOSITION Z", head.safePositionZ},
            {"AlignmentOffset RequiredRotationAroundZ", head.requiredRotationAroundZ}};
        std::ifstream file(path);
        std::string section;
        auto expected = head.file.begin();
        for (std::string line; std::getline(file, line);) {
            if (!line.empty() && line.back() == '\r') line.pop_back();
            if (line.empty()) continue;
            if (line.front() == '[') {
                section = line.substr(1, line.size() - 2);
                continue;
            }
            ASSERT_NE(expected, head.file.end()) << line;
            EXPECT_EQ(section, expected->section);
            const std::size_t equals = line.find('=');
            EXPECT_EQ(line.substr(0, equals), expected->key);
            const std::string text = line.substr(equals + 1);
            if (text != expected->text) {
                const double value = exact.at(section + " " + expected->key);
                const double middle = (std::stod(text) + std::stod(expected->text)) / 2.0;
                EXPECT_NEAR(value, middle, tie * std::max(1.0, std::abs(value))) << text << " for " << expected->text;
            }
            ++expected;
        }
        EXPECT_EQ(expected, head.file.end());
    }
}

} // namespace
