#include "calculator/TargetAngles.h"

#include "errors/RaiseError.h"

#include <cmath>
#include <cstdint>
#include <limits>

namespace qmv40 {

namespace {

[[noreturn]] void Refuse(const wchar_t* description) {
    RaiseError(QMV_E_INVALID_TARGET, L"CQMVCalculator::ValidateMoveTarget", description);
}

bool IsOnStep(double angle) noexcept { return std::fmod(angle, 15.0) == 0.0; }

} // namespace

void ValidateMoveTarget(double a, double b) {
    if (a < 0.0 || a > 90.0) Refuse(L"Invalid A Target Angle, value must be between 0 and 90.");
    if (b < -180.0 || b > 180.0) Refuse(L"Invalid B Target Angle, value must be between -180 and 180.");
    // Not-a-number passes the range tests, because every comparison with it is false. It is refused here.
    if (!IsOnStep(a)) Refuse(L"Invalid A Target Angle, value must be a 15 degree interval.");
    if (!IsOnStep(b)) Refuse(L"Invalid B Target Angle, value must be a 15 degree interval.");
}

double RoundToWholeDegree(double angle) noexcept {
    using Whole = std::int32_t;
    constexpr double lowest = std::numeric_limits<Whole>::min();
    constexpr double highest = std::numeric_limits<Whole>::max();
    const double shifted = angle > 0.0 ? angle + 0.5 : angle - 0.5;
    // C++ leaves the conversion of any other value undefined: it gets the value that x86-64 gives.
    const bool fits = shifted > lowest - 1.0 && shifted < highest + 1.0;
    return fits ? static_cast<double>(static_cast<Whole>(shifted)) : lowest;
}

} // namespace qmv40
