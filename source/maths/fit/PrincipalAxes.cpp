#include "maths/fit/PrincipalAxes.h"

#include "maths/fit/SymmetricEigen.h"

#include <cmath>

namespace qmv40::fit {

namespace {

/// A point computed on a line (origin + t * direction) is off the line by about this many roundings.
constexpr double straightInRoundings = 4.0;

/// The three coordinates of a point, then the six products of two of them.
constexpr auto products = [](double u, double v, double w) noexcept {
    return std::array{u, v, w, u * u, u * v, u * w, v * v, v * w, w * w};
};

using Sums = decltype(products(0.0, 0.0, 0.0));
using Frame = CMaVector[3];

Sums SumsIn(const Frame& frame, const ScaledPoints& points) noexcept {
    const double ux = frame[0][0], uy = frame[0][1], uz = frame[0][2];
    const double vx = frame[1][0], vy = frame[1][1], vz = frame[1][2];
    const double wx = frame[2][0], wy = frame[2][1], wz = frame[2][2];
    return points.SumOver([=](double x, double y, double z) {
        return products(x * ux + y * uy + z * uz, x * vx + y * vy + z * vz, x * wx + y * wy + z * wz);
    });
}

/// The covariance matrix times the number of points.
SquareMatrix<3> ScatterOf(const Sums& sums, double perCount) noexcept {
    const auto [u, v, w, uu, uv, uw, vv, vw, ww] = sums;
    const double meanU = u * perCount, meanV = v * perCount, meanW = w * perCount;
    const double aboutUV = uv - u * meanV, aboutUW = uw - u * meanW, aboutVW = vw - v * meanW;
    return {
        {{uu - u * meanU, aboutUV, aboutUW}, {aboutUV, vv - v * meanV, aboutVW}, {aboutUW, aboutVW, ww - w * meanW}}};
}

SquareMatrix<3> Product(const SquareMatrix<3>& a, const SquareMatrix<3>& b) noexcept {
    SquareMatrix<3> product{};
    for (std::size_t i = 0; i < 3; ++i)
        for (std::size_t k = 0; k < 3; ++k) product[i][k] = a[i][0] * b[0][k] + a[i][1] * b[1][k] + a[i][2] * b[2][k];
    return product;
}

/// Orthonormal rows. The first is along the eigenvector of the largest eigenvalue or, where two eigenvalues are nearly
/// equal, in the plane of both. In this frame the Jacobi rotations need about one sweep.
SquareMatrix<3> FrameNear(const SquareMatrix<3>& scatter) noexcept {
    SquareMatrix<3> power = scatter;
    const double perTrace = 1.0 / (scatter[0][0] + scatter[1][1] + scatter[2][2]);
    for (auto& row : power)
        for (double& element : row) element *= perTrace;
    for (int i = 0; i < 4; ++i) power = Product(power, power); // to the 16th power: the largest eigenvalue dominates
    std::size_t largest = power[0][0] > power[1][1] ? 0 : 1;
    if (power[2][2] > power[largest][largest]) largest = 2;
    const auto [x, y, z] = power[largest];
    const double perLength = 1.0 / std::sqrt(x * x + y * y + z * z);
    const double a = x * perLength, b = y * perLength, c = z * perLength;
    // Two unit vectors perpendicular to it, without another square root (Duff et al., JCGT 6, 2017).
    const double sign = std::copysign(1.0, c), d = -1.0 / (sign + c), e = a * b * d;
    return {{{a, b, c}, {1.0 + sign * a * a * d, sign * e, -sign * a}, {e, sign + b * b * d, -b}}};
}

SquareMatrix<3> Transposed(const SquareMatrix<3>& m) noexcept {
    return {{{m[0][0], m[1][0], m[2][0]}, {m[0][1], m[1][1], m[2][1]}, {m[0][2], m[1][2], m[2][2]}}};
}

/// Rotates the frame by the eigenvectors.
void RotateFrame(CMaVector (&frame)[3], const SquareMatrix<3>& vectors) noexcept {
    const auto turned = [&](std::size_t k) {
        return frame[0] * vectors[0][k] + frame[1] * vectors[1][k] + frame[2] * vectors[2][k];
    };
    const CMaVector longest = turned(0), middle = turned(1);
    frame[0] = longest;
    frame[1] = middle;
    frame[2] = longest * middle;
}

/// Approximately the sine of the angle by which RotateFrame rotates the axes that must be accurate.
double SizeOfRotation(const SquareMatrix<3>& vectors, PrincipalAxes::Accuracy accuracy) noexcept {
    const double longest = std::max(std::fabs(vectors[0][1]), std::fabs(vectors[0][2]));
    return accuracy == PrincipalAxes::Accuracy::FullForLargest ? longest : std::max(longest, std::fabs(vectors[1][2]));
}

} // namespace

PrincipalAxes::PrincipalAxes(ScaledPoints& points, Accuracy accuracy) noexcept {
    const double perCount = 1.0 / static_cast<double>(points.GetSize());
    straightWithin = straightInRoundings * points.GetRounding();

    // The first sums are about the middle of the bounding box and in the caller's frame, and lose digits to
    // cancellation. The later ones are about the mean and in the principal frame. The remaining error is the square of
    // the last rotation: 1e-16 rad after a rotation by 1e-8 rad.
    constexpr int frameLimit = 4;
    constexpr double smallRotation = 1e-8;
    constexpr double minWidth = 1e-4; // middle spread over largest; narrower points need a second pass for 8 digits
    std::array<double, 3> squares{};
    for (int frames = 0; frames < frameLimit; ++frames) {
        const Sums sums = frames == 0 ? points.SumOver(products) : SumsIn(axis, points);
        const CMaVector rest = (axis[0] * sums[0] + axis[1] * sums[1] + axis[2] * sums[2]) * perCount;
        points.MoveBase(rest[0], rest[1], rest[2]);
        SquareMatrix<3> scatter = ScatterOf(sums, perCount);
        if (frames == 0) {
            const SquareMatrix<3> near = FrameNear(scatter);
            scatter = Product(Product(near, scatter), Transposed(near));
            for (std::size_t i = 0; i < 3; ++i) axis[i] = CMaVector(near[i][0], near[i][1], near[i][2]);
        }
        const SymmetricEigen<3> eigen(scatter);
        squares = eigen.values;
        RotateFrame(axis, eigen.vectors);
        if (frames > 0 && SizeOfRotation(eigen.vectors, accuracy) < smallRotation) break;
        if (accuracy == Accuracy::Half && squares[1] > minWidth * minWidth * squares[0]) break;
    }
    for (std::size_t i = 0; i < 3; ++i) spread[i] = std::sqrt(std::max(squares[i], 0.0) * perCount);
}

} // namespace qmv40::fit
