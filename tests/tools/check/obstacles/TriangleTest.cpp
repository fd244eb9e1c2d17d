#include "tools/check/obstacles/Triangle.h"

#include <gtest/gtest.h>
#include <random>

using namespace qmv40::check::obstacles;
using qmv40::model::Vector3;

namespace {

constexpr double rounding = 1e-12;

TEST(TriangleDistance, IsThatOfTheClosestCornersEdgesOrFaces) {
    const Triangle flat{{0, 0, 0}, {10, 0, 0}, {0, 10, 0}};
    const struct {
        const char* why;
        Triangle other;
        double distance;
    } cases[] = {
        {"corner above the face", {{2, 2, 3}, {2, 3, 9}, {3, 2, 9}}, 3.0},
        {"corner beside a corner", {{-3, -4, 0}, {-9, -4, 0}, {-3, -9, 5}}, 5.0},
        {"edge across an edge", {{5, -2, -7}, {5, -2, 7}, {5, -9, 0}}, 2.0},
        {"parallel faces, one above the other", {{1, 1, 4}, {2, 1, 4}, {1, 2, 4}}, 4.0},
        {"through the face", {{2, 2, -5}, {2, 2, 5}, {3, 3, 5}}, 0.0},
        {"through the face, with distant corners", {{2, 2, -500}, {2, 2, 500}, {900, 2, 500}}, 0.0},
        {"a triangle that is a line, above the face", {{1, 1, 6}, {3, 3, 2}, {3, 3, 2}}, 2.0},
        {"a triangle that is a point, above the face", {{1, 1, 6}, {1, 1, 6}, {1, 1, 6}}, 6.0},
        {"a larger parallel face below the face", {{-90, -90, -7}, {90, -90, -7}, {0, 90, -7}}, 7.0},
        {"a triangle with its corners in one line", {{0, -1, 0}, {5, -1, 0}, {10, -1, 0}}, 1.0},
    };
    for (const auto& each : cases) {
        EXPECT_NEAR(each.distance, Distance(flat, each.other), rounding) << each.why;
        EXPECT_NEAR(each.distance, Distance(each.other, flat), rounding) << each.why << ", arguments exchanged";
    }
}

TEST(TriangleDistance, IsNeverLargerThanBetweenPointsOfBoth) {
    const std::uint64_t seed = std::random_device{}();
    std::mt19937_64 random(seed);
    std::uniform_real_distribution<double> coordinate(-10.0, 10.0);
    std::uniform_real_distribution<double> share(0.0, 1.0);
    const auto point = [&] { return Vector3{coordinate(random), coordinate(random), coordinate(random)}; };
    const auto within = [&](const Triangle& triangle) {
        const double u = share(random);
        const double v = share(random) * (1.0 - u);
        return triangle.a + u * (triangle.b - triangle.a) + v * (triangle.c - triangle.a);
    };
    for (int i = 0; i < 200; ++i) {
        const Triangle left{point(), point(), point()};
        const Triangle right{point(), point(), point()};
        const double distance = Distance(left, right);
        for (int k = 0; k < 200; ++k) {
            ASSERT_LE(distance, qmv40::model::Distance(within(left), within(right)) + rounding) << "seed " << seed;
        }
    }
}

} // namespace
