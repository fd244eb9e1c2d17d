// Passes alignment arrays of any shape and content to the calculator. Laws:
// - the first fault of the arrays decides the code and the text of the refusal, by the documented rules, which are
//   written here a second time; arrays of the right shape are computed, or refused as impossible;
// - the arrays of the caller do not change;
// - after a success the position of the pole sphere is finite, and plans keep the laws of PlanLaws.h;
// - the points of a simulated head give its pole sphere and its rotation about Z, the mounting angle;
// - a refusal does not change the position, and there are still no plans if there were none before; good points then
//   give the plans of a new calculator.

#include "PlanLaws.h"

#include "interface/ErrorCodes.h"
#include "tests/support/AlignmentArray.h"
#include "tests/support/Calculator.h"
#include "tests/support/ErrorRecord.h"
#include "tests/support/SimulatedHead.h"

#include <cstring>
#include <vector>

using namespace qmv40;

namespace {

using Items = std::vector<HeadAlignmentDataItem>;

/// A simulated head, and the held angles of its two sets.
struct Capture {
    SimulatedHead head;
    double captureB; ///< of the A set
    double captureA; ///< of the B set

    static Capture Take(FuzzedDataProvider& input) {
        Capture capture{};
        for (std::size_t axis = 0; axis < 3; ++axis)
            capture.head.pole[axis] = input.ConsumeFloatingPointInRange(-5000.0, 5000.0);
        // As docs/conventions.md requires: the A set is captured at an odd multiple of 45 degrees, and the head is
        // mounted turned by less than 40. So the plane of the A points is not near a machine axis.
        capture.head.mountingAngle = input.ConsumeFloatingPointInRange(-35.0, 35.0);
        capture.head.stylus = {0.0, 0.0, -input.ConsumeFloatingPointInRange(120.0, 500.0)};
        capture.captureB = input.PickValueInArray({-135.0, -45.0, 45.0, 135.0});
        capture.captureA = input.PickValueInArray({45.0, 75.0, 90.0});
        return capture;
    }
    Items ASet(int count) const { return head.ASet(captureB, count); }
    Items BSet(int count) const { return head.BSet(captureA, count); }
};

Items TakeAnyItems(FuzzedDataProvider& input, bool isASet) {
    Items items(input.ConsumeIntegralInRange<std::size_t>(0, 12));
    const double fixed = TakeDouble(input);
    for (HeadAlignmentDataItem& item : items) {
        std::array<double, 5> numbers;
        std::ranges::generate(numbers, [&] { return TakeDouble(input); });
        item = std::bit_cast<HeadAlignmentDataItem>(numbers);
        if (input.ConsumeIntegralInRange(0, 30) != 30) (isASet ? item.BPosition : item.APosition) = fixed;
    }
    return items;
}

/// Changes one number of an item, or replaces an item by another, or does nothing.
void Damage(Items& items, FuzzedDataProvider& input) {
    if (items.empty()) return;
    for (int times = input.ConsumeIntegralInRange(0, 6); times > 0; --times) {
        HeadAlignmentDataItem& item = items[input.ConsumeIntegralInRange<std::size_t>(0, items.size() - 1)];
        if (input.ConsumeBool()) {
            item = items[input.ConsumeIntegralInRange<std::size_t>(0, items.size() - 1)];
        } else {
            auto numbers = std::bit_cast<std::array<double, 5>>(item);
            numbers[input.ConsumeIntegralInRange<std::size_t>(0, 4)] = TakeDouble(input);
            item = std::bit_cast<HeadAlignmentDataItem>(numbers);
        }
    }
}

/// An array of a usual or an unusual shape.
class HostileArray {
public:
    HostileArray(const Items& items, FuzzedDataProvider& input)
        : HostileArray(items, input, input.ConsumeIntegralInRange(0, 9)) {}
    ~HostileArray() {
        if (Get() != nullptr) Get()->cLocks = 0; // a locked array cannot be destroyed
    }

    SAFEARRAY** Address() noexcept { return array.Address(); }
    SAFEARRAY* Get() const noexcept { return array.Get(); }

