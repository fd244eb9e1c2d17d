#include "maths/fit/CircleSolver.h"

#include <cmath>
#include <limits>

// The geometric (orthogonal distance) fit of a circle in space, a nonlinear least-squares problem with six unknowns.
// The solver combines the standard methods (Nocedal and Wright, Numerical Optimization, chapters 3 and 10):
//
// 1. Gauss-Newton without damping, while the distances of the points are below 1 % of the sagitta. It needs one pass
//    over the points for a step, and the error shrinks by the factor noise / sagitta in each step.
// 2. Newton with the exact Hessian otherwise. It needs two passes, and converges quadratically on noisy arcs too.
// 3. Gauss-Newton with Marquardt's damping (Levenberg-Marquardt) where the Hessian is not positive definite, or where
//    Newton's step would increase the sum of squares; back to Newton when the steps are below 10 % of the radius.
// 4. At a saddle point, a line search along the direction of negative curvature.
// The normal end is a small step. A small change of the sum of squares is no criterion: near the minimum an error of
// 1e-8 of the noise changes it by about 1e-16 of itself, which is less than one rounding. But the solver also stops
// where the steps do not become small and the sum has not decreased for several of them: see IsStalled and
// maxStepsWithoutDecrease.

namespace qmv40::fit {

namespace {

constexpr double epsilon = std::numeric_limits<double>::epsilon();
constexpr double infinity = std::numeric_limits<double>::infinity();

class Solver {
public:
    Solver(const ScaledPoints& thePoints, const ApexCircle& initialGuess, SolverLimits& theLimits)
        : points(thePoints), limits(theLimits), circle(initialGuess), objective(Evaluate(initialGuess)) {}

    /// Nothing when the circle degenerates to a straight line.
    std::optional<SolvedCircle> Run() {
        if (GaussNewtonPhase()) return Result();
        objective.MakeHessianExact(circle, points);
        while (straightSteps < maxStraightSteps && evaluations < maxEvaluations) {
            if (++stepsWithoutDecrease > maxStepsWithoutDecrease) return Result();
            const std::optional<Vector6> change = objective.Step(isNewton ? 0.0 : damping);
            const bool done = change ? TryStep(*change) : LeaveIndefiniteRegion();
            if (done) return Result();
            if (damping > divergedDamping) return std::nullopt;
        }
        return std::nullopt;
    }

private:
    // None of these limits is critical: the certified cases of the tests come out right with a maxDamping of 1e5 or
    // 1e12, with 500 steps without decrease, and with 1 or 4 straight steps too.

    /// The step is then about 1e-9 of the undamped one. If the sum of squares still grows, rounding hides the decrease.
    static constexpr double maxDamping = 1e9;
    /// If the matrix is still not positive definite, it is not finite or has a zero on its diagonal.
    static constexpr double divergedDamping = 1e3 * maxDamping;
    /// If the minimum is a curve instead of a point, the steps can follow the curve forever.
    static constexpr int maxStepsWithoutDecrease = 50;
    /// The hardest of the tests' certified cases need 45. A fit that needs more than 500 diverges towards a line.
    static constexpr int maxEvaluations = 500;
    /// The radius may exceed limits.straightRadius in one or two steps and be smaller again in the next.
    static constexpr int maxStraightSteps = 3;

    SolvedCircle Result() const noexcept { return {circle, objective.value}; }

    CircleObjective Evaluate(const ApexCircle& at, bool withExactHessian = false) {
        ++evaluations;
        if (limits.evaluationsLeft-- <= 0) throw GeometryError(GeometryError::Reason::LimitReached);
        CircleObjective evaluated(at, points);
        if (withExactHessian) evaluated.MakeHessianExact(at, points);
        return evaluated;
    }

    /// Undamped Gauss-Newton, as long as each step leaves less than 1 % of the error. True when the minimum is reached.
    bool GaussNewtonPhase() {
        constexpr double maxErrorLeft = 0.01;
        const double noise = Result().NoiseOverSagitta(points);
        double lastStep = infinity;
        while (const std::optional<Vector6> change = objective.Step(0.0)) {
            const double step = SizeOf(*change, circle.radius);
            const double errorLeft = std::max({noise, step, step / lastStep});
            if (!(errorLeft <= maxErrorLeft)) return false;
            circle = Changed(circle, *change);
            if (errorLeft * step < epsilon) return true; // the next step would be below the rounding
            objective = Evaluate(circle);
            lastStep = step;
        }
        return false;
    }

    /// Called when the Hessian is not positive definite. True at a stationary point that is no saddle point.
    bool LeaveIndefiniteRegion() {
        constexpr double stationary = 1e-6; // relative size of the last Gauss-Newton step
        if (isNewton && lastDampedStep < stationary) return !LeaveSaddle();
        SwitchToGaussNewton();
        return false;
    }

