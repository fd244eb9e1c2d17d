#include "interface/ErrorCodes.h"
#include "tests/calculator/MemoryFailures.h"
#include "tests/support/Bstr.h"
#include "tests/support/ReferenceHeads.h"
#include "tests/support/TemporaryFolder.h"

#include <algorithm>
#include <fstream>
#include <iterator>

using namespace qmv40;

/// When memory runs out at any place, the method fails with E_OUTOFMEMORY: seven methods return it, CalculateMove
/// throws it. A call that succeeds although an allocation failed must have its full effect.

namespace {

std::string ContentOf(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

constexpr double untouched = 1234.5;

class OutOfMemory : public PreparedCalculator {
protected:
    OutOfMemory() {
        settings.SetText("Head Centre To Drive Cup X Offset", "-7.25");
        settings.SetText("Head Centre To Lever Centre X Offset", "31.25");
        settings.SetText("Lever Centre To Ball Centre X Offset", "0.125");
        settings.SetText("Locked To Unlocked X Offset", "0.25");
        settings.SetText("Locked To Unlocked Lever Rotation", "120");
        settings.SetText("UnLocked To locked Lever Rotation", "121");
    }

    static void ExpectSuccessOrOutOfMemory(HRESULT code) {
        EXPECT_TRUE(code == S_OK || code == E_OUTOFMEMORY) << std::hex << "0x" << static_cast<unsigned>(code);
    }

    /// The plan of `calculator` from (30, -75) to (60, 120). Afterwards the head is at the target.
    static std::array<double, numbersInAPlan> PlannedBy(IQMVCalculator& calculator) {
        RequiredMoves moves{};
        EXPECT_EQ(calculator.SetCurrentHeadPosition(30.0, -75.0), S_OK);
        EXPECT_EQ(calculator.CalculateMove(60.0, 120.0, &moves), S_OK);
        return NumbersOf(moves);
    }
};

TEST_F(OutOfMemory, PreventsANewObjectAndLeaksNothing) {
    auto factory = CalculatorFactory();
    const auto expected = PlannedBy(*WithGeometry().Get());
    const HRESULT withTheFactoryHeld = DllCanUnloadNow();
    void* object = nullptr;
    const long failures = ForEveryAllocation(
        [&] {
            object = &object;
            return factory->CreateInstance(nullptr, IID_IQMVCalculator2, &object);
        },
        [&](HRESULT code) {
            ExpectSuccessOrOutOfMemory(code);
            if (FAILED(code)) {
                EXPECT_EQ(object, nullptr);
                EXPECT_EQ(DllCanUnloadNow(), withTheFactoryHeld);
                return;
            }
            const ComPointer<IQMVCalculator2> calculator(static_cast<IQMVCalculator2*>(object));
            EXPECT_EQ(Enter(*calculator.Get(), Head()), S_OK);
            EXPECT_EQ(PlannedBy(*calculator.Get()), expected);
        });
    EXPECT_GT(failures, 0);
    factory = ComPointer<IClassFactory>();
    EXPECT_EQ(DllCanUnloadNow(), S_OK);
}

TEST_F(OutOfMemory, PreventsTheEntryOfAGeometryUntilTheNextTry) {
    const auto expected = PlannedBy(*WithGeometry().Get());
    AlignmentArray aAxisPoints(Head().ASet(45.0));
    AlignmentArray bAxisPoints(Head().BSet(60.0));
    ComPointer<IQMVCalculator2> calculator = CreateCalculator();
    const long failures =
        ForEveryAllocation([&] { return calculator->EnterHeadGeometry(aAxisPoints.Address(), bAxisPoints.Address()); },
                           [&](HRESULT code) {
                               ExpectSuccessOrOutOfMemory(code);
                               EXPECT_EQ(aAxisPoints.Get()->cLocks, 0U);
                               EXPECT_EQ(bAxisPoints.Get()->cLocks, 0U);
                               if (FAILED(code)) {
                                   EXPECT_EQ(calculator->SetCurrentHeadPosition(0.0, 0.0), S_OK);
                                   EXPECT_EQ(Plan(*calculator.Get(), 0.0, 0.0).code, QMV_E_NO_HEAD_GEOMETRY);
                                   EXPECT_EQ(Enter(*calculator.Get(), Head()), S_OK);
                               }
                               EXPECT_EQ(PlannedBy(*calculator.Get()), expected);
                               calculator = CreateCalculator();
                           });
    EXPECT_GT(failures, 0);
}

TEST_F(OutOfMemory, PreventsTheLoadOfAGeometryUntilTheNextTry) {
    const TemporaryFolder folder;
    Bstr name(folder.Path("head.ini"));
    ASSERT_EQ(WithGeometry()->SaveHeadGeometryToFile(name.Address()), S_OK);
    ComPointer<IQMVCalculator2> calculator = CreateCalculator();
    ASSERT_EQ(calculator->LoadHeadGeometryFromFile(name.Address()), S_OK);
    const auto expected = PlannedBy(*calculator.Get());
    calculator = CreateCalculator();
    const long failures =
        ForEveryAllocation([&] { return calculator->LoadHeadGeometryFromFile(name.Address()); },
                           [&](HRESULT code) {
                               ExpectSuccessOrOutOfMemory(code);
                               if (FAILED(code)) {
                                   EXPECT_EQ(calculator->LoadHeadGeometryFromFile(name.Address()), S_OK);
                               }
                               EXPECT_EQ(PlannedBy(*calculator.Get()), expected);
                               calculator = CreateCalculator();
                           });
    EXPECT_GT(failures, 0);
}

TEST_F(OutOfMemory, LeavesAWholeFileOrNone) {
    const TemporaryFolder folder;
    const auto path = folder.Path("head.ini");
    Bstr name(path);
    const auto calculator = WithGeometry();
    ASSERT_EQ(calculator->SaveHeadGeometryToFile(name.Address()), S_OK);
    const std::string expected = ContentOf(path);
    std::filesystem::remove(path);
    ForEveryAllocation([&] { return calculator->SaveHeadGeometryToFile(name.Address()); },
                       [&](HRESULT code) {
                           ExpectSuccessOrOutOfMemory(code);
                           if (SUCCEEDED(code)) {
                               EXPECT_EQ(ContentOf(path), expected);
                           }
                           EXPECT_EQ(std::filesystem::remove(path), SUCCEEDED(code))
                               << "the file must be whole or missing";
                           EXPECT_TRUE(std::filesystem::is_empty(folder.Path()));
                       });
}

/// The number of doubles that each step of a plan writes, in the order of the steps and of the record.
constexpr std::size_t numbersOfSteps[] = {16, 7, 9, 21, 6, 7, 19};

/// Every number has its old value or its final one, and a step writes only after all steps before it are complete.
void ExpectFilledFromTheFront(const std::array<double, numbersInAPlan>& actual,
                              const std::array<double, numbersInAPlan>& expected) {
    for (std::size_t i = 0; i < numbersInAPlan; ++i)
        EXPECT_TRUE(actual[i] == untouched || actual[i] == expected[i]) << NameOfNumber(i);
    const auto* step = actual.data();
    bool ended = false;
    for (const std::size_t numbers : numbersOfSteps) {
        const auto left = std::count(step, step + numbers, untouched);
        if (ended) {
            EXPECT_EQ(left, static_cast<std::ptrdiff_t>(numbers)) << "a later step has written";
        }
        ended = ended || left != 0;
        step += numbers;
    }
}

TEST_F(OutOfMemory, LeavesARecordPartlyFilledAndThePositionUnchanged) {
    const auto calculator = WithGeometry();
    const auto expected = PlannedBy(*calculator.Get());
    ASSERT_EQ(calculator->SetCurrentHeadPosition(30.0, -75.0), S_OK);
    RequiredMoves moves{};
    std::size_t partlyFilled = 0;
    const auto clear = [&] { std::fill_n(reinterpret_cast<double*>(&moves), numbersInAPlan, untouched); };
    clear();
    const long failures =
        ForEveryAllocation([&] { return calculator->CalculateMove(60.0, 120.0, &moves); },
                           [&](HRESULT code) {
                               ExpectSuccessOrOutOfMemory(code);
                               const auto numbers = NumbersOf(moves);
                               const auto left = std::count(numbers.begin(), numbers.end(), untouched);
                               if (SUCCEEDED(code)) {
                                   EXPECT_EQ(numbers, expected);
                                   EXPECT_EQ(CurrentPosition(*calculator.Get()), (Position{60.0, 120.0}));
                                   EXPECT_EQ(calculator->SetCurrentHeadPosition(30.0, -75.0), S_OK);
                               } else {
                                   ExpectFilledFromTheFront(numbers, expected);
                                   EXPECT_EQ(CurrentPosition(*calculator.Get()), (Position{30.0, -75.0}));
                                   if (left > 0 && left < static_cast<std::ptrdiff_t>(numbersInAPlan)) ++partlyFilled;
                               }
                               clear();
                           });
    EXPECT_GT(failures, 0);
    EXPECT_GT(partlyFilled, 0U) << "the settings of the lever rotations are read while the record is filled";
    EXPECT_EQ(PlannedBy(*calculator.Get()), expected);
}

TEST_F(OutOfMemory, DoesNotWriteTheStartPosition) {
    const auto calculator = At(30.0, -75.0);
    const auto expected = PlannedBy(*calculator.Get());
    ASSERT_EQ(calculator->SetCurrentHeadPosition(30.0, -75.0), S_OK);
    constexpr XYZData nothing{untouched, untouched, untouched};
    XYZData start = nothing;
    const long failures = ForEveryAllocation([&] { return calculator->GetStartPosition(&start); },
                                             [&](HRESULT code) {
                                                 ExpectSuccessOrOutOfMemory(code);
                                                 const XYZData first{expected[0], expected[1], expected[2]};
                                                 EXPECT_EQ(start, SUCCEEDED(code) ? first : nothing);
                                                 EXPECT_EQ(CurrentPosition(*calculator.Get()), (Position{30.0, -75.0}));
                                                 start = nothing;
                                             });
    EXPECT_GT(failures, 0);
}

TEST_F(OutOfMemory, DoesNotAffectMethodsThatPassNumbersOnly) {
    const auto calculator = At(30.0, -75.0);
    FailingAllocations failing(0, FailingAllocations::Extent::AllAfter);
    double a = 0.0;
    double b = 0.0;
    XYZData pole{};
    const HRESULT codes[] = {calculator->SetCurrentHeadPosition(45.0, 90.0), calculator->GetCurrentHeadPosition(&a, &b),
                             calculator->GetPoleSpherePosition(&pole)};
    failing.Stop();
    for (const HRESULT code : codes) EXPECT_EQ(code, S_OK);
    EXPECT_EQ(a, 45.0);
    EXPECT_EQ(b, 90.0);
    ExpectNear(pole, Pole(*calculator.Get()), 0.0);
}

TEST_F(OutOfMemory, MakesThePositionUnknownAfterARefusal) {
    const auto calculator = At(30.0, -75.0);
    ForEveryAllocation([&] { return calculator->SetCurrentHeadPosition(7.0, 0.0); },
                       [&](HRESULT code) {
                           EXPECT_TRUE(code == QMV_E_INVALID_TARGET || code == E_OUTOFMEMORY);
                           EXPECT_EQ(PositionCode(*calculator.Get()), QMV_E_POSITION_UNKNOWN);
                           EXPECT_EQ(calculator->SetCurrentHeadPosition(30.0, -75.0), S_OK);
                       });
}

TEST_F(OutOfMemory, DoesNotHideTheRefusalOfATarget) {
    const auto calculator = CreateCalculator();
    RequiredMoves moves{};
    ForEveryAllocation([&] { return calculator->CalculateMove(0.0, 0.0, &moves); },
                       [&](HRESULT code) { EXPECT_TRUE(code == QMV_E_NO_HEAD_GEOMETRY || code == E_OUTOFMEMORY); });
}

} // namespace
