#pragma once

#include "tests/maths/ExactVector.h"
#include "tests/maths/GeometryChecks.h"

#include <optional>

/// The error of a fitted circle, and the error that the rounding of the points alone can cause.
/// The exact circle is the minimum of the sum of squares that is nearest to the fitted circle. It is computed from the
/// definition with 32 digits, by Newton's method with a numerical Hessian (differences of the gradient).
class CircleCertificate {
public:
    struct Difference {
        double centre = 0.0, radius = 0.0, normal = 0.0;
    };

    CircleCertificate(const std::vector<Coordinates>& points, const CMaCircle& fitted)
        : unit(fitted.GetRadius()), exact(Exactly(points)) {
        const CMaVector centre = fitted.GetCentre().To3DVector(), normal = fitted.GetNormal();
        const Circle start =
            AroundThePoints({centre[0], centre[1], centre[2]}, UnitAlong({normal[0], normal[1], normal[2]}), unit);
        isMinimum = FindTheMinimum(start);
        if (!isMinimum) return;
        error = DifferenceOf(start, best);
        MeasureRoundings();
    }

    /// Whether the Hessian is positive definite at the fitted circle. If not, there is no exact circle to compare with.
    bool isMinimum;
    /// The difference between the fitted circle and the exact one.
    Difference error;
    /// The largest change of the exact circle when the coordinates are changed at random by up to half a unit in the
    /// last place (8 tries).
    Difference floor;

private:
    /// A shift of the apex along X, Y and Z, the two tilts of the plane about it, and a change of the radius that keeps
    /// the apex; lengths in units of the fitted radius. (On a short arc a shift of the centre and a change of the
    /// radius would be strongly correlated.)
    using Unknowns = std::array<DoubleDouble, 6>;
    struct Circle {
        ExactVector apex; ///< the point of the circle in the middle of the measured arc
        ExactVector outward, normal;
        DoubleDouble radius;

        ExactVector Centre() const { return Minus(apex, Scaled(outward, radius)); }
    };

    static Difference DifferenceOf(const Circle& a, const Circle& b) {
        return {Norm(Minus(a.Centre(), b.Centre())), std::fabs(static_cast<double>(a.radius - b.radius)),
                Norm(Minus(a.normal, b.normal))};
    }

    Circle AroundThePoints(const ExactVector& centre, const ExactVector& normal, DoubleDouble radius) const {
        ExactVector sum{};
        for (const ExactVector& p : exact) sum = Plus(sum, Minus(p, centre));
        const bool allRound = Norm(sum) < 1e-3 * static_cast<double>(exact.size()) * unit;
        const ExactVector outward = UnitAlong(Across(allRound ? Minus(exact[0], centre) : sum, normal));
        return {Plus(centre, Scaled(outward, radius)), outward, normal, radius};
    }

    Circle Moved(const Circle& c, const Unknowns& by) const {
        const ExactVector tilt = Plus(Scaled(c.outward, by[3]), Scaled(Cross(c.normal, c.outward), by[4]));
        const ExactVector normal = UnitAlong(Plus(c.normal, tilt));
        return {Plus(c.apex, Scaled({by[0], by[1], by[2]}, unit)), UnitAlong(Across(c.outward, normal)), normal,
                c.radius + by[5] * unit};
    }

    /// The gradient of half the sum of g^2 + h^2. g is a point's distance from the axis minus the radius, h its
    /// distance from the plane.
    Unknowns GradientAt(const Circle& c, const std::vector<ExactVector>& points) const {
        const ExactVector centre = c.Centre(), sideways = Cross(c.normal, c.outward);
        ExactVector ofShift{};
        DoubleDouble ofForward, ofSideways, ofRadius;
        for (const ExactVector& p : points) {
            const ExactVector arm = Minus(p, centre);
            const DoubleDouble h = Dot(arm, c.normal);
            const ExactVector spoke = Minus(arm, Scaled(c.normal, h));
            const DoubleDouble rho = Sqrt(Dot(spoke, spoke)), perRho = DoubleDouble(1.0) / rho, g = rho - c.radius;
            ofShift = Minus(ofShift, Plus(Scaled(spoke, g * perRho), Scaled(c.normal, h)));
            const DoubleDouble turn = h * c.radius * perRho; // about the centre
            ofForward += turn * Dot(arm, c.outward);
            ofSideways += turn * Dot(arm, sideways);
            ofRadius -= g;
        }
        ofForward += Dot(ofShift, c.normal) * c.radius;
        ofRadius -= Dot(ofShift, c.outward);
        return {ofShift[0] * unit, ofShift[1] * unit, ofShift[2] * unit, ofForward, ofSideways, ofRadius * unit};
    }

    /// Central differences, right to 20 digits.
    std::array<Unknowns, 6> HessianAt(const Circle& c) const {
        constexpr double step = 1e-10;
        std::array<Unknowns, 6> columns;
        for (std::size_t k = 0; k < 6; ++k) {
            Unknowns by{};
            by[k] = step;
            const Unknowns ahead = GradientAt(Moved(c, by), exact);
            by[k] = -step;
            const Unknowns behind = GradientAt(Moved(c, by), exact);
            for (std::size_t i = 0; i < 6; ++i) columns[k][i] = (ahead[i] - behind[i]) / (2.0 * step);
        }
        return columns;
    }

    /// Gaussian elimination. Nothing when the Hessian is not positive definite.
    std::optional<Unknowns> NewtonStep(const Unknowns& gradient) const {
        auto m = hessian;
        Unknowns x = gradient;
        for (std::size_t i = 0; i < 6; ++i) {
            if (!(DoubleDouble(0.0) < m[i][i])) return std::nullopt;
            for (std::size_t row = i + 1; row < 6; ++row) {
                const DoubleDouble factor = m[row][i] / m[i][i];
                for (std::size_t k = i; k < 6; ++k) m[row][k] -= factor * m[i][k];
                x[row] -= factor * x[i];
            }
        }
        for (std::size_t i = 6; i-- > 0;) {
            for (std::size_t k = i + 1; k < 6; ++k) x[i] -= m[i][k] * x[k];
            x[i] = -(x[i] / m[i][i]);
        }
        return x;
    }

    bool FindTheMinimum(const Circle& start) {
        best = start;
        hessian = HessianAt(start);
        for (int i = 0; i < 4; ++i) {
            const std::optional<Unknowns> step = NewtonStep(GradientAt(best, exact));
            if (!step) return false;
            best = Moved(best, *step);
        }
        return true;
    }

    void MeasureRoundings() {
        std::mt19937_64 random(exact.size());
        for (int i = 0; i < 8; ++i) {
            const std::vector<ExactVector> rounded = RoundedAtRandom(exact, random);
            const Difference moved = DifferenceOf(Moved(best, *NewtonStep(GradientAt(best, rounded))), best);
            floor = {std::max(floor.centre, moved.centre), std::max(floor.radius, moved.radius),
                     std::max(floor.normal, moved.normal)};
        }
    }

    double unit;
    std::vector<ExactVector> exact;
    std::array<Unknowns, 6> hessian;
    Circle best;
};
