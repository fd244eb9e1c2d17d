#include "maths/CMaVector.h"

#include "maths/CMaPoint.h"
#include "maths/DegreeTurn.h"

#include <algorithm>
#include <cmath>
#include <limits>

using namespace qmv40;

double CMaVector::Magnitude() const noexcept {
    const double plain = *this % *this;
    // Within these bounds no square overflowed, and a square that underflowed is too small to change the sum.
    if (plain > 1e-280 && plain < 1e300) return std::sqrt(plain);
    const double x = std::fabs(components[0]), y = std::fabs(components[1]), z = std::fabs(components[2]);
    if (std::isinf(x) || std::isinf(y) || std::isinf(z)) return std::numeric_limits<double>::infinity();
    const double largest = std::max({x, y, z});
    if (largest == 0.0 || std::isnan(plain)) return plain;
    const int exponent = std::ilogb(largest);
    const CMaVector scaled(std::ldexp(x, -exponent), std::ldexp(y, -exponent), std::ldexp(z, -exponent));
    return std::ldexp(std::sqrt(scaled % scaled), exponent);
}

void CMaVector::Rotate(double angleDegrees, EAxisType axis, const CMaPoint& centre) {
    const int along = Checked(static_cast<int>(axis));
    const DegreeTurn turn(angleDegrees);
    if (turn.IsNone()) return;
    const CMaVector pivot = centre.To3DVector();
    const int first = (along + 1) % 3, second = (along + 2) % 3;
    const double a = components[first] - pivot[first];
    const double b = components[second] - pivot[second];
    components[first] = pivot[first] + (a * turn.cosine - b * turn.sine);
    components[second] = pivot[second] + (a * turn.sine + b * turn.cosine);
}
