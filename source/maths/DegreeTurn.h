#pragma once

#include "maths/ElementaryFunctions.h"

#include <cmath>
#include <limits>
#include <numbers>

namespace qmv40 {

/// Cosine and sine of an angle in degrees. Whole turns and quarter turns are subtracted first, in degrees and without
/// rounding, so that multiples of 90 degrees of any size give exact results. An angle that is not finite gives
/// not-a-number.
struct DegreeTurn {
    explicit DegreeTurn(double angleDegrees) noexcept {
        if (!std::isfinite(angleDegrees)) return;
        const double withinTurn = std::fmod(angleDegrees, 360.0);
        const double quarters = std::nearbyint(withinTurn / 90.0);
        const double radians = (withinTurn - quarters * 90.0) * (std::numbers::pi / 180.0);
        const double c = Cosine(radians), s = Sine(radians);
        const int quarter = static_cast<int>(quarters) & 3;
        cosine = quarter == 0 ? c : quarter == 1 ? -s : quarter == 2 ? -c : s;
        sine = quarter == 0 ? s : quarter == 1 ? c : quarter == 2 ? -s : -c;
    }

    bool IsNone() const noexcept { return cosine == 1.0 && sine == 0.0; }

    double cosine = std::numeric_limits<double>::quiet_NaN();
    double sine = std::numeric_limits<double>::quiet_NaN();
};

} // namespace qmv40
