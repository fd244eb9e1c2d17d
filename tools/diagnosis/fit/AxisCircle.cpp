#include "tools/diagnosis/fit/AxisCircle.h"

#include "maths/CMaCircle.h"
#include "tools/diagnosis/fit/NormalEquations.h"
#include "tools/model/Angles.h"

#include <algorithm>

namespace qmv40::diagnosis::fit {

namespace {

constexpr long evaluationLimit = 200000; // never reached: no fit needs more than 5,000 (CMaCircle.h)

CirclePoint PlaceOn(const AxisCircle& circle, const model::Vector3& point) {
    const model::Vector3 arm = point - circle.centre;
    const double x = model::Dot(arm, circle.along), y = model::Dot(arm, circle.across);
    return {model::ToDegrees(std::atan2(y, x)), std::hypot(x, y) - circle.radius, model::Dot(arm, circle.normal)};
}

/// The derivatives of a point's two residuals with respect to the unknowns. The signs of both rows are reversed, which
/// does not change the covariances.
std::array<std::array<double, AxisCircle::unknowns>, 2> Derivatives(const CirclePoint& point, double radius) {
    const double c = std::cos(model::ToRadians(point.polarAngle)), s = std::sin(model::ToRadians(point.polarAngle));
    return {{{c, s, 0.0, 0.0, 0.0, 1.0}, {0.0, 0.0, 1.0, -radius * c, -radius * s, 0.0}}};
}

AxisCircle::Covariance CovarianceOf(const AxisCircle& circle) {
    NormalEquations equations(AxisCircle::unknowns);
    for (const CirclePoint& point : circle.points) {
        for (const auto& row : Derivatives(point, circle.radius)) equations.Add(row, 0.0);
    }
    constexpr std::size_t n = AxisCircle::unknowns;
    return equations.Covariance().value_or(AxisCircle::Covariance(n, std::vector<double>(n, 0.0)));
}

/// The coordinate axis that makes the largest angle with `v`.
model::Vector3 FarthestAxis(const model::Vector3& v) {
    const double x = std::abs(v.x), y = std::abs(v.y), z = std::abs(v.z);
    if (x <= y && x <= z) return {1.0, 0.0, 0.0};
    return y <= z ? model::Vector3{0.0, 1.0, 0.0} : model::Vector3{0.0, 0.0, 1.0};
}

} // namespace

double AxisCircle::Rms() const { return std::sqrt(sumOfSquares / static_cast<double>(points.size())); }

model::Vector3 VectorOf(const CMaVector& v) { return {v[0], v[1], v[2]}; }

CMaPointArray PointArrayOf(std::span<const model::Vector3> points) {
    CMaPointArray array(static_cast<int>(points.size()));
    for (const model::Vector3& p : points) array.Add({p.x, p.y, p.z});
    return array;
}

AxisCircle AxisCircleThrough(std::span<const model::Vector3> points) {
    CMaCircle fitted(1.0);
    fitted.Fit(PointArrayOf(points), evaluationLimit);
    AxisCircle circle{};
    circle.centre = VectorOf(fitted.GetCentre().To3DVector());
    circle.normal = VectorOf(fitted.GetNormal());
    circle.across = model::SafeUnit(model::Cross(circle.normal, FarthestAxis(circle.normal)));
    circle.along = model::Cross(circle.across, circle.normal);
    circle.radius = fitted.GetRadius();
    std::vector<double> polarAngles;
    for (const model::Vector3& point : points) {
        circle.points.push_back(PlaceOn(circle, point));
        const CirclePoint& place = circle.points.back();
        polarAngles.push_back(place.polarAngle);
        circle.sumOfSquares += place.radial * place.radial + place.outOfPlane * place.outOfPlane;
    }
    circle.arcCovered = ArcCovered(std::move(polarAngles));
    circle.covariance = CovarianceOf(circle);
    return circle;
}

std::optional<AxisCircle> FitAxisCircle(std::span<const model::Vector3> points) {
    try {
        return AxisCircleThrough(points);
    } catch (const GeometryError&) {
        return std::nullopt;
    }
}

CircleWithout WithoutPoint(const AxisCircle& circle, std::size_t index) {
    const CirclePoint& point = circle.points[index];
    const auto rows = Derivatives(point, circle.radius);
    std::array<std::array<double, AxisCircle::unknowns>, 2> weighted{}; // the rows times the covariances
    double leverage[2][2]{};
    for (std::size_t r = 0; r < 2; ++r) {
        for (std::size_t i = 0; i < AxisCircle::unknowns; ++i) {
            for (std::size_t j = 0; j < AxisCircle::unknowns; ++j)
                weighted[r][i] += rows[r][j] * circle.covariance[j][i];
        }
        for (std::size_t k = 0; k < 2; ++k) {
            for (std::size_t i = 0; i < AxisCircle::unknowns; ++i) leverage[r][k] += weighted[r][i] * rows[k][i];
        }
    }
    // The residuals of the point with respect to the circle of the other points
    const double aa = 1.0 - leverage[0][0], bb = 1.0 - leverage[1][1], ab = -leverage[0][1];
    const double determinant = aa * bb - ab * ab;
    const double radial = (bb * point.radial - ab * point.outOfPlane) / determinant;
    const double outOfPlane = (aa * point.outOfPlane - ab * point.radial) / determinant;
    const auto change = [&](std::size_t i) { return -(weighted[0][i] * radial + weighted[1][i] * outOfPlane); };
    return {circle.centre + change(0) * circle.along + change(1) * circle.across + change(2) * circle.normal,
            model::SafeUnit(circle.normal + change(3) * circle.along + change(4) * circle.across),
            std::max(0.0, point.radial * radial + point.outOfPlane * outOfPlane)};
}

double ArcCovered(std::vector<double> polarAngles) {
    std::ranges::sort(polarAngles);
    double widestGap = polarAngles.front() + 360.0 - polarAngles.back();
    for (std::size_t i = 1; i < polarAngles.size(); ++i)
        widestGap = std::max(widestGap, polarAngles[i] - polarAngles[i - 1]);
    return 360.0 - widestGap;
}

} // namespace qmv40::diagnosis::fit
