#include "maths/fit/CircleObjective.h"

#include <cmath>
#include <limits>

namespace qmv40::fit {

namespace {

/// Residuals of one point, and its place on the circle.
struct PointResiduals {
    double g, h;   ///< distance from the axis minus the radius; signed distance from the plane
    double s, sag; ///< sine, and 1 - cosine, of the angle between apex and point, seen from the axis
    double perRho; ///< 1 / distance from the axis
};

class ResidualsFromCircle {
public:
    explicit ResidualsFromCircle(const ApexCircle& circle) noexcept
        : r(circle.radius), axisSquared(1e-24 * r * r), apex(circle.apex), outward(circle.outward),
          tangent(circle.tangent), normal(circle.normal) {}

    PointResiduals operator()(double px, double py, double pz) const noexcept {
        const double x = px - apex.x, y = py - apex.y, z = pz - apex.z;
        const double v = x * outward.x + y * outward.y + z * outward.z; // outward from the apex
        const double u = x * tangent.x + y * tangent.y + z * tangent.z; // along the tangent
        const double h = x * normal.x + y * normal.y + z * normal.z;
        const double fromAxis = v + r;
        const double rho = std::sqrt(fromAxis * fromAxis + u * u + axisSquared);
        const double perBoth = 1.0 / (rho * (rho + r)); // one division instead of two: divisions dominate the time
        const double perRho = perBoth * (rho + r);
        const double g = (v * (fromAxis + r) + u * u) * (perBoth * rho);
        return {g, h, u * perRho, (g - v) * perRho, perRho};
    }

private:
    struct Components {
        explicit Components(const CMaVector& v) : x(v[0]), y(v[1]), z(v[2]) {}
        double x, y, z;
    };

