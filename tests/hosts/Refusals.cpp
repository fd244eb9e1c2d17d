// Every host can catch the code that CalculateMove throws as a `long`, and continues.

#include "hosts/Subjects.h"
#include "hosts/WholeJob.h"

namespace {

constexpr HRESULT noGeometry = static_cast<HRESULT>(0x8A000003);
constexpr HRESULT noPosition = static_cast<HRESULT>(0x8A000004);
constexpr HRESULT badTarget = static_cast<HRESULT>(0x8A00000E);

/// The code that a call throws. The exception is caught by `catch (...)`, thrown again, and caught as a code.
HRESULT CaughtTwice(IQMVCalculator2& calculator, double a, double b) {
    try {
        RequiredMoves moves{};
        try {
            calculator.CalculateMove(a, b, &moves);
        } catch (...) {
            throw;
        }
    } catch (const long code) {
        return code;
    }
    return S_OK;
}

void ExpectRefused(IQMVCalculator2& calculator, double a, double b, HRESULT code, const wchar_t* description) {
    RequiredMoves moves{};
    const long before = ObjectsDestroyed();
    const HRESULT thrown = ThrownByCalculateMove(calculator, a, b, &moves);
    Expect(thrown == code, "the code is caught as a long", thrown);
    Expect(ObjectsDestroyed() == before + 1, "an object on the way was destroyed once");
    Expect(RecordSays(description), "the error record has the reason");
    Expect(CaughtTwice(calculator, a, b) == code, "the code can be thrown again");
}

void ExpectBadTargetsRefused(IQMVCalculator2& calculator) {
    const wchar_t* const rangeOfA = L"Invalid A Target Angle, value must be between 0 and 90.";
    const wchar_t* const rangeOfB = L"Invalid B Target Angle, value must be between -180 and 180.";
    const wchar_t* const stepOfA = L"Invalid A Target Angle, value must be a 15 degree interval.";
    const wchar_t* const stepOfB = L"Invalid B Target Angle, value must be a 15 degree interval.";
    const struct {
        double a, b;
        const wchar_t* description;
    } targets[] = {{-15.0, 0.0, rangeOfA}, {105.0, 0.0, rangeOfA}, {0.0, -195.0, rangeOfB}, {0.0, 195.0, rangeOfB},
                   {7.4, 0.0, stepOfA},    {50.0, 90.0, stepOfA},  {0.0, 7.0, stepOfB},     {90.0, -179.0, stepOfB}};
    for (const auto& target : targets) ExpectRefused(calculator, target.a, target.b, badTarget, target.description);
}

} // namespace

void Refusals(int rounds) {
    const Server server;
    RequiredMoves moves{};
    XYZData start{};
    IQMVCalculator2* const calculator = server.Create();
    AlignmentPoints aPoints(AlignmentPoints::A);
    AlignmentPoints bPoints(AlignmentPoints::B);
    ExpectRefused(*calculator, 45.0, 90.0, noGeometry, L"Head Geometry has not been supplied and/or loaded");
    Expect(calculator->GetStartPosition(&start) == noGeometry, "the other methods return their failures");
    Expect(calculator->EnterHeadGeometry(aPoints.Address(), bPoints.Address()) == S_OK, "a geometry is entered");
    ExpectRefused(*calculator, 45.0, 90.0, noPosition, L"Current Position is not known");
    Expect(calculator->GetStartPosition(&start) == noPosition, "the other methods return their failures");
    Expect(calculator->SetCurrentHeadPosition(0.0, 0.0) == S_OK, "a position is set");
    ExpectBadTargetsRefused(*calculator);
    for (int i = 0; i < rounds; ++i) {
        const HRESULT thrown = ThrownByCalculateMove(*calculator, 50.0, 90.0, &moves);
        Expect(thrown == badTarget, "one of many refusals", thrown);
    }
    Expect(ThrownByCalculateMove(*calculator, 45.0, 90.0, &moves) == S_OK, "after that a plan is made");
    Expect(moves.numbers[0] != 0.0, "it is filled");
    calculator->Release();
    Expect(server.CanUnloadNow() == S_OK, "nothing keeps the component loaded");
}
