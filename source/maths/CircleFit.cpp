#include "maths/CircleFit.h"

#include "maths/PrincipalAxes.h"
#include "maths/SymmetricEigen.h"

#include <cmath>
#include <limits>
#include <optional>

// The sum over the points of (rho - r)^2 + h^2 is made as small as it gets, h being a point's distance from the
// circle's plane and rho its distance from the axis.
//
// Everything is told from the apex, the point of the circle in the middle of the data, and not from the centre: on a
// short arc the centre is far away, and differences of distances from it would have lost most of their digits. For the
// same reason the unknowns are those that a short arc decides one by one (where the apex is, how the arc is turned
// about it, how strongly it is curved), although what the caller wants is the centre, the normal and the radius.

namespace {

using Matrix6 = SquareMatrix<6>;
using Vector6 = std::array<double, 6>;

constexpr double epsilon = std::numeric_limits<double>::epsilon();

/// The six unknowns, as small changes of the circle at hand.
enum Unknown : std::size_t {
    apexOutward, ///< the apex, away from the centre
    turnInPlane, ///< about the apex, radians
    curvature,   ///< relative change of 1 / radius, the apex staying
    apexAcross,  ///< the apex, along the normal
    tiltForward, ///< about the tangent at the apex, radians
    tiltSideways ///< about the line from the centre to the apex, radians
};

struct Circle {
    CMaVector apex;
    CMaVector outward; ///< unit vector from the centre to the apex
    CMaVector tangent; ///< normal x outward
    CMaVector normal;
    double radius;

