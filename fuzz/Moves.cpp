// Sets the head to any pair of doubles and plans to any pairs. Laws:
// - angles that cannot be reached are refused with the right code and text: range before step, A before B. Targets are
//   first rounded to whole degrees, halves away from zero; a target beyond 32-bit integers is out of range;
// - otherwise the plan keeps the laws of PlanLaws.h: its arcs, executed left-handed, end engaged at the target;
// - a refused target does not change the position; after a refused position the position is unknown;
// - every calculator with the same head makes the same plan, and its first point is the start position.
// Input: which head, the position, then targets until the bytes end.

#include "PlanLaws.h"

#include "interface/ErrorCodes.h"
#include "tests/head/SavedHead.h"
#include "tests/support/Bstr.h"
#include "tests/support/Calculator.h"
#include "tests/support/ErrorRecord.h"

#include <vector>

using namespace qmv40;

namespace {

const SavedHead heads[] = {{.headCentre = {0.0, 0.0, 0.0}, .rotation = 0.0},
                           {.headCentre = {412.5, -178.25, -655.0}, .rotation = 30.0},
                           {.headCentre = {-1500.0, 2750.125, -0.5}, .rotation = -167.25},
                           {.headCentre = {999000.0, -999000.0, 12345.0}, .rotation = 719.5}};

ComPointer<IQMVCalculator2> CalculatorOf(const SavedHead& head) {
    const TemporaryFolder folder;
    ComPointer<IQMVCalculator2> calculator = CreateCalculator();
    Bstr argument{std::filesystem::path(folder.Write("head.ini", head.Text()))};
    Promise(calculator->LoadHeadGeometryFromFile(argument.Address()) == S_OK, "a whole geometry file loads");
    return calculator;
}

struct HeadAndCalculators {
    SavedHead head;
    ComPointer<IQMVCalculator2> calculator = CalculatorOf(head);
    ComPointer<IQMVCalculator2> another = CalculatorOf(head);
};

/// The description with which angles are refused; null if they are accepted.
const wchar_t* RefusalOf(const HeadAngles& angles) {
    if (angles.a < 0.0 || angles.a > 90.0) return L"Invalid A Target Angle, value must be between 0 and 90.";
    if (angles.b < -180.0 || angles.b > 180.0) return L"Invalid B Target Angle, value must be between -180 and 180.";
    const auto isStep = [](double angle) { return std::nearbyint(angle / 15.0) * 15.0 == angle; };
    if (!isStep(angles.a)) return L"Invalid A Target Angle, value must be a 15 degree interval.";
    if (!isStep(angles.b)) return L"Invalid B Target Angle, value must be a 15 degree interval.";
    return nullptr;
}

/// To whole degrees, halves away from zero; the addition of 0.5 is rounded like the component's.
double WholeDegrees(double angle) {
    const double shifted = std::trunc(angle > 0.0 ? angle + 0.5 : angle - 0.5);
    const bool isWhole = shifted >= -2147483648.0 && shifted <= 2147483647.0;
    return isWhole ? shifted + 0.0 : -2147483648.0; // a rounded angle is never -0
}

void PromiseRecord(const Raised& raised, const wchar_t* description) {
    Promise(raised.code == QMV_E_INVALID_TARGET, "angles that cannot be reached are refused with their code");
    Promise(raised.record && raised.record->source == L"CQMVCalculator::ValidateMoveTarget" &&
                raised.record->description == description,
            "the error record names the angle and the reason");
}

/// False when the position was refused.
bool Place(IQMVCalculator2& calculator, const HeadAngles& angles) {
    const Raised placed = ReturnedBy([&] { return calculator.SetCurrentHeadPosition(angles.a, angles.b); });
    if (const wchar_t* const refusal = RefusalOf(angles)) {
        PromiseRecord(placed, refusal);
        HeadAngles found{-1.0, -2.0};
        Promise(calculator.GetCurrentHeadPosition(&found.a, &found.b) == QMV_E_POSITION_UNKNOWN && found.a == -1.0 &&
                    found.b == -2.0,
                "after a refused position the position is unknown");
        return false;
    }
    Promise(placed.code == S_OK && !placed.record, "angles that can be reached are accepted");
    Promise(StandsAt(calculator, angles), "the position is the one that was set");
    return true;
}

/// Plans to the target if it can be reached. Returns the position after that.
HeadAngles Go(const HeadAndCalculators& planner, const HeadAngles& from, const HeadAngles& target) {
    IQMVCalculator2& calculator = *planner.calculator.Get();
    const HeadAngles to{WholeDegrees(target.a), WholeDegrees(target.b)};
    RequiredMoves moves{};
    const Raised planned = RaisedBy([&] { calculator.CalculateMove(target.a, target.b, &moves); });
    if (const wchar_t* const refusal = RefusalOf(to)) {
        PromiseRecord(planned, refusal);
        Promise(StandsAt(calculator, from), "a refused target does not change the position");
        return from;
    }
    Promise(planned.code == S_OK && !planned.record, "a plan to a target that can be reached succeeds");
    Promise(StandsAt(calculator, to), "the target becomes the position");
    PromisePlan(moves, IdealHead(planner.head.rotation, planner.head.headCentre), from, to);

    IQMVCalculator2& other = *planner.another.Get();
    XYZData start{};
    Promise(other.SetCurrentHeadPosition(from.a, from.b) == S_OK, "another calculator accepts the position");
    Promise(other.GetStartPosition(&start) == S_OK, "there is a start position");
    Promise(std::memcmp(&start, &moves.ApproachUnLockLever, sizeof start) == 0,
            "every plan begins at the start position");
    RequiredMoves again{};
    // GetStartPosition has rounded an angle of -0 to 0.
    Promise(other.SetCurrentHeadPosition(from.a, from.b) == S_OK, "another calculator accepts the position again");
    Promise(other.CalculateMove(to.a, to.b, &again) == S_OK && SamePlan(moves, again),
            "calculators with the same head make the same plan");
    return to;
}

double TakeAngle(FuzzedDataProvider& input) {
    const auto kind = input.ConsumeIntegralInRange(0, 3);
    if (kind == 0) return TakeDouble(input);
    const double step = 15.0 * input.ConsumeIntegralInRange(-14, 14);
    if (kind == 1) return step + input.PickValueInArray({0.5, -0.5, 0.49999999999999994, 1e-13, -1e-13, 1.0});
    return step;
}

HeadAngles TakeAngles(FuzzedDataProvider& input) {
    const double a = TakeAngle(input);
    return {a, TakeAngle(input)};
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const std::vector<HeadAndCalculators> planners = [] {
        std::vector<HeadAndCalculators> made;
        for (const SavedHead& head : heads) made.push_back({head});
        return made;
    }();
    FuzzedDataProvider input(data, size);
    const HeadAndCalculators& planner = planners[input.ConsumeIntegralInRange<std::size_t>(0, planners.size() - 1)];
    HeadAngles position = TakeAngles(input);
    if (!Place(*planner.calculator.Get(), position)) return 0;
    do position = Go(planner, position, TakeAngles(input));
    while (input.remaining_bytes() != 0);
    return 0;
}
