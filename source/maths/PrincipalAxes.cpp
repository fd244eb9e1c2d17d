#include "maths/PrincipalAxes.h"

#include "maths/SymmetricEigen.h"

#include <cmath>

namespace {

/// Points that a program places on a line carry a few roundings each, one for every operation that made them.
constexpr double straightInRoundings = 4.0;

/// Sums over the points: the three coordinates in a frame, then the six products of two of them.
std::array<double, 9> MomentsIn(const CMaVector (&frame)[3], const ScaledPoints& points) noexcept {
    const double ux = frame[0][0], uy = frame[0][1], uz = frame[0][2];
    const double vx = frame[1][0], vy = frame[1][1], vz = frame[1][2];
    const double wx = frame[2][0], wy = frame[2][1], wz = frame[2][2];
    return points.SumOver<9>([=](auto x, auto y, auto z, auto* sum) {
        const auto u = x * ux + y * uy + z * uz;
        const auto v = x * vx + y * vy + z * vz;
        const auto w = x * wx + y * wy + z * wz;
        sum[0] += u;
        sum[1] += v;
        sum[2] += w;
        sum[3] += u * u;
        sum[4] += u * v;
        sum[5] += u * w;
        sum[6] += v * v;
        sum[7] += v * w;
        sum[8] += w * w;
    });
}

CMaVector Unit(const CMaVector& v) noexcept { return v * (1.0 / v.Magnitude()); }

/// Turns the frame by the eigenvectors; returns the sine of about how far.
double Turn(CMaVector (&frame)[3], const SquareMatrix<3>& vectors) noexcept {
    const auto turned = [&](std::size_t k) {
        return frame[0] * vectors[0][k] + frame[1] * vectors[1][k] + frame[2] * vectors[2][k];
    };
    const CMaVector longest = Unit(turned(0));
    const CMaVector middle = turned(1);
    const CMaVector least = Unit(longest * middle);
    frame[0] = longest;
    frame[1] = least * longest;
    frame[2] = least;
    return std::max({std::fabs(vectors[0][1]), std::fabs(vectors[0][2]), std::fabs(vectors[1][2])});
}

} // namespace

PrincipalAxes::PrincipalAxes(ScaledPoints& points) noexcept {
    const auto count = static_cast<double>(points.GetSize());
    straightWithin = straightInRoundings * points.GetRounding();

    // The first sums are about the middle of the box and in the caller's frame, which may cost digits; the later ones
    // are about the mean and in the frame that the first ones gave. A small turn leaves an error of its square.
    constexpr int frameLimit = 4;
    constexpr double smallTurn = 1e-8;
    for (int frames = 0; frames < frameLimit; ++frames) {
        const auto m = MomentsIn(axis, points);
        const double u = m[0] / count, v = m[1] / count, w = m[2] / count;
        const CMaVector rest = axis[0] * u + axis[1] * v + axis[2] * w;
        points.MoveBase(rest[0], rest[1], rest[2]);
        const double uv = m[4] - m[0] * v, uw = m[5] - m[0] * w, vw = m[7] - m[1] * w;
        const SymmetricEigen<3> eigen(
            {{{m[3] - m[0] * u, uv, uw}, {uv, m[6] - m[1] * v, vw}, {uw, vw, m[8] - m[2] * w}}});
        for (std::size_t i = 0; i < 3; ++i) spread[i] = std::sqrt(std::max(eigen.values[i], 0.0) / count);
        const double turn = Turn(axis, eigen.vectors);
        if (frames > 0 && turn < smallTurn) return;
    }
}
