#include "calculator/TargetAngles.h"

#include "errors/RaiseError.h"

#include <cmath>
#include <cstdint>
#include <limits>

namespace {

[[noreturn]] void Refuse(const wchar_t* description) {
    RaiseError(QMV_E_INVALID_TARGET, L"CQMVCalculator::ValidateMoveTarget", description);
}

bool IsOnStep(double angle) noexcept {
    constexpr double step = 15.0;
    // Quicker than the remainder's own function and, within the range, as exact: a whole number of steps and its
    // product with the step are, and no other angle is such a product.
    return step * std::trunc(angle / step) == angle;
}

} // namespace

void ValidateMoveTarget(double a, double b) {
    if (a < 0.0 || a > 90.0) Refuse(L"Invalid A Target Angle, value must be between 0 and 90.");
    if (b < -180.0 || b > 180.0) Refuse(L"Invalid B Target Angle, value must be between -180 and 180.");
    // Not-a-number passes both ranges, every comparison with it being false, and is refused here.
    if (!IsOnStep(a)) Refuse(L"Invalid A Target Angle, value must be a 15 degree interval.");
    if (!IsOnStep(b)) Refuse(L"Invalid B Target Angle, value must be a 15 degree interval.");
}

double RoundToWholeDegree(double angle) noexcept {
    using Whole = std::int32_t;
    constexpr double lowest = std::numeric_limits<Whole>::min();
    constexpr double highest = std::numeric_limits<Whole>::max();
    const double shifted = angle > 0.0 ? angle + 0.5 : angle - 0.5;
    // Conversion of anything else is undefined in C++; give it the value that x86-64 gives.
    const bool fits = shifted > lowest - 1.0 && shifted < highest + 1.0;
    return fits ? static_cast<double>(static_cast<Whole>(shifted)) : lowest;
}
