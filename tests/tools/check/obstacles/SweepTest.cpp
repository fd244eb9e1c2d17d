#include "tests/tools/check/obstacles/SampledClearance.h"
#include "tools/check/obstacles/Mesh.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <numbers>
#include <random>

using namespace qmv40::check::obstacles;
using qmv40::model::Vector3;

namespace {

/// A rod that moves along an arc about the Z axis and turns about an axis along X at its own end.
MovingPart Turning(double arcRadius, double arc, double turn, const Vector3& reach, double radius) {
    const auto at = [=](double fraction) -> Axis {
        const double azimuth = arc * fraction;
        const double turned = turn * fraction;
        const Vector3 carried{arcRadius * std::cos(azimuth), arcRadius * std::sin(azimuth), 0.0};
        const Vector3 tip{reach.x, reach.y * std::cos(turned) - reach.z * std::sin(turned),
                          reach.y * std::sin(turned) + reach.z * std::cos(turned)};
        return {carried, carried + tip};
    };
    return {at, arcRadius * arc * arc + qmv40::model::Length(reach) * turn * turn, radius};
}

TEST(Sweep, IsExactForCasesComputedByHand) {
    const Mesh box(BoxSurface({0, 0, 0}, {20, 20, 20}));
    const auto straight = [](const Vector3& from, const Vector3& to, const Vector3& rod, double radius) {
        return MovingPart{[=](double f) -> Axis {
                              const Vector3 at = from + f * (to - from);
                              return {at, at + rod};
                          },
                          0.0, radius};
    };
    const struct {
        const char* why;
        MovingPart part;
        double clearance;
    } cases[] = {
        {"a ball past a face", straight({-100, 15, 0}, {100, 15, 0}, {}, 2.0), 3.0},
        {"a ball past an edge", straight({-100, 13, 14}, {100, 13, 14}, {}, 2.0), 3.0},
        {"a vertical rod over the top", straight({-100, 0, 16}, {100, 0, 16}, {0, 0, 50}, 2.0), 4.0},
        {"a horizontal rod over the top", straight({0, -100, 16}, {0, 100, 16}, {50, 0, 0}, 2.0), 4.0},
        {"a rod that does not move", straight({13, 0, 0}, {13, 0, 0}, {0, 0, 50}, 2.0), 1.0},
        {"a ball through the box", straight({-100, 0, 0}, {100, 0, 0}, {}, 2.0), -2.0},
        {"a ball in the middle of the box", straight({0, 0, 0}, {1, 0, 0}, {}, 2.0), -12.0},
        {"a rod on an arc round an edge", Turning(16.0, 1.5, 0.0, {0, 0, 30}, 1.0), 15.0 - 10.0 * std::numbers::sqrt2},
    };
    for (const auto& each : cases) {
        const double bound = ClearanceOf(each.part, box);
        EXPECT_LE(bound, each.clearance) << each.why;
        EXPECT_GE(bound, each.clearance - clearanceTolerance - 1e-6) << each.why;
    }
}

TEST(Sweep, IsNeverAboveTheClearanceOfDenseSampling) {
    const std::uint64_t seed = std::random_device{}();
    std::mt19937_64 random(seed);
    std::uniform_real_distribution<double> unit(-1.0, 1.0);
    const auto randomVector = [&] { return Vector3{unit(random), unit(random), unit(random)}; };
    std::vector<Triangle> surface;
    for (int i = 0; i < 60; ++i) {
        const Vector3 corner = 150.0 * randomVector();
        surface.push_back({corner, corner + 30.0 * randomVector(), corner + 30.0 * randomVector()});
    }
    const Mesh triangles(surface);
    const Rod ball({60, 20, -30}, {60, 20, -30}, 8.0);
    const Table table(-120.0);
    constexpr int samples = 2000;
    for (int i = 0; i < 60; ++i) {
        const MovingPart part =
            Turning(30.0 + 20.0 * unit(random), 3.0 * unit(random), 2.0 * unit(random), 80.0 * randomVector(), 3.0);
        for (const Solid* const solid : std::initializer_list<const Solid*>{&triangles, &ball, &table}) {
            const double bound = ClearanceOf(part, *solid);
            const double sampled = SampledClearance(part, *solid, samples);
            ASSERT_LE(bound, sampled) << "seed " << seed;
            // A point of the rod moves by less than 400 mm in all, so by less than this between two samples.
            ASSERT_GE(bound, sampled - clearanceTolerance - 400.0 / samples) << "seed " << seed;
        }
    }
}

TEST(Sweep, StopsWhenTheClearanceIsProvenToBeEnough) {
    const Mesh box(BoxSurface({0, 0, 0}, {20, 20, 20}));
    const MovingPart part = Turning(60.0, 3.0, 1.0, {0, 0, 40}, 2.0);
    const double clearance = ClearanceOf(part, box);
    for (const double enough : {0.0, 5.0, clearance - 1.0}) {
        const double proven = ClearanceOf(part, box, enough);
        EXPECT_GE(proven, enough);
        EXPECT_LE(proven, clearance + clearanceTolerance);
    }
    EXPECT_NEAR(clearance, ClearanceOf(part, box, clearance + 5.0), clearanceTolerance);
}

TEST(Sweep, GivesNoClearanceForNumbersThatAreNotFinite) {
    const Table table(0.0);
    const double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_TRUE(std::isnan(ClearanceOf({[nan](double) -> Axis { return {{nan, 0, 0}, {0, 0, 5}}; }, 0.0, 1.0}, table)));
}

} // namespace