    /// At a saddle point the gradient is zero, but the sum of squares decreases along the eigenvector of the Hessian's
    /// smallest eigenvalue, in both senses. Tries shorter and shorter steps, in alternating senses. False when none
    /// decreases the sum.
    bool LeaveSaddle() {
        const CircleObjective gaussNewton = Evaluate(circle); // its diagonal is positive
        Vector6 scale;
        for (std::size_t i = 0; i < 6; ++i) scale[i] = 1.0 / std::sqrt(gaussNewton.hessian[i][i]);
        Matrix6 scaled = objective.hessian;
        for (std::size_t i = 0; i < 6; ++i)
            for (std::size_t k = 0; k < 6; ++k) scaled[i][k] *= scale[i] * scale[k];
        const SymmetricEigen<6> eigen(scaled);
        lastDampedStep = infinity;
        const double firstLength = 0.5 * std::sqrt(2.0 * objective.value);
        for (double length = firstLength; length * length > Noise(objective.value); length *= -0.5) {
            Vector6 change;
            for (std::size_t i = 0; i < 6; ++i) change[i] = length * scale[i] * eigen.vectors[i][5];
            const ApexCircle next = Changed(circle, change);
            const CircleObjective there = Evaluate(next, true);
            if (!(there.value < objective.value - Noise(objective.value))) continue;
            circle = next;
            objective = there;
            stepsWithoutDecrease = 0;
            return true;
        }
        return false;
    }

    /// Switches from Newton to damped Gauss-Newton. If that is in use already, increases the damping.
    void SwitchToGaussNewton() {
        if (isNewton)
            objective = Evaluate(circle, isNewton = false);
        else
            damping *= 10.0;
    }

    /// Accepts the step if the sum of squares does not grow. True when the minimum is reached.
    bool TryStep(const Vector6& change) {
        const double size = SizeOf(change, circle.radius);
        const ApexCircle next = Changed(circle, change);
        if (isNewton && IsLast(size)) {
            circle = next;
            return true;
        }
        const CircleObjective there = Evaluate(next, isNewton);
        if (!(there.value <= objective.value + Noise(objective.value))) return RejectStep();
        const bool isLower = there.value < objective.value - Noise(objective.value);
        if (isLower) stepsWithoutDecrease = 0;
        circle = next;
        objective = there;
        straightSteps = circle.radius > limits.straightRadius ? straightSteps + 1 : 0;
        return isNewton ? IsStalled(size, isLower) : DecreaseDamping(size);
    }

    /// Sums of squares that differ by less count as equal, so that rounding never rejects a good step.
    double Noise(double value) const noexcept { return 1e-9 * value + RoundingOf(value, points); }

    /// True when no smaller step is possible.
    bool RejectStep() {
        if (damping > maxDamping) return true;
        SwitchToGaussNewton();
        return false;
    }

    /// After an accepted damped step. Near the minimum it switches back to Newton. Always false: Newton decides the
    /// end.
    bool DecreaseDamping(double size) {
        constexpr double nearMinimum = 0.1; // of the radius
        damping = std::max(0.1 * damping, epsilon);
        lastDampedStep = size;
        if (size > nearMinimum) return false;
        isNewton = true;
        objective.MakeHessianExact(circle, points);
        lastNewtonStep = smallestNewtonStep = infinity;
        return false;
    }

    /// Whether this Newton step, or the next one, is below the rounding. The convergence is quadratic: if a step is
    /// `ratio` times the one before, the next one is about ratio^2 times this one. That is relied on for small steps
    /// only: far from the minimum the convergence is not quadratic.
    bool IsLast(double size) noexcept {
        const double ratio = size / lastNewtonStep;
        lastNewtonStep = size;
        return size < 2.0 * epsilon || (size < 1e-9 && size * ratio * ratio < 0.25 * epsilon);
    }

    /// True at the third successive step that neither halves the step size nor lowers the sum: the rounding of the
    /// coordinates prevents further progress.
    bool IsStalled(double size, bool isLower) noexcept {
        stalledSteps = size > 0.5 * smallestNewtonStep && !isLower ? stalledSteps + 1 : 0;
        smallestNewtonStep = std::min(size, smallestNewtonStep);
        return stalledSteps > 2;
    }

    const ScaledPoints& points;
    SolverLimits& limits;
    ApexCircle circle;
    int evaluations = 0;
    CircleObjective objective; ///< at `circle`
    bool isNewton = true;
    double damping = 1e-3; ///< relative to the diagonal of the Hessian; Marquardt's usual start
    double lastDampedStep = infinity;
    double lastNewtonStep = infinity;
    double smallestNewtonStep = infinity;
    int stalledSteps = 0;
    int straightSteps = 0; ///< successive steps with a radius beyond limits.straightRadius
    int stepsWithoutDecrease = 0;
};

} // namespace

double RoundingOf(double value, const ScaledPoints& points) noexcept {
    const auto count = static_cast<double>(points.GetSize());
    const double each = 4.0 * (points.GetRounding() + epsilon);
    return each * (std::sqrt(2.0 * value * count) + count * each);
}

double SolvedCircle::NoiseOverSagitta(const ScaledPoints& points) const noexcept {
    const double noise = std::sqrt(2.0 * value / static_cast<double>(points.GetSize()));
    const double sagitta = std::min(sagittaTimesRadius / circle.radius, 2.0 * circle.radius);
    return noise / sagitta;
}

std::optional<SolvedCircle> Solve(const ScaledPoints& points, const ApexCircle& initialGuess, SolverLimits& limits) {
    return Solver(points, initialGuess, limits).Run();
}

} // namespace qmv40::fit