    CMaVector Centre() const noexcept { return apex + outward * -radius; }
};

CMaVector Unit(const CMaVector& v) noexcept { return v * (1.0 / v.Magnitude()); }

Circle Changed(const Circle& circle, const Vector6& change) noexcept {
    const CMaVector normal =
        Unit(circle.normal + circle.outward * change[tiltForward] + circle.tangent * change[tiltSideways]);
    const CMaVector leaning = circle.outward + circle.tangent * change[turnInPlane];
    const CMaVector outward = Unit(leaning + normal * -(leaning % normal));
    const CMaVector apex = circle.apex + circle.outward * change[apexOutward] + circle.normal * change[apexAcross];
    const double radius = circle.radius / (1.0 + change[curvature]);
    // Curved the other way: the same apex, seen from the other side.
    const CMaVector away = radius < 0.0 ? outward * -1.0 : outward;
    return {apex, away, normal * away, normal, std::fabs(radius)};
}

/// How large a change is, relative to the radius.
double SizeOf(const Vector6& change, double radius) noexcept {
    return std::max({std::fabs(change[apexOutward]) / radius, std::fabs(change[apexAcross]) / radius,
                     std::fabs(change[turnInPlane]), std::fabs(change[curvature]), std::fabs(change[tiltForward]),
                     std::fabs(change[tiltSideways])});
}

/// Half the sum of squares near a circle, to second order in the unknowns.
struct Expansion {
    double value;
    Vector6 gradient;
    Matrix6 hessian;
};

enum class Hessian {
    Exact,
    GaussNewton ///< without the terms that vanish with the residuals: never indefinite
};

/// One pass over the points.
Expansion Expand(const Circle& circle, const ScaledPoints& points, Hessian which) noexcept {
    const double r = circle.radius;
    const double residuals = which == Hessian::Exact ? 1.0 : 0.0;
    const double ax = circle.apex[0], ay = circle.apex[1], az = circle.apex[2];
    const double ox = circle.outward[0], oy = circle.outward[1], oz = circle.outward[2];
    const double tx = circle.tangent[0], ty = circle.tangent[1], tz = circle.tangent[2];
    const double nx = circle.normal[0], ny = circle.normal[1], nz = circle.normal[2];

    const auto sums = points.SumOver<23>([=](auto px, auto py, auto pz, auto* sum) {
        const auto x = px - ax, y = py - ay, z = pz - az;
        const auto v = x * ox + y * oy + z * oz; // outward from the apex
        const auto u = x * tx + y * ty + z * tz; // along the tangent
        const auto h = x * nx + y * ny + z * nz; // across the plane
        const auto fromAxis = v + r;
        const auto rho = SquareRoot(fromAxis * fromAxis + u * u);
        const auto perBoth = 1.0 / (rho * (rho + r)); // one division is dearer than all else here
        const auto perRho = perBoth * (rho + r);
        const auto g = (v * (fromAxis + r) + u * u) * (perBoth * rho); // rho - r, with all its digits
        const auto c = fromAxis * perRho, s = u * perRho;
        const auto sag = (g - v) * perRho; // 1 - c, with all its digits
        const auto gw = g * residuals, hw = h * residuals;
        const auto bend = gw * perRho;
        const auto ss = s * s, cs = c * s;
        const auto outOfRound = sag + bend * c;
        const auto bentS = bend * ss;
        const auto hFlat = hw * (1.0 - bend);
        const auto hSquared = hw * hw * perRho;

        sum[0] += g * g + h * h;
        sum[1] += g * c;
        sum[2] += g * s;
        sum[3] += g * sag;
        sum[4] += h;
        sum[5] += h * sag;
        sum[6] += h * s;

        sum[7] += c * c + bentS;
        sum[8] += cs * (1.0 - bend);
        sum[9] += c * sag - bentS;
        sum[10] += hFlat * ss;
        sum[11] += hFlat * cs;
        sum[12] += ss * r - gw * c * outOfRound;
        sum[13] += s * sag * r - gw * s * outOfRound;
        sum[14] += hw * (ss + bend * c * c);
        sum[15] += sag * sag + bentS;
        sum[16] += hFlat * ss - hw * sag;
        sum[17] += hw * s * outOfRound;
        sum[18] += sag;
        sum[19] += s;
        sum[20] += sag * sag * r - gw * c * sag - hSquared * ss;
        sum[21] += s * (hSquared * c - sag * (gw + r));
        sum[22] += ss * (gw + r) - hSquared * c * c;
    });

    Expansion e{};
    e.value = 0.5 * sums[0];
    e.gradient = {-sums[1], r * sums[2], r * sums[3], -sums[4], -r * sums[5], r * sums[6]};
    Matrix6& m = e.hessian;
    m[apexOutward][apexOutward] = sums[7];
    m[apexOutward][turnInPlane] = -r * sums[8];
    m[apexOutward][curvature] = -r * sums[9];
    m[apexOutward][tiltForward] = -sums[10];
    m[apexOutward][tiltSideways] = sums[11];
    m[turnInPlane][turnInPlane] = r * sums[12];
    m[turnInPlane][curvature] = r * sums[13];
    m[turnInPlane][tiltForward] = -r * sums[11];
    m[turnInPlane][tiltSideways] = -r * sums[14];
    m[curvature][curvature] = r * (r * sums[15] - 2.0 * residuals * sums[3]);
    m[curvature][tiltForward] = -r * sums[16];
    m[curvature][tiltSideways] = -r * sums[17];
    m[apexAcross][apexAcross] = static_cast<double>(points.GetSize());
    m[apexAcross][tiltForward] = r * sums[18];
    m[apexAcross][tiltSideways] = -r * sums[19];
    m[tiltForward][tiltForward] = r * sums[20];
    m[tiltForward][tiltSideways] = r * sums[21];
    m[tiltSideways][tiltSideways] = r * sums[22];
    for (std::size_t i = 0; i < 6; ++i)
        for (std::size_t k = 0; k < i; ++k) m[i][k] = m[k][i];
    return e;
}

/// Solves (H + damping D) change = -gradient, D being the diagonal of H. Nothing when that matrix is not positive
/// definite.
std::optional<Vector6> Solve(const Expansion& e, double damping) noexcept {
    Vector6 scale, y;
    for (std::size_t i = 0; i < 6; ++i) {
        if (!(e.hessian[i][i] > 0.0)) return std::nullopt;
        scale[i] = 1.0 / std::sqrt(e.hessian[i][i]);
    }
    Matrix6 l{};
    for (std::size_t i = 0; i < 6; ++i) {
        for (std::size_t k = 0; k <= i; ++k) {
            double rest = i == k ? 1.0 + damping : scale[i] * e.hessian[i][k] * scale[k];
            for (std::size_t j = 0; j < k; ++j) rest -= l[i][j] * l[k][j];
            if (i != k)
                l[i][k] = rest / l[k][k];
            else if (rest > 8.0 * epsilon)
                l[i][i] = std::sqrt(rest);
            else
                return std::nullopt;
        }
    }
    for (std::size_t i = 0; i < 6; ++i) {
        double rest = -scale[i] * e.gradient[i];
        for (std::size_t k = 0; k < i; ++k) rest -= l[i][k] * y[k];
        y[i] = rest / l[i][i];
    }
    for (std::size_t i = 6; i-- > 0;) {
        for (std::size_t k = i + 1; k < 6; ++k) y[i] -= l[k][i] * y[k];
        y[i] /= l[i][i];
    }
    for (std::size_t i = 0; i < 6; ++i) y[i] *= scale[i];
    return y;
}

/// The unknown ends of a fit: where it may stop.
struct Limits {
    double straightRadius; ///< beyond it the arc's height is no more than the rounding of the coordinates
    long stepsLeft;
};

struct Descended {
    Circle circle;
    double value; ///< half the sum of squares
};

/// From a start down to a minimum: by Newton's steps where the sum of squares is shaped like a bowl and these lead
/// down, elsewhere by damped Gauss-Newton steps.
class Descent {
public:
    Descent(const ScaledPoints& thePoints, const Circle& start, Limits& theLimits)
        : points(thePoints), limits(theLimits), circle(start), here(Look(start, Hessian::Exact)) {}

