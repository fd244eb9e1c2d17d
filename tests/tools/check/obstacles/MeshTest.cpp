#include "tools/check/obstacles/Mesh.h"

#include <cmath>
#include <fcl/geometry/bvh/BVH_model.h>
#include <fcl/narrowphase/distance.h>
#include <gtest/gtest.h>
#include <limits>
#include <random>

using namespace qmv40::check::obstacles;
using qmv40::model::Vector3;

namespace {

constexpr double infinite = std::numeric_limits<double>::infinity();

Triangle PointAt(const Vector3& point) { return {point, point, point}; }

/// An open surface with hills and valleys of 20 mm.
std::vector<Triangle> Hills(int sides) {
    const auto at = [sides](int i, int k) {
        const double x = 300.0 * i / sides - 150.0;
        const double y = 300.0 * k / sides - 150.0;
        return Vector3{x, y, 10.0 * std::sin(x / 9.0) * std::cos(y / 7.0)};
    };
    std::vector<Triangle> hills;
    for (int i = 0; i < sides; ++i) {
        for (int k = 0; k < sides; ++k) {
            hills.push_back({at(i, k), at(i + 1, k), at(i + 1, k + 1)});
            hills.push_back({at(i, k), at(i + 1, k + 1), at(i, k + 1)});
        }
    }
    return hills;
}

/// The same surface for the library FCL.
std::shared_ptr<fcl::BVHModel<fcl::OBBRSSd>> FclModel(const std::vector<Triangle>& triangles) {
    auto model = std::make_shared<fcl::BVHModel<fcl::OBBRSSd>>();
    model->beginModel();
    for (const Triangle& t : triangles) {
        model->addTriangle({t.a.x, t.a.y, t.a.z}, {t.b.x, t.b.y, t.b.z}, {t.c.x, t.c.y, t.c.z});
    }
    model->endModel();
    return model;
}

TEST(Mesh, HasTheDistancesThatFclComputes) {
    const std::vector<Triangle> hills = Hills(60);
    const Mesh mesh(hills);
    const auto fclModel = FclModel(hills);
    const std::uint64_t seed = std::random_device{}();
    std::mt19937_64 random(seed);
    std::uniform_real_distribution<double> place(-160.0, 160.0);
    std::uniform_real_distribution<double> size(-30.0, 30.0);
    int touching = 0;
    for (int i = 0; i < 500; ++i) {
        const Vector3 corner{place(random), place(random), 0.3 * place(random) + 20.0};
        const auto aside = [&] { return corner + Vector3{size(random), size(random), size(random)}; };
        const Triangle triangle{corner, aside(), aside()};
        fcl::DistanceResultd result;
        const double expected = std::max(
            0.0, fcl::distance<double>(FclModel({triangle}).get(), fcl::Transform3d::Identity(), fclModel.get(),
                                       fcl::Transform3d::Identity(), fcl::DistanceRequestd(), result));
        // Both compute closed forms in double precision from coordinates of some hundred millimetres.
        ASSERT_NEAR(expected, mesh.DistanceTo(triangle, infinite), 1e-9) << "seed " << seed;
        if (expected == 0.0) ++touching;
    }
    EXPECT_GT(touching, 20) << "too few triangles intersect the surface";
}

TEST(Mesh, StopsSearchingBeyondTheGivenDistance) {
    const Mesh box(BoxSurface({0, 0, 0}, {10, 10, 10}));
    EXPECT_EQ(3.0, box.DistanceTo(PointAt({25, 0, 0}), 3.0));
    EXPECT_NEAR(20.0, box.DistanceTo(PointAt({25, 0, 0}), infinite), 1e-12);
    EXPECT_NEAR(20.0, box.DistanceTo(PointAt({25, 0, 0}), 20.5), 1e-12);
}

TEST(Mesh, HasAnInsideWhenItIsClosed) {
    std::vector<Triangle> surface = BoxSurface({5, 0, 0}, {10, 10, 10});
    const Mesh box(surface);
    EXPECT_TRUE(box.IsClosed());
    const struct {
        Vector3 point;
        bool isInside;
    } cases[] = {{{5, 0, 0}, true},    {{0.01, 4.9, 4.9}, true}, {{9.9, -4.9, 0}, true}, {{-0.01, 0, 0}, false},
                 {{5, 5.1, 0}, false}, {{5, 0, 900}, false},     {{11, 6, 6}, false}};
    for (const auto& each : cases) EXPECT_EQ(each.isInside, box.Contains(each.point)) << each.point.x;
    surface.pop_back();
    const Mesh open(surface);
    EXPECT_FALSE(open.IsClosed());
    EXPECT_FALSE(open.Contains({5, 0, 0}));
}

TEST(Mesh, OfACylinderContainsTheCylinderWithLittleExcess) {
    for (const double radius : {0.5, 10.0, 300.0}) {
        const Mesh cylinder(CylinderSurface({0, 0, -20}, {0, 0, 20}, radius));
        EXPECT_TRUE(cylinder.IsClosed());
        for (double angle = 0.0; angle < 6.3; angle += 0.01) {
            const Vector3 direction{std::cos(angle), std::sin(angle), 0.0};
            const double distance = cylinder.DistanceTo(PointAt((radius + 5.0) * direction), infinite);
            ASSERT_LE(distance, 5.0 + 1e-9);
            ASSERT_GE(distance, 5.0 - largestExcess - 1e-9);
        }
        EXPECT_NEAR(7.0, cylinder.DistanceTo(PointAt({0, 0, 27}), infinite), 1e-9);
        EXPECT_TRUE(cylinder.Contains({0.9 * radius, 0, 19}));
    }
}

} // namespace
