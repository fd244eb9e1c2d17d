// The elementary functions in double operations, which every processor rounds in the same way. Intermediate
// values are double-double numbers: the unevaluated sum of two doubles, about 106 bits. The result is rounded once, at
// the end: its error is below half a unit in the last place plus 2^-20 of one. Only additions and multiplications that
// are rounded to double may be used here, in the order written.

#include "maths/ElementaryFunctions.h"

#include <array>
#include <cfloat>
#include <cmath>

static_assert(FLT_EVAL_METHOD == 0, "each operation must be rounded to double: SSE2 arithmetic");

namespace qmv40 {

namespace {

struct DoubleDouble {
    double high;
    double low; ///< at most half a unit in the last place of `high`, except in the result of Halves
};

/// a + b, exactly, where |a| >= |b| (Dekker's fast two-sum).
constexpr DoubleDouble SumOfOrdered(double a, double b) {
    const double sum = a + b;
    return {sum, b - (sum - a)};
}

/// a + b, exactly (Knuth).
constexpr DoubleDouble Sum(double a, double b) {
    const double sum = a + b;
    const double ofB = sum - a;
    return {sum, (a - (sum - ofB)) + (b - ofB)};
}

/// The upper 26 bits of `a`, and the rest (Veltkamp's splitting).
constexpr DoubleDouble Halves(double a) {
    const double shifted = 0x1.0000002p27 * a;
    const double upper = shifted - (shifted - a);
    return {upper, a - upper};
}

/// a * b, exactly (Dekker).
constexpr DoubleDouble Product(double a, double b) {
    const double product = a * b;
    const DoubleDouble x = Halves(a), y = Halves(b);
    return {product, ((x.high * y.high - product) + x.high * y.low + x.low * y.high) + x.low * y.low};
}

constexpr DoubleDouble operator-(const DoubleDouble& a) { return {-a.high, -a.low}; }

constexpr DoubleDouble operator+(const DoubleDouble& a, const DoubleDouble& b) {
    const DoubleDouble sum = Sum(a.high, b.high);
    return SumOfOrdered(sum.high, sum.low + (a.low + b.low));
}

constexpr DoubleDouble operator*(const DoubleDouble& a, const DoubleDouble& b) {
    const DoubleDouble product = Product(a.high, b.high);
    return SumOfOrdered(product.high, product.low + (a.high * b.low + a.low * b.high));
}

/// 1 / n! up to n = 21. All these factorials are doubles.
constexpr auto inverseFactorials = [] {
    std::array<DoubleDouble, 22> inverses{};
    double factorial = 1.0;
    for (std::size_t n = 0; n != inverses.size(); ++n) {
        if (n > 0) factorial *= static_cast<double>(n);
        const double inverse = 1.0 / factorial;
        const DoubleDouble product = Product(inverse, factorial);
        inverses[n] = {inverse, ((1.0 - product.high) - product.low) / factorial};
    }
    return inverses;
}();

/// The Taylor series 1 / first! - z / (first + 2)! + z^2 / (first + 4)! - ..., for z up to (pi/4)^2. The
/// terms left out are below 2^-77. From the sixth term on the sum is below 2^-24 of the whole: plain doubles are enough
/// there.
template <std::size_t first> DoubleDouble Series(const DoubleDouble& z) {
    double rest = 0.0;
    for (std::size_t term = 10; term >= 5; --term) rest = inverseFactorials[first + 2 * term].high - z.high * rest;
    DoubleDouble sum{rest, 0.0};
    for (std::size_t term = 5; term-- > 0;) sum = inverseFactorials[first + 2 * term] + -(z * sum);
    return sum;
}

struct SineAndCosine {
    DoubleDouble sine;
    DoubleDouble cosine;
};

/// Whole quarter turns are subtracted first. Of the four parts of pi/2 (Cody and Waite) the first three have 33 bits
/// each: their products with the count of quarters are exact.
SineAndCosine Turn(double angle) {
    const double quarters = std::nearbyint(angle * 0x1.45f306dc9c883p-1);
    DoubleDouble rest{angle, 0.0};
    for (const double part : {0x1.921fb544p+0, 0x1.0b4611a6p-34, 0x1.3198a2ep-69, 0x1.b839a252049c1p-104})
        rest = rest + DoubleDouble{-quarters * part, 0.0};
    const DoubleDouble square = rest * rest;
    const DoubleDouble sine = rest * Series<1>(square), cosine = Series<0>(square);
    const int quarter = static_cast<int>(quarters) & 3;
    if (quarter == 0) return {sine, cosine};
    if (quarter == 1) return {cosine, -sine};
    if (quarter == 2) return {-sine, -cosine};
    return {-cosine, sine};
}

/// For more radians the products above are rounded. The component's own angles are within two turns.
constexpr double longestAngle = 0x1p19;
/// For fewer radians the sine, rounded to double, is the angle itself.
constexpr double shortestAngle = 0x1p-27;

} // namespace

double Sine(double angle) noexcept {
    if (std::fabs(angle) < shortestAngle) return angle;
    return std::fabs(angle) < longestAngle ? Turn(angle).sine.high : std::sin(angle);
}

double Cosine(double angle) noexcept {
    return std::fabs(angle) < longestAngle ? Turn(angle).cosine.high : std::cos(angle);
}

double ArcTangent(double slope) noexcept { return ArcTangent(slope, 1.0); }

double ArcTangent(double y, double x) noexcept {
    // The angle between this direction and (x, y) is so small that it equals its tangent.
    const double approximation = std::atan2(y, x);
    const auto isShort = [](double length) { return std::fabs(length) < 0x1p400; };
    const bool isLong = std::fabs(x) > 0x1p-400 || std::fabs(y) > 0x1p-400;
    // The products below are not exact for a very short vector, and not finite for a very long one.
    if (y == 0.0 || !isLong || !isShort(x) || !isShort(y)) return approximation;
    const auto [sine, cosine] = Turn(approximation);
    const DoubleDouble across = cosine * DoubleDouble{y, 0.0} + -(sine * DoubleDouble{x, 0.0});
    const DoubleDouble along = cosine * DoubleDouble{x, 0.0} + sine * DoubleDouble{y, 0.0};
    return approximation + across.high / along.high;
}

} // namespace qmv40