    /// The upper bound of dimension 1: lower bound plus count minus 1.
    LONG UpperBound() const {
        const SAFEARRAYBOUND* const bounds = Get()->rgsabound;
        const SAFEARRAYBOUND& bound = bounds[Get()->cDims - 1];
        return static_cast<LONG>(static_cast<ULONG>(bound.lLbound) + bound.cElements - 1U);
    }
    /// Whether elements 0 to the upper bound exist and are points.
    bool HoldsRecords() const {
        return Get()->cDims == 1 && Get()->rgsabound[0].lLbound <= 0 &&
               Get()->cbElements == sizeof(HeadAlignmentDataItem) &&
               Get()->rgsabound[0].cElements > static_cast<ULONG>(UpperBound());
    }
    /// The points that are read: as many as there are elements from 0 to the upper bound, counted from the beginning of
    /// the memory. With a negative lower bound this is not element 0.
    Items Counted() const {
        Items items(static_cast<std::size_t>(UpperBound()) + 1);
        if (Get()->pvData != nullptr) std::memcpy(items.data(), Get()->pvData, items.size() * sizeof items[0]);
        return items;
    }
    /// All its fields and data, to compare them later.
    std::string Image() const {
        if (Get() == nullptr) return {};
        std::string image(reinterpret_cast<const char*>(Get()), sizeof *Get());
        if (Get()->pvData != nullptr) image.append(static_cast<const char*>(Get()->pvData), dataSize);
        return image;
    }

private:
    /// 1 to 6: one thing about the array is unusual. Any other number: nothing is.
    HostileArray(const Items& items, FuzzedDataProvider& input, int oddity)
        : array(oddity == 1 ? AlignmentArray::Null() : Made(items, input, oddity)) {
        if (Get() != nullptr) dataSize = items.size() * Get()->cbElements;
        if (oddity == 5) std::free(std::exchange(Get()->pvData, nullptr));
        if (oddity == 6) Get()->cLocks = input.ConsumeIntegralInRange<ULONG>(1, 0xFFFF);
    }

    static AlignmentArray Made(const Items& items, FuzzedDataProvider& input, int oddity) {
        const USHORT dimensions = oddity == 2 ? input.PickValueInArray<USHORT>({0, 2, 3}) : 1;
        const ULONG size = oddity == 3 ? input.PickValueInArray<ULONG>({0, 1, 8, 39, 41, 80}) : sizeof items[0];
        constexpr LONG lowest = std::numeric_limits<LONG>::min();
        constexpr LONG highest = std::numeric_limits<LONG>::max();
        const LONG first = oddity == 4 ? input.PickValueInArray({1, 5, -1, -3, -100, highest, highest - 5, lowest}) : 0;
        AlignmentArray made(items, size, std::max<USHORT>(dimensions, 1), first);
        made.Get()->cDims = dimensions;
        return made;
    }

