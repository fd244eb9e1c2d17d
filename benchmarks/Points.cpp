#include "benchmarks/Points.h"

#include <cmath>
#include <cstdint>
#include <numbers>
#include <random>

namespace {

constexpr double noiseOfTheProbe = 0.002; // mm

class NoisyPoints {
public:
    explicit NoisyPoints(std::size_t count) : generator(std::uint64_t{count}), points{{}, CMaPointArray(0)} {
        points.list.reserve(count);
    }

    void Add(double x, double y, double z) {
        const Points::Point point{x + noise(generator), y + noise(generator), z + noise(generator)};
        points.list.push_back(point);
        points.array.Add(CMaPoint(point.x, point.y, point.z));
    }
    Points Take() { return std::move(points); }

private:
    std::mt19937_64 generator;
    std::normal_distribution<double> noise{0.0, noiseOfTheProbe};
    Points points;
};

double Share(std::size_t i, std::size_t count) { return static_cast<double>(i) / static_cast<double>(count - 1); }

} // namespace

Points ArcOf90Degrees(std::size_t count) {
    NoisyPoints points(count);
    for (std::size_t i = 0; i < count; ++i) {
        const double angle = 0.5 * std::numbers::pi * Share(i, count);
        const double u = arcRadius * std::cos(angle), v = arcRadius * std::sin(angle);
        // Along (2, 1, -2) / 3 and (2, -2, 1) / 3: the plane is perpendicular to (1, 2, 2) / 3.
        points.Add(arcCentre.x + (2.0 * u + 2.0 * v) / 3.0, arcCentre.y + (u - 2.0 * v) / 3.0,
                   arcCentre.z + (v - 2.0 * u) / 3.0);
    }
    return points.Take();
}

Points StraightLine(std::size_t count) {
    constexpr double length = 200.0;
    NoisyPoints points(count);
    for (std::size_t i = 0; i < count; ++i) {
        const double along = length * Share(i, count);
        points.Add(arcCentre.x + along * 2.0 / 3.0, arcCentre.y + along / 3.0, arcCentre.z - along * 2.0 / 3.0);
    }
    return points.Take();
}
