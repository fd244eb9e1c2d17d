#include "maths/fit/InitialCircle.h"

#include <cmath>

namespace qmv40::fit {

std::optional<ApexCircle> TaubinCircle(const CMaVector& first, const CMaVector& second, const ScaledPoints& points,
                                       double straightRadius) {
    const double fx = first[0], fy = first[1], fz = first[2];
    const double sx = second[0], sy = second[1], sz = second[2];
    const auto sums = points.SumOver([=](double x, double y, double z) {
        const double u = x * fx + y * fy + z * fz;
        const double v = x * sx + y * sy + z * sz;
        const double q = u * u + v * v;
        return std::array{u * u, u * v, v * v, u * q, v * q, q * q};
    });
    const double perPoint = 1.0 / static_cast<double>(points.GetSize());
    const double uu = sums[0] * perPoint, uv = sums[1] * perPoint, vv = sums[2] * perPoint;
    const double uq = sums[3] * perPoint, vq = sums[4] * perPoint, qq = sums[5] * perPoint;
    const double q = uu + vv;

    // Taubin's circle belongs to the smallest root of a cubic. Newton's method from 0 approaches that root from below.
    const double area = uu * vv - uv * uv, variance = qq - q * q;
    const double a3 = 4.0 * q, a2 = -3.0 * q * q - qq;
    const double a1 = variance * q + 4.0 * area * q - uq * uq - vq * vq;
    const double a0 = uq * (uq * vv - vq * uv) + vq * (vq * uu - uq * uv) - variance * area;
    constexpr int maxNewtonSteps = 20; // more than needed: the circle is only an initial guess
    double root = 0.0;
    for (int i = 0; i < maxNewtonSteps; ++i) {
        const double next =
            root - (a0 + root * (a1 + root * (a2 + root * a3))) / (a1 + root * (2.0 * a2 + root * 3.0 * a3));
        if (!(next > root) || !(next < q)) break;
        root = next;
    }
    const double twiceDeterminant = 2.0 * (root * root - root * q + area);
    // Cramer's rule. If the third moments uq and vq vanish, the centre is the mean; the determinant may be 0 as well.
    const auto quotient = [&](double minor) { return minor == 0.0 ? 0.0 : minor / twiceDeterminant; };
    const double centreU = quotient(uq * (vv - root) - vq * uv), centreV = quotient(vq * (uu - root) - uq * uv);
    const double distance = std::sqrt(centreU * centreU + centreV * centreV);

    if (!(distance < straightRadius)) return std::nullopt;

    const CMaVector normal = first * second;
    const double radius = std::sqrt(distance * distance + q);
    const CMaVector outward = distance > 0.0 ? Unit((first * centreU + second * centreV) * -1.0) : first;
    return ApexCircle{outward * (q / (radius + distance)), outward, normal * outward, normal, radius};
}

std::optional<ApexCircle> FlatArc(const PrincipalAxes& axes, const ScaledPoints& points, double straightRadius) {
    const double ux = axes.axis[0][0], uy = axes.axis[0][1], uz = axes.axis[0][2];
    const auto sums = points.SumOver([=](double x, double y, double z) {
        const double u = x * ux + y * uy + z * uz;
        const double q = u * u;
        return std::array{q, q * q, x * q, y * q, z * q};
    });
    const double variance = sums[1] - sums[0] * sums[0] / static_cast<double>(points.GetSize());
    // The parabola is u^2 times half this vector; its component along u only shifts the points along the arc.
    const CMaVector secondDerivative = CMaVector(sums[2], sums[3], sums[4]) * (2.0 / variance);
    const CMaVector across = secondDerivative + axes.axis[0] * -(secondDerivative % axes.axis[0]);
    const double curvature = across.Magnitude();
    if (!(curvature * straightRadius > 1.0)) return std::nullopt;
    constexpr double flat = 10.0; // smallest radius: with it, chords of 2 to 7 have sagittas of 0.05 to 0.6
    const CMaVector outward = across * (-1.0 / curvature);
    const CMaVector normal = Unit(outward * axes.axis[0]);
    return ApexCircle{CMaVector(0.0, 0.0, 0.0), outward, normal * outward, normal, std::max(1.0 / curvature, flat)};
}

} // namespace qmv40::fit