    double r;
    double axisSquared; ///< (1e-12 r)^2, added to rho^2: avoids a division by zero for a point on the axis
    Components apex, outward, tangent, normal;
};

void MirrorUpperTriangle(Matrix6& m) noexcept {
    for (std::size_t i = 0; i < 6; ++i)
        for (std::size_t k = 0; k < i; ++k) m[i][k] = m[k][i];
}

/// Solves for `Size` unknowns, the first of which is `first`, by the factors H = L D L'. L has ones on its diagonal.
/// Cholesky's factors would need a square root for each unknown.
template <std::size_t Size>
bool SolveBlock(const CircleObjective& objective, std::size_t first, double damping, Vector6& change) noexcept {
    // A smaller pivot, relative to its diagonal element, is only rounding error.
    constexpr double notPositive = 8.0 * std::numeric_limits<double>::epsilon();
    double l[Size][Size], ld[Size][Size], perPivot[Size];
    double* const y = &change[first];
    for (std::size_t i = 0; i < Size; ++i) {
        const auto& row = objective.hessian[first + i];
        double pivot = row[first + i] * (1.0 + damping);
        y[i] = -objective.gradient[first + i];
        for (std::size_t k = 0; k < i; ++k) {
            ld[i][k] = row[first + k];
            for (std::size_t j = 0; j < k; ++j) ld[i][k] -= ld[i][j] * l[k][j];
            l[i][k] = ld[i][k] * perPivot[k];
            pivot -= ld[i][k] * l[i][k];
            y[i] -= l[i][k] * y[k];
        }
        if (!(pivot > notPositive * row[first + i])) return false;
        perPivot[i] = 1.0 / pivot;
    }
    for (std::size_t i = Size; i-- > 0;) {
        y[i] *= perPivot[i];
        for (std::size_t k = i + 1; k < Size; ++k) y[i] -= l[k][i] * y[k];
    }
    return true;
}

} // namespace

ApexCircle Changed(const ApexCircle& circle, const Vector6& change) noexcept {
    const CMaVector normal =
        Unit(circle.normal + circle.outward * change[tiltForward] + circle.tangent * change[tiltSideways]);
    const CMaVector turned = circle.outward + circle.tangent * change[turnInPlane];
    const CMaVector outward = Unit(turned + normal * -(turned % normal));
    const CMaVector apex = circle.apex + circle.outward * change[apexOutward] + circle.normal * change[apexAcross];
    const double radius = circle.radius / (1.0 + change[curvature]);
    // A negative radius: the centre is on the other side of the apex.
    const CMaVector away = radius < 0.0 ? outward * -1.0 : outward;
    return {apex, away, normal * away, normal, std::fabs(radius)};
}

double SizeOf(const Vector6& change, double radius) noexcept {
    return std::max({std::fabs(change[apexOutward]) / radius, std::fabs(change[apexAcross]) / radius,
                     std::fabs(change[turnInPlane]), std::fabs(change[curvature]), std::fabs(change[tiltForward]),
                     std::fabs(change[tiltSideways])});
}

CircleObjective::CircleObjective(const ApexCircle& circle, const ScaledPoints& points) noexcept {
    const auto [squares, gc, gs, gSag, h, hSag, hs, s, sag, sSag, sagSag] =
        points.SumOver([residuals = ResidualsFromCircle(circle)](double x, double y, double z) {
            const PointResiduals at = residuals(x, y, z);
            const double gTimesSag = at.g * at.sag;
            return std::array{at.g * at.g + at.h * at.h,
                              at.g - gTimesSag,
                              at.g * at.s,
                              gTimesSag,
                              at.h,
                              at.h * at.sag,
                              at.h * at.s,
                              at.s,
                              at.sag,
                              at.s * at.sag,
                              at.sag * at.sag};
        });
    const double r = circle.radius, rr = r * r, count = static_cast<double>(points.GetSize());
    const double ss = 2.0 * sag - sagSag;

    value = 0.5 * squares;
    gradient = {-gc, r * gs, r * gSag, -h, -r * hSag, r * hs};
    hessian[apexOutward][apexOutward] = count - ss;
    hessian[apexOutward][turnInPlane] = -r * (s - sSag);
    hessian[apexOutward][curvature] = -r * (sag - sagSag);
    hessian[turnInPlane][turnInPlane] = rr * ss;
    hessian[turnInPlane][curvature] = rr * sSag;
    hessian[curvature][curvature] = rr * sagSag;
    hessian[apexAcross][apexAcross] = count;
    hessian[apexAcross][tiltForward] = r * sag;
    hessian[apexAcross][tiltSideways] = -r * s;
    hessian[tiltForward][tiltForward] = rr * sagSag;
    hessian[tiltForward][tiltSideways] = -rr * sSag;
    hessian[tiltSideways][tiltSideways] = rr * ss;
    MirrorUpperTriangle(hessian);
}

void CircleObjective::MakeHessianExact(const ApexCircle& circle, const ScaledPoints& points) noexcept {
    isExact = true;
    // Sums of the second derivatives, weighted with the residuals. Most are named after the two unknowns that they
    // belong to. All vanish when g and h do. c and s are the cosine and the sine of the angle between apex and point.
    const auto [gSS, gCS, hSS, hCS, turnTurn, turnCurvature, turnSideways, curvatureSideways, forwardForward,
                forwardSideways, sidewaysSideways] =
        points.SumOver([residuals = ResidualsFromCircle(circle)](double x, double y, double z) {
            const PointResiduals at = residuals(x, y, z);
            const double g = at.g, h = at.h, s = at.s, sag = at.sag, c = 1.0 - sag;
            const double gPerRho = g * at.perRho, hOnCircle = h * (1.0 - gPerRho), hhPerRho = h * h * at.perRho;
            const double ss = s * s, cs = c * s, cc = c * c;
            const double fall = sag + gPerRho * c; // 1 - c r / rho, without cancellation
            return std::array{gPerRho * ss,
                              gPerRho * cs,
                              hOnCircle * ss, // h r / rho
                              hOnCircle * cs,
                              g * c * fall,
                              g * s * fall,
                              h * (ss + gPerRho * cc),
                              h * s * fall,
                              g * c * sag + hhPerRho * ss,
                              s * (hhPerRho * c - g * sag),
                              g * ss - hhPerRho * cc};
        });
    const double r = circle.radius;
    hessian[apexOutward][apexOutward] += gSS;
    hessian[apexOutward][turnInPlane] += r * gCS;
    hessian[apexOutward][curvature] += r * gSS;
    hessian[apexOutward][tiltForward] -= hSS;
    hessian[apexOutward][tiltSideways] += hCS;
    hessian[turnInPlane][turnInPlane] -= r * turnTurn;
    hessian[turnInPlane][curvature] -= r * turnCurvature;
    hessian[turnInPlane][tiltForward] -= r * hCS;
    hessian[turnInPlane][tiltSideways] -= r * turnSideways;
    hessian[curvature][curvature] += r * (r * gSS) - 2.0 * gradient[curvature];
    hessian[curvature][tiltForward] -= r * hSS + gradient[tiltForward];
    hessian[curvature][tiltSideways] -= r * curvatureSideways;
    hessian[tiltForward][tiltForward] -= r * forwardForward;
    hessian[tiltForward][tiltSideways] += r * forwardSideways;
    hessian[tiltSideways][tiltSideways] += r * sidewaysSideways;
    MirrorUpperTriangle(hessian);
}

std::optional<Vector6> CircleObjective::Step(double damping) const noexcept {
    Vector6 change;
    const bool solved = isExact ? SolveBlock<6>(*this, 0, damping, change)
                                : SolveBlock<3>(*this, 0, damping, change) && SolveBlock<3>(*this, 3, damping, change);
    if (!solved) return std::nullopt;
    return change;
}

} // namespace qmv40::fit
