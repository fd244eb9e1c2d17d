#pragma once

#include "interface/Records.h"

#include <array>
#include <cmath>
#include <cstdint>
#include <numbers>
#include <random>
#include <vector>

/// A head that exists on paper only, measured without error. Its arithmetic is its own: rotation matrices and the full
/// pi, nothing of the component's. With the stylus tip kept on a sphere at the pole, the machine stands at
///     pole - Rz(mounting angle + B) * R(-X, A) * stylus
/// while the head is locked, rotations right-handed, and at that plus the shift of unlocking while it is unlocked,
/// which is how alignment points are measured. The head centre that must come out is the pole.
class SimulatedHead {
public:
    using Triple = std::array<double, 3>;

    Triple pole{0.0, 0.0, 0.0};
    double mountingAngle = 0.0;              ///< how far the head is mounted turned about the machine's Z axis, degrees
    Triple stylus{0.0, 0.0, -180.0};         ///< the tip, in the head's frame at A = 0, B = 0
    Triple lockedToUnlocked{0.0, 0.0, -1.5}; ///< how unlocking shifts the head

    /// A point measured on the pole sphere at A = `a`, B = `b` (degrees).
    HeadAlignmentDataItem Point(double a, double b) const {
        const Triple tip = AboutZ(mountingAngle + b, AboutX(-a, stylus));
        return {a, b, pole[0] - tip[0] + lockedToUnlocked[0], pole[1] - tip[1] + lockedToUnlocked[1],
                pole[2] - tip[2] + lockedToUnlocked[2]};
    }

    /// The A set: A turned from `firstA` to `lastA` in equal steps, B held at `b`.
    std::vector<HeadAlignmentDataItem> ASet(double b, int count = 7, double firstA = 0.0, double lastA = 90.0) const {
        std::vector<HeadAlignmentDataItem> points;
        for (int i = 0; i < count; ++i) points.push_back(Point(Step(i, count, firstA, lastA), b));
        return points;
    }

    /// The B set: B turned from `firstB` to `lastB` in equal steps, A held at `a`.
    std::vector<HeadAlignmentDataItem> BSet(double a, int count = 7, double firstB = -180.0,
                                            double lastB = 90.0) const {
        std::vector<HeadAlignmentDataItem> points;
        for (int i = 0; i < count; ++i) points.push_back(Point(a, Step(i, count, firstB, lastB)));
        return points;
    }

private:
    static double Step(int i, int count, double first, double last) { return first + (last - first) * i / (count - 1); }
    static double Radians(double degrees) { return degrees * std::numbers::pi / 180.0; }

    static Triple AboutX(double degrees, const Triple& v) {
        const double c = std::cos(Radians(degrees));
        const double s = std::sin(Radians(degrees));
        return {v[0], c * v[1] - s * v[2], s * v[1] + c * v[2]};
    }
    static Triple AboutZ(double degrees, const Triple& v) {
        const double c = std::cos(Radians(degrees));
        const double s = std::sin(Radians(degrees));
        return {c * v[0] - s * v[1], s * v[0] + c * v[1], v[2]};
    }
};

/// The points with independent normal noise of the given standard deviation on every coordinate; the same seed gives
/// the same noise.
inline std::vector<HeadAlignmentDataItem> WithNoise(std::vector<HeadAlignmentDataItem> points, double sigma,
                                                    std::uint64_t seed) {
    std::mt19937_64 generator(seed);
    std::normal_distribution<double> noise(0.0, sigma);
    for (HeadAlignmentDataItem& point : points) {
        point.XPosition += noise(generator);
        point.YPosition += noise(generator);
        point.ZPosition += noise(generator);
    }
    return points;
}