    /// Nothing when the circle turns into a straight line.
    std::optional<Descended> Run() {
        while (straightSteps < 3) {
            const std::optional<Vector6> change = Solve(here, hessian == Hessian::Exact ? 0.0 : damping);
            const bool done = change ? Step(*change) : ChangeCourse();
            if (done) return Descended{circle, here.value};
            if (damping > hopeless) return std::nullopt;
        }
        return std::nullopt;
    }

private:
    static constexpr double dampingLimit = 1e9; ///< steps are so small that they change nothing
    static constexpr double hopeless = 1e3 * dampingLimit;

    Expansion Look(const Circle& at, Hessian which) {
        if (limits.stepsLeft-- <= 0) throw GeometryError(GeometryError::Reason::LimitReached);
        return Expand(at, points, which);
    }

    /// The sum of squares is not shaped like a bowl here. True when it is level all the same, and leads down nowhere.
    bool ChangeCourse() {
        const bool level = hessian == Hessian::Exact && relaxedSize < 1e-6;
        if (level) return !LeaveTheSaddle();
        LeaveTheBowl();
        return false;
    }

    /// Off a saddle along its steepest way down, which the gradient does not show. False when there is none.
    bool LeaveTheSaddle() {
        const Expansion bowl = Look(circle, Hessian::GaussNewton);
        Vector6 scale;
        for (std::size_t i = 0; i < 6; ++i) scale[i] = 1.0 / std::sqrt(bowl.hessian[i][i]);
        Matrix6 scaled = here.hessian;
        for (std::size_t i = 0; i < 6; ++i)
            for (std::size_t k = 0; k < 6; ++k) scaled[i][k] *= scale[i] * scale[k];
        const SymmetricEigen<6> eigen(scaled);
        relaxedSize = std::numeric_limits<double>::infinity();
        for (double length = 0.5 * std::sqrt(2.0 * here.value); length * length > Noise(here.value); length *= -0.5) {
            Vector6 change;
            for (std::size_t i = 0; i < 6; ++i) change[i] = length * scale[i] * eigen.vectors[i][5];
            const Circle next = Changed(circle, change);
            const Expansion there = Look(next, Hessian::Exact);
            if (!(there.value < here.value - Noise(here.value))) continue;
            circle = next;
            here = there;
            return true;
        }
        return false;
    }

    /// Here the sum of squares is not shaped like a bowl, or a step led up: on with damped Gauss-Newton steps.
    void LeaveTheBowl() {
        if (hessian == Hessian::GaussNewton)
            damping *= 10.0;
        else
            here = Look(circle, hessian = Hessian::GaussNewton);
    }

    /// Takes one step, if it leads down. True when the minimum is reached.
    bool Step(const Vector6& change) {
        const double size = SizeOf(change, circle.radius);
        const bool newton = hessian == Hessian::Exact;
        const Circle next = Changed(circle, change);
        if (newton && IsLast(size)) {
            circle = next;
            return true;
        }
        const Expansion there = Look(next, hessian);
        if (!(there.value <= here.value + Noise(here.value))) return Retreat();
        const bool lower = there.value < here.value - Noise(here.value);
        circle = next;
        here = there;
        straightSteps = circle.radius > limits.straightRadius ? straightSteps + 1 : 0;
        return newton ? IsStalled(size, lower) : Relax(size);
    }

