#pragma once

#include "tools/model/Angles.h"
#include "tools/model/HeadAngles.h"

#include <cstdint>
#include <random>
#include <vector>

namespace qmv40::model {

/// A head in closed formulas, and its captures. While the stylus tip is kept on a sphere at `pole`, the machine
/// position is the pole minus the stylus, turned by A, B and the mounting, plus `lockedToUnlocked`.
///
/// Millimetres, degrees. `Item` is the record of a captured point: an aggregate of A, B, X, Y and Z, in this order.
template <typename Item> struct SimulatedHead {
    Vector3 pole{0.0, 0.0, 0.0};
    double mountingAngle = 0.0;               ///< rotation of the head about the machine's Z axis
    Vector3 stylus{0.0, 0.0, -180.0};         ///< the tip, in the head's frame at A = 0, B = 0
    Vector3 lockedToUnlocked{0.0, 0.0, -1.5}; ///< the shift of the machine position by unlocking

    // The errors of a head as it was built and mounted

    double axisOffset = 0.0; ///< along the head's Y
    double squareness = 0.0; ///< rotation of the A axis about the head's Y, degrees
    double leanAboutX = 0.0; ///< tilt of the B axis: about machine Y first, then about machine X
    double leanAboutY = 0.0;

    /// The machine position while the tip is on the sphere and the head unlocked.
    Vector3 Position(const HeadAngles& angles) const {
        const Vector3 tilted = AboutX(Rotation(ToRadians(-angles.a)), stylus);
        const Vector3 squared = AboutY(Rotation(ToRadians(squareness)), tilted) + Vector3{0.0, axisOffset, 0.0};
        const Vector3 swivelled = AboutZ(Rotation(ToRadians(mountingAngle + angles.b)), squared);
        const Vector3 leaning =
            AboutX(Rotation(ToRadians(leanAboutX)), AboutY(Rotation(ToRadians(leanAboutY)), swivelled));
        return pole - leaning + lockedToUnlocked;
    }

    /// A point captured without noise at the angles that are written down for it.
    Item Point(double a, double b) const { return Point({a, b}, {a, b}); }
    /// A point that was captured at other angles than those that are written down for it.
    Item Point(const HeadAngles& written, const HeadAngles& captured) const {
        const Vector3 position = Position(captured);
        return {written.a, written.b, position.x, position.y, position.z};
    }

    /// The A set: A turned from `firstA` to `lastA` in equal steps, B held at `b`.
    std::vector<Item> ASet(double b, int count = 7, double firstA = 0.0, double lastA = 90.0) const {
        std::vector<Item> points;
        points.reserve(static_cast<std::size_t>(count));
        for (int i = 0; i < count; ++i) points.push_back(Point(Step(i, count, firstA, lastA), b));
        return points;
    }

    /// The B set: B turned from `firstB` to `lastB` in equal steps, A held at `a`.
    std::vector<Item> BSet(double a, int count = 7, double firstB = -180.0, double lastB = 90.0) const {
        std::vector<Item> points;
        points.reserve(static_cast<std::size_t>(count));
        for (int i = 0; i < count; ++i) points.push_back(Point(a, Step(i, count, firstB, lastB)));
        return points;
    }

private:
    static double Step(int i, int count, double first, double last) { return first + (last - first) * i / (count - 1); }
};

/// The points with independent normal noise of the given standard deviation on every coordinate; the same seed gives
/// the same noise.
template <typename Item> std::vector<Item> WithNoise(std::vector<Item> points, double sigma, std::uint64_t seed) {
    std::mt19937_64 generator(seed);
    std::normal_distribution<double> noise(0.0, sigma);
    for (auto& [a, b, x, y, z] : points) {
        x += noise(generator);
        y += noise(generator);
        z += noise(generator);
    }
    return points;
}

} // namespace qmv40::model
