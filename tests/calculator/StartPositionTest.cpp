#include "calculator/CQMVCalculator.h"
#include "errors/RaiseError.h"
#include "interface/ErrorCodes.h"
#include "server/CreatableObjects.h"
#include "tests/support/PreparedCalculator.h"

#include <functional>

using namespace qmv40;

/// GetStartPosition calls the object's own CalculateMove, whatever that returns or throws.

namespace {

/// A calculator whose CalculateMove returns or throws the code of the test.
class ScriptedCalculator : public CQMVCalculator {
public:
    HRESULT STDMETHODCALLTYPE CalculateMove(double a, double b, RequiredMoves* moves) override {
        asked.push_back({a, b});
        wasGivenARecord = moves != nullptr;
        if (moves != nullptr) moves->ApproachUnLockLever = {1.5, 2.5, 3.5};
        return script();
    }

    struct Target {
        double a;
        double b;
        bool operator==(const Target&) const = default;
    };
    std::vector<Target> asked;
    bool wasGivenARecord = false;
    std::function<HRESULT()> script = [] { return S_OK; };

protected:
    ~ScriptedCalculator() = default;
};

constexpr XYZData untouched{-1.0, -2.0, -3.0};

class StartPosition : public testing::Test {
protected:
    SettingsFixture settings;
    StandaloneObject<ScriptedCalculator> calculator;
    XYZData start = untouched;
};

TEST_F(StartPosition, IsCopiedAfterASuccess) {
    for (const HRESULT success : {S_OK, S_FALSE}) {
        calculator.script = [=] { return success; };
        start = untouched;
        EXPECT_EQ(calculator.GetStartPosition(&start), success);
        EXPECT_EQ(start, (XYZData{1.5, 2.5, 3.5}));
    }
}

TEST_F(StartPosition, IsNotWrittenAfterAReturnedFailure) {
    for (const HRESULT failure : {E_FAIL, QMV_E_INVALID_TARGET}) {
        calculator.script = [=] { return failure; };
        EXPECT_EQ(calculator.GetStartPosition(&start), failure);
        EXPECT_EQ(start, untouched);
    }
}

TEST_F(StartPosition, IsNotWrittenAfterAThrownFailure) {
    calculator.script = []() -> HRESULT { RaiseError(QMV_E_NO_HEAD_GEOMETRY, L"a source", L"a description"); };
    const Raised raised = ReturnedBy([&] { return calculator.GetStartPosition(&start); });
    EXPECT_EQ(raised.code, QMV_E_NO_HEAD_GEOMETRY);
    EXPECT_EQ(start, untouched);
    ASSERT_TRUE(raised.record);
    EXPECT_EQ(raised.record->source, L"a source");
}

TEST_F(StartPosition, IsPlannedFromTheCurrentPositionToItself) {
    ASSERT_EQ(calculator.SetCurrentHeadPosition(45.0, -30.0), S_OK);
    ASSERT_EQ(calculator.GetStartPosition(&start), S_OK);
    EXPECT_EQ(calculator.asked, (std::vector<ScriptedCalculator::Target>{{45.0, -30.0}}));
    EXPECT_TRUE(calculator.wasGivenARecord);
}

TEST_F(StartPosition, HasNoChecksExceptThoseOfCalculateMove) {
    EXPECT_EQ(calculator.GetStartPosition(&start), S_OK) << "there is no geometry and no position";
    EXPECT_EQ(calculator.asked.size(), 1U);
}

} // namespace
