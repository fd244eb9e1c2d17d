#include "tests/head/HeadChecks.h"
#include "tests/head/HeadTest.h"
#include "tests/support/SimulatedHead.h"

/// The end of an access to the captured points fails. The linker directs the component's calls to this program: the
/// n-th call ends the access and returns a failure.

namespace {

int failingCall = 0; // counted from 1; 0: none
int calls = 0;

} // namespace

HRESULT EndAccess(SAFEARRAY* array) __asm__("__real_SafeArrayUnaccessData");
HRESULT EndAccessOrFail(SAFEARRAY* array) __asm__("__wrap_SafeArrayUnaccessData");
HRESULT EndAccessOrFail(SAFEARRAY* array) {
    const HRESULT result = EndAccess(array);
    return ++calls == failingCall ? E_FAIL : result;
}

namespace {

class FailingArrays : public HeadTest {
protected:
    Raised ComputeWithFailing(int call, const AlignmentPoints& aSet, const AlignmentPoints& bSet) {
        failingCall = call;
        calls = 0;
        const Raised raised = Computing(head, aSet, bSet);
        failingCall = 0;
        return raised;
    }
    Raised ComputeWithFailing(int call) {
        return ComputeWithFailing(call, SimulatedHead().ASet(45.0), SimulatedHead().BSet(60.0));
    }

    RoundThePole head;
};

TEST_F(FailingArrays, MakeTheCheckAndTheShiftFail) {
    const wchar_t* const sources[] = {L"RoundThePole::ValidateSafeArrayData", L"RoundThePole::ValidateSafeArrayData",
                                      L"RoundThePole::ModifyDataForLockedPosition",
                                      L"RoundThePole::ModifyDataForLockedPosition"};
    for (int call = 1; call <= 4; ++call) {
        SCOPED_TRACE(call);
        ExpectFailure(ComputeWithFailing(call), {E_FAIL, sources[call - 1], L"Unspecified", L"Unspecified"});
    }
}

TEST_F(FailingArrays, DoNotMakeTheFillingOfThePointArraysFail) {
    for (int call = 5; call <= 6; ++call) {
        EXPECT_EQ(ComputeWithFailing(call).code, S_OK);
        EXPECT_EQ(calls, 6) << "one each for the check, the shift and the filling, for two sets";
    }
}

TEST_F(FailingArrays, LeaveTheBAngleOfTheASetStored) {
    EXPECT_EQ(ComputeWithFailing(1).code, E_FAIL);
    EXPECT_EQ(head.AAxisCaptureBPosition(), 45.0);
}

TEST_F(FailingArrays, HideThatTheFixedAxisMoved) {
    AlignmentPoints aSet = SimulatedHead().ASet(45.0);
    aSet[2].BPosition = 60.0;
    AlignmentPoints bSet = SimulatedHead().BSet(60.0);
    EXPECT_EQ(ComputeWithFailing(0, aSet, bSet).code, QMV_E_FIXED_AXIS_MOVED);
    EXPECT_EQ(ComputeWithFailing(1, aSet, bSet).code, E_FAIL);
    aSet[2].BPosition = 45.0;
    bSet[2].APosition = 75.0;
    EXPECT_EQ(ComputeWithFailing(2, aSet, bSet).code, E_FAIL);
}

} // namespace