    /// What the rounding of the residuals can do to half their sum of squares.
    double Noise(double value) const noexcept {
        const auto count = static_cast<double>(points.GetSize());
        const double each = 4.0 * (points.GetRounding() + epsilon);
        return 1e-9 * value + each * (std::sqrt(2.0 * value * count) + count * each);
    }

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
        hessian = Hessian::Exact;
        here = Look(circle, hessian);
        lastSize = smallestSize = std::numeric_limits<double>::infinity();
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
    Limits& limits;
    Circle circle;
    Expansion here;
    Hessian hessian = Hessian::Exact;
    double damping = 1e-3;                                        ///< of Gauss-Newton steps, relative
    double relaxedSize = std::numeric_limits<double>::infinity(); ///< of the last step with damping
    double lastSize = std::numeric_limits<double>::infinity();
    double smallestSize = std::numeric_limits<double>::infinity();
    int stalls = 0;
    int straightSteps = 0;
};

/// Taubin's algebraic circle in the plane through the mean that `first` and `second` span. One pass. Nothing when it is
/// not to be told from a straight line.
std::optional<Circle> StartIn(const CMaVector& first, const CMaVector& second, const ScaledPoints& points,
                              double straightRadius) {
    const double fx = first[0], fy = first[1], fz = first[2];
    const double sx = second[0], sy = second[1], sz = second[2];
    const auto sums = points.SumOver<6>([=](auto x, auto y, auto z, auto* sum) {
        const auto u = x * fx + y * fy + z * fz;
        const auto v = x * sx + y * sy + z * sz;
        const auto q = u * u + v * v;
        sum[0] += u * u;
        sum[1] += u * v;
        sum[2] += v * v;
        sum[3] += u * q;
        sum[4] += v * q;
        sum[5] += q * q;
    });
    const double perPoint = 1.0 / static_cast<double>(points.GetSize());
    const double uu = sums[0] * perPoint, uv = sums[1] * perPoint, vv = sums[2] * perPoint;
    const double uq = sums[3] * perPoint, vq = sums[4] * perPoint, qq = sums[5] * perPoint;
    const double q = uu + vv;

    // The least root of Taubin's cubic, by Newton's method from below.
    const double area = uu * vv - uv * uv, variance = qq - q * q;
    const double a3 = 4.0 * q, a2 = -3.0 * q * q - qq;
    const double a1 = variance * q + 4.0 * area * q - uq * uq - vq * vq;
    const double a0 = uq * (uq * vv - vq * uv) + vq * (vq * uu - uq * uv) - variance * area;
    double root = 0.0;
    for (int i = 0; i < 20; ++i) {
        const double next =
            root - (a0 + root * (a1 + root * (a2 + root * a3))) / (a1 + root * (2.0 * a2 + root * 3.0 * a3));
        if (!(next > root) || !(next < q)) break;
        root = next;
    }
    const double twiceDeterminant = 2.0 * (root * root - root * q + area);
    const double centreU = (uq * (vv - root) - vq * uv) / twiceDeterminant;
    const double centreV = (vq * (uu - root) - uq * uv) / twiceDeterminant;
    const double distance = std::hypot(centreU, centreV);

    if (!(distance < straightRadius)) return std::nullopt;

    const CMaVector normal = first * second;
    const double radius = std::sqrt(distance * distance + q);
    const CMaVector outward = distance > 0.0 ? Unit((first * centreU + second * centreV) * -1.0) : first;
    return Circle{outward * (q / (radius + distance)), outward, normal * outward, normal, radius};
}

/// A flat arc along the direction of most spread, bent to the side to which the points are. One pass. It fits better
/// than a straight line; nothing when the points are bent to no side.
std::optional<Circle> StartFlat(const PrincipalAxes& axes, const ScaledPoints& points, double straightRadius) {
    const double ux = axes.axis[0][0], uy = axes.axis[0][1], uz = axes.axis[0][2];
    const auto sums = points.SumOver<5>([=](auto x, auto y, auto z, auto* sum) {
        const auto u = x * ux + y * uy + z * uz;
        const auto q = u * u;
        sum[0] += q;
        sum[1] += q * q;
        sum[2] += x * q;
        sum[3] += y * q;
        sum[4] += z * q;
    });
    const double variance = sums[1] - sums[0] * sums[0] / static_cast<double>(points.GetSize());
    const CMaVector bent = CMaVector(sums[2], sums[3], sums[4]) * (2.0 / variance);
    const CMaVector bend = bent + axes.axis[0] * -(bent % axes.axis[0]);
    const double curvature = bend.Magnitude();
    if (!(curvature * straightRadius > 1.0)) return std::nullopt;
    constexpr double flat = 10.0;
    const CMaVector outward = bend * (-1.0 / curvature);
    const CMaVector normal = Unit(outward * axes.axis[0]);
    return Circle{CMaVector(0.0, 0.0, 0.0), outward, normal * outward, normal, std::max(1.0 / curvature, flat)};
}

/// The points reach over 2 to 7 units, scaled as they are: about the height of a short arc, times its radius.
constexpr double heightTimesRadius = 1.0;

double StraightRadius(const ScaledPoints& points) noexcept { return heightTimesRadius / (4.0 * points.GetRounding()); }

/// Whether the arc stands so clearly out of the noise that there is no doubt on which side of it the centre is.
bool IsClear(const Descended& found, const ScaledPoints& points) noexcept {
    const double noise = std::sqrt(2.0 * found.value / static_cast<double>(points.GetSize()));
    const double height = std::min(heightTimesRadius / found.circle.radius, 2.0 * found.circle.radius);
    return height > 10.0 * noise;
}

/// Nothing when there is no circle that fits better than a straight line.
std::optional<Descended> FitFromTheStart(ScaledPoints& points, Limits& limits) {
    const PrincipalAxes axes(points);
    if (axes.IsStraight()) return std::nullopt;
    std::optional<Descended> best;
    const auto descendFrom = [&](const std::optional<Circle>& start) {
        if (!start) return;
        const std::optional<Descended> found = Descent(points, *start, limits).Run();
        if (found && (!best || found->value < best->value)) best = found;
    };
    // Across a direction in which the points lie far apart no circle can be.
    const int last = axes.spread[0] < 4.0 * axes.spread[1] ? 0 : 1;
    for (int normal = 2; normal >= last && !(best && IsClear(*best, points)); --normal)
        descendFrom(StartIn(axes.axis[(normal + 1) % 3], axes.axis[(normal + 2) % 3], points, limits.straightRadius));

    const double middle = axes.spread[1], least = axes.spread[2];
    const double ofLine = 0.5 * static_cast<double>(points.GetSize()) * (middle * middle + least * least);
    const auto beatsTheLine = [&] { return best && best->value < ofLine; };
    if (!beatsTheLine()) descendFrom(StartFlat(axes, points, limits.straightRadius));
    return beatsTheLine() ? best : std::nullopt;
}

/// So many points decide a circle so well that the whole of a larger set has little to add: some two passes.
constexpr std::size_t sampleSize = 1024;

/// From the circle through a sample. Nothing when that is no sure start.
std::optional<Descended> FitFromASample(const CMaPointArray& all, const ScaledPoints& points, Limits& limits) {
    CMaPointArray sample(sampleSize);
    for (std::size_t i = 0; i < sampleSize; ++i) sample.Add(all[static_cast<int>(i * points.GetSize() / sampleSize)]);
    ScaledPoints scaledSample(sample, points);
    const std::optional<Descended> start = FitFromTheStart(scaledSample, limits);
    if (!start || !IsClear(*start, scaledSample)) return std::nullopt;
    Circle circle = start->circle;
    circle.apex = points.FromBaseOf(scaledSample, circle.apex);
    const std::optional<Descended> found = Descent(points, circle, limits).Run();
    return found && IsClear(*found, points) ? found : std::nullopt;
}

} // namespace

FittedCircle FitCircle(const CMaPointArray& points, long iterationLimit) {
    if (iterationLimit <= 0) throw GeometryError(GeometryError::Reason::LimitReached);
    ScaledPoints scaled(points);
    Limits limits{StraightRadius(scaled), iterationLimit};
    std::optional<Descended> found;
    if (scaled.GetSize() > 8 * sampleSize) found = FitFromASample(points, scaled, limits);
    if (!found) found = FitFromTheStart(scaled, limits);
    if (!found) throw GeometryError(GeometryError::Reason::Impossible);
    const Circle& circle = found->circle;
    const CMaPoint centre = scaled.ToCaller(circle.Centre());
    const double radius = scaled.ToCaller(circle.radius);
    const bool finite = std::isfinite(centre.x() + centre.y() + centre.z()) && std::isfinite(radius);
    if (!finite) throw GeometryError(GeometryError::Reason::Impossible);
    return {centre, circle.normal, radius};
}
