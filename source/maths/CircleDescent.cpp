#include "maths/CircleDescent.h"

#include <cmath>
#include <limits>

namespace {

constexpr double epsilon = std::numeric_limits<double>::epsilon();
constexpr double infinity = std::numeric_limits<double>::infinity();

/// Undamped Gauss-Newton steps where the points lie near the circle; otherwise Newton's steps where the sum of squares
/// is shaped like a bowl and these lead down, and damped Gauss-Newton steps elsewhere.
class Descent {
public:
    Descent(const ScaledPoints& thePoints, const ApexCircle& start, DescentLimits& theLimits)
        : points(thePoints), limits(theLimits), circle(start), here(Look(start)) {}

    /// Nothing when the circle turns into a straight line.
    std::optional<FoundCircle> Run() {
        if (Glide()) return FoundCircle{circle, here.value};
        here.MakeExact(circle, points);
        while (straightSteps < 3 && looks < enough) {
            if (++tries > patience) return FoundCircle{circle, here.value};
            const std::optional<Vector6> change = here.Step(newton ? 0.0 : damping);
            const bool done = change ? Step(*change) : ChangeCourse();
            if (done) return FoundCircle{circle, here.value};
            if (damping > hopeless) return std::nullopt;
        }
        return std::nullopt;
    }

private:
    static constexpr double dampingLimit = 1e9; ///< steps are so small that they change nothing
    static constexpr double hopeless = 1e3 * dampingLimit;
    /// A valley whose floor is level may turn without end: so many tries that lead no further down are enough.
    static constexpr int patience = 50;
    /// Whoever has not arrived by then never does: it is creeping towards a straight line.
    static constexpr int enough = 500;

    /// With the exact Hessian for a step of Newton's.
    Expansion Look(const ApexCircle& at, bool exact = false) {
        ++looks;
        if (limits.looksLeft-- <= 0) throw GeometryError(GeometryError::Reason::LimitReached);
        Expansion expansion(at, points);
        if (exact) expansion.MakeExact(at, points);
        return expansion;
    }

    /// Gauss-Newton steps, where the circle stands far out of the noise. There they cost half of Newton's, and leave
    /// little of what was wrong. True when the minimum is reached.
    bool Glide() {
        constexpr double little = 0.01;
        const double noise = FoundCircle{circle, here.value}.NoiseInHeight(points);
        double last = infinity;
        while (const std::optional<Vector6> change = here.Step(0.0)) {
            const double size = SizeOf(*change, circle.radius);
            const double left = std::max({noise, size, size / last});
            if (!(left <= little)) return false;
            circle = Changed(circle, *change);
            if (left * size < epsilon) return true;
            here = Look(circle);
            last = size;
        }
        return false;
    }

    /// The sum of squares is not shaped like a bowl here. True when it is level all the same, and leads down nowhere.
    bool ChangeCourse() {
        const bool level = newton && relaxedSize < 1e-6;
        if (level) return !LeaveTheSaddle();
        LeaveTheBowl();
        return false;
    }

    /// Off a saddle along its steepest way down, which the gradient does not show. False when there is none.
    bool LeaveTheSaddle() {
        const Expansion bowl = Look(circle);
        Vector6 scale;
        for (std::size_t i = 0; i < 6; ++i) scale[i] = 1.0 / std::sqrt(bowl.hessian[i][i]);
        Matrix6 scaled = here.hessian;
        for (std::size_t i = 0; i < 6; ++i)
            for (std::size_t k = 0; k < 6; ++k) scaled[i][k] *= scale[i] * scale[k];
        const SymmetricEigen<6> eigen(scaled);
        relaxedSize = infinity;
        for (double length = 0.5 * std::sqrt(2.0 * here.value); length * length > Noise(here.value); length *= -0.5) {
            Vector6 change;
            for (std::size_t i = 0; i < 6; ++i) change[i] = length * scale[i] * eigen.vectors[i][5];
            const ApexCircle next = Changed(circle, change);
            const Expansion there = Look(next, true);
            if (!(there.value < here.value - Noise(here.value))) continue;
            circle = next;
            here = there;
            tries = 0;
            return true;
        }
        return false;
    }

    /// Here the sum of squares is not shaped like a bowl, or a step led up: on with damped Gauss-Newton steps.
    void LeaveTheBowl() {
        if (newton)
            here = Look(circle, newton = false);
        else
            damping *= 10.0;
    }

    /// Takes one step, if it leads down. True when the minimum is reached.
    bool Step(const Vector6& change) {
        const double size = SizeOf(change, circle.radius);
        const ApexCircle next = Changed(circle, change);
        if (newton && IsLast(size)) {
            circle = next;
            return true;
        }
        const Expansion there = Look(next, newton);
        if (!(there.value <= here.value + Noise(here.value))) return Retreat();
        const bool lower = there.value < here.value - Noise(here.value);
        if (lower) tries = 0;
        circle = next;
        here = there;
        straightSteps = circle.radius > limits.straightRadius ? straightSteps + 1 : 0;
        return newton ? IsStalled(size, lower) : Relax(size);
    }

    /// Changes below this say nothing about the way down.
    double Noise(double value) const noexcept { return 1e-9 * value + RoundingOf(value, points); }

    bool Retreat() {
        if (damping > dampingLimit) return true;
        LeaveTheBowl();
        return false;
    }

    /// A step down with damping: less of it from here, and back to Newton's steps when the minimum is near.
    bool Relax(double size) {
        damping = std::max(0.1 * damping, epsilon);
        relaxedSize = size;
        if (size > 0.1) return false;
        newton = true;
        here.MakeExact(circle, points);
        lastSize = smallestSize = infinity;
        return false;
    }

    /// Newton's steps shrink by squares: this one, or the one that would follow, is lost in the rounding. The sum of
    /// squares cannot tell: it is flat to its last digit long before the circle is right.
    bool IsLast(double size) noexcept {
        const double ratio = size / lastSize;
        lastSize = size;
        return size < 2.0 * epsilon || (size < 1e-9 && size * ratio * ratio < 0.25 * epsilon);
    }

    /// The rounding of the points lets the steps shrink no more.
    bool IsStalled(double size, bool lower) noexcept {
        stalls = size > 0.5 * smallestSize && !lower ? stalls + 1 : 0;
        smallestSize = std::min(size, smallestSize);
        return stalls > 2;
    }

    const ScaledPoints& points;
    DescentLimits& limits;
    ApexCircle circle;
    int looks = 0;
    Expansion here;
    bool newton = true;
    double damping = 1e-3;         ///< of Gauss-Newton steps, relative
    double relaxedSize = infinity; ///< of the last step with damping
    double lastSize = infinity;
    double smallestSize = infinity;
    int stalls = 0;
    int straightSteps = 0;
    int tries = 0; ///< since the sum of squares was last lowered
};

} // namespace

double RoundingOf(double value, const ScaledPoints& points) noexcept {
    const auto count = static_cast<double>(points.GetSize());
    const double each = 4.0 * (points.GetRounding() + epsilon);
    return each * (std::sqrt(2.0 * value * count) + count * each);
}

double FoundCircle::NoiseInHeight(const ScaledPoints& points) const noexcept {
    const double noise = std::sqrt(2.0 * value / static_cast<double>(points.GetSize()));
    const double height = std::min(heightTimesRadius / circle.radius, 2.0 * circle.radius);
    return noise / height;
}

std::optional<FoundCircle> Descend(const ScaledPoints& points, const ApexCircle& start, DescentLimits& limits) {
    return Descent(points, start, limits).Run();
}