    AlignmentArray array;
    std::size_t dataSize = 0;
};

struct Refusal {
    HRESULT code;
    const wchar_t* description;
};

/// The refusal of the first step, which copies the arrays.
std::optional<Refusal> AgainstCopying(const HostileArray& points) {
    const bool isNoArray = points.Get() != nullptr && (points.Get()->cDims == 0 || points.Get()->cbElements == 0);
    if (isNoArray) return Refusal{E_INVALIDARG, L"Error Copying the safe array data."};
    return {};
}

std::optional<Refusal> AgainstSet(const HostileArray& points, double HeadAlignmentDataItem::*fixedAngle,
                                  const wchar_t* tooFew, const wchar_t* moved) {
    if (points.Get() == nullptr) return Refusal{E_INVALIDARG, L"Unspecified"};
    if (points.UpperBound() < 3) return Refusal{QMV_E_TOO_FEW_POINTS, tooFew};
    if (!points.HoldsRecords()) return Refusal{DISP_E_BADINDEX, L"Unspecified"};
    const Items items = points.Counted();
    const auto isFixed = [&](const auto& item) { return item.*fixedAngle == items.front().*fixedAngle; };
    if (!std::ranges::all_of(items, isFixed)) return Refusal{QMV_E_FIXED_AXIS_MOVED, moved};
    return {};
}

/// The first fault of the arrays, found before anything is computed.
std::optional<Refusal> ExpectedRefusal(const HostileArray& a, const HostileArray& b) {
    if (const auto refusal = AgainstCopying(a)) return refusal;
    if (const auto refusal = AgainstCopying(b)) return refusal;
    if (const auto refusal = AgainstSet(a, &HeadAlignmentDataItem::BPosition, L"Too Few A Axis Points Supplied",
                                        L"Invalid Data. B Axis Must Remain Fixed During A Axis Data Capture"))
        return refusal;
    return AgainstSet(b, &HeadAlignmentDataItem::APosition, L"Too Few B Axis Points Supplied",
                      L"Invalid Data. A Axis Must Remain Fixed During B Axis Data Capture");
}

constexpr HeadAngles from{30.0, -45.0};
constexpr HeadAngles to{45.0, 90.0};

Raised Plan(IQMVCalculator2& calculator, RequiredMoves& moves) {
    Promise(calculator.SetCurrentHeadPosition(from.a, from.b) == S_OK, "angles that can be reached are accepted");
    return RaisedBy([&] { calculator.CalculateMove(to.a, to.b, &moves); });
}

/// The mounting angle of the head, from a plan.
double MountingAngleIn(const RequiredMoves& moves) {
    const Vector3 axis = AxisOf(moves.UnLock);
    return qmv40::model::ToDegrees(std::atan2(-axis.y, -axis.x));
}

void PromiseGeometry(IQMVCalculator2& calculator, double captureB) {
    XYZData pole{};
    Promise(calculator.GetPoleSpherePosition(&pole) == S_OK, "there is always a pole sphere");
    const Vector3 centre = PositionIn(pole);
    Promise(std::isfinite(centre.x) && std::isfinite(centre.y) && std::isfinite(centre.z),
            "an accepted geometry has a finite pole sphere");
    RequiredMoves moves{};
    Promise(Plan(calculator, moves).code == S_OK, "with a geometry and a position there is a plan");
    // For a head that was captured at an infinite angle the mounting angle is undetermined.
    if (Length(centre) > farthestCentre || !std::isfinite(captureB)) return;
    PromisePlan(moves, IdealHead(MountingAngleIn(moves), centre), from, to);
}

void PromiseTruth(IQMVCalculator2& calculator, const Capture& capture) {
    // So much can the rounding of coordinates of some thousands change the result, on the shortest arcs tried here.
    constexpr double tolerance = 1e-6;
    XYZData pole{};
    RequiredMoves moves{};
    Promise(calculator.GetPoleSpherePosition(&pole) == S_OK, "there is a pole sphere");
    Promise(Length(PositionIn(pole) - capture.head.pole) <= tolerance, "the points of a head give its pole");
    Promise(Plan(calculator, moves).code == S_OK, "the points of a head give plans");
    const double off = std::remainder(MountingAngleIn(moves) - capture.head.mountingAngle, 360.0);
    Promise(std::abs(off) <= tolerance, "the points of a head give its mounting angle");
}

RequiredMoves PlanFromGoodPoints(IQMVCalculator2& calculator, const Capture& capture) {
    AlignmentArray a(capture.ASet(7));
    AlignmentArray b(capture.BSet(7));
    Promise(calculator.EnterHeadGeometry(a.Address(), b.Address()) == S_OK, "the points of a head are accepted");
    PromiseTruth(calculator, capture);
    RequiredMoves moves{};
    Plan(calculator, moves);
    return moves;
}

void PromiseRefusal(const Raised& entered, const std::optional<Refusal>& expected) {
    Promise(entered.record.has_value(), "a refusal leaves an error record");
    if (expected) {
        Promise(entered.code == expected->code, "the first fault of the arrays decides the code");
        Promise(entered.record->description == expected->description, "the first fault of the arrays decides the text");
        return;
    }
    Promise(entered.code == QMV_E_GEOMETRY_IMPOSSIBLE || entered.code == QMV_E_GEOMETRY_LIMIT_REACHED,
            "impossible points have the code for that");
}

Items TakeItems(FuzzedDataProvider& input, const Capture& capture, bool isASet) {
    if (input.ConsumeBool()) return TakeAnyItems(input, isASet);
    const int count = input.ConsumeIntegralInRange(2, 40);
    Items items = isASet ? capture.ASet(count) : capture.BSet(count);
    Damage(items, input);
    return items;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedDataProvider input(data, size);
    const Capture capture = Capture::Take(input);
    const ComPointer<IQMVCalculator2> object = CreateCalculator();
    IQMVCalculator2& calculator = *object.Get();
    const bool hadGeometry = input.ConsumeBool();
    if (hadGeometry) PlanFromGoodPoints(calculator, capture);
    Promise(calculator.SetCurrentHeadPosition(from.a, from.b) == S_OK, "angles that can be reached are accepted");

    HostileArray a(TakeItems(input, capture, true), input);
    HostileArray separate(TakeItems(input, capture, false), input);
    HostileArray& b = input.ConsumeIntegralInRange(0, 20) == 20 ? a : separate;
    const std::optional<Refusal> refusal = ExpectedRefusal(a, b);
    const std::string images = a.Image() + b.Image();
    const Raised entered = ReturnedBy([&] { return calculator.EnterHeadGeometry(a.Address(), b.Address()); });
    Promise(a.Image() + b.Image() == images, "the caller's arrays do not change");
    Promise(StandsAt(calculator, from), "a geometry does not change the position");
    if (entered.code == S_OK) {
        Promise(!refusal && !entered.record, "wrong arrays are refused");
        PromiseGeometry(calculator, a.Counted().front().BPosition);
        return 0;
    }
    PromiseRefusal(entered, refusal);
    RequiredMoves moves{};
    Promise(Plan(calculator, moves).code == (hadGeometry ? S_OK : QMV_E_NO_HEAD_GEOMETRY),
            "a refused geometry neither makes a geometry available nor removes one");
    const ComPointer<IQMVCalculator2> fresh = CreateCalculator();
    Promise(SamePlan(PlanFromGoodPoints(calculator, capture), PlanFromGoodPoints(*fresh.Get(), capture)),
            "after a refusal good points give the plans of a new calculator");
    return 0;
}
