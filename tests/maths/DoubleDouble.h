#pragma once

#include <cmath>

/// A number of about 32 digits: the unevaluated sum of two doubles. The tests compare the component's arithmetic with
/// it. It is valid for sizes between 1e-140 and 1e140, in the rounding mode to nearest.
class DoubleDouble {
public:
    DoubleDouble(double value = 0.0) noexcept : high(value) {}
    DoubleDouble(double value, double rest) noexcept : DoubleDouble(SumOf(value, rest)) {}

    explicit operator double() const noexcept { return high; }

    friend DoubleDouble operator-(DoubleDouble a) noexcept { return Parts(-a.high, -a.low); }
    friend DoubleDouble operator+(DoubleDouble a, DoubleDouble b) noexcept {
        const DoubleDouble sum = SumOf(a.high, b.high), rest = SumOf(a.low, b.low);
        const DoubleDouble nearly = QuickSumOf(sum.high, sum.low + rest.high);
        return QuickSumOf(nearly.high, nearly.low + rest.low);
    }
    friend DoubleDouble operator-(DoubleDouble a, DoubleDouble b) noexcept { return a + -b; }
    friend DoubleDouble operator*(DoubleDouble a, DoubleDouble b) noexcept {
        const DoubleDouble product = ProductOf(a.high, b.high);
        return QuickSumOf(product.high, product.low + (a.high * b.low + a.low * b.high));
    }
    friend DoubleDouble operator/(DoubleDouble a, DoubleDouble b) noexcept {
        const double first = a.high / b.high;
        const DoubleDouble afterFirst = a - b * first;
        const double second = afterFirst.high / b.high;
        const DoubleDouble afterSecond = afterFirst - b * second;
        return DoubleDouble(first, second) + afterSecond.high / b.high;
    }
    friend DoubleDouble Sqrt(DoubleDouble a) noexcept {
        if (a.high <= 0.0) return 0.0;
        const double root = std::sqrt(a.high);
        return DoubleDouble(root, (a - ProductOf(root, root)).high / (2.0 * root));
    }
    friend bool operator<(DoubleDouble a, DoubleDouble b) noexcept { return (a - b).high < 0.0; }

    DoubleDouble& operator+=(DoubleDouble b) noexcept { return *this = *this + b; }
    DoubleDouble& operator-=(DoubleDouble b) noexcept { return *this = *this - b; }

private:
    static DoubleDouble Parts(double high, double low) noexcept {
        DoubleDouble parts;
        parts.high = high;
        parts.low = low;
        return parts;
    }
    /// Exact when |a| >= |b|.
    static DoubleDouble QuickSumOf(double a, double b) noexcept {
        const double sum = a + b;
        return Parts(sum, b - (sum - a));
    }
    static DoubleDouble SumOf(double a, double b) noexcept {
        const double sum = a + b, part = sum - a;
        return Parts(sum, (a - (sum - part)) + (b - part));
    }
    static DoubleDouble ProductOf(double a, double b) noexcept {
        const DoubleDouble x = HalvesOf(a), y = HalvesOf(b);
        const double product = a * b;
        return Parts(product, ((x.high * y.high - product) + x.high * y.low + x.low * y.high) + x.low * y.low);
    }
    static DoubleDouble HalvesOf(double a) noexcept {
        const double shifted = 134217729.0 * a; // 2^27 + 1: leaves the upper half of the 53 bits
        const double upper = shifted - (shifted - a);
        return Parts(upper, a - upper);
    }

    double high = 0.0, low = 0.0;
};
