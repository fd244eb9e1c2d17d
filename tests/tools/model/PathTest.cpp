#include "tools/model/Path.h"
#include "tests/support/IdealHead.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <random>

using namespace qmv40;

namespace {

constexpr unsigned seed = 20240613;
constexpr int steps = 4000;

model::Vector3 RandomVector(std::mt19937_64& random, double size) {
    std::uniform_real_distribution<double> number(-size, size);
    const double x = number(random);
    const double y = number(random);
    return {x, y, number(random)};
}

model::Path RandomPath(std::mt19937_64& random) {
    const model::Vector3 start = RandomVector(random, 100.0);
    if (random() % 2 == 0) return model::Path::Straight(start, RandomVector(random, 100.0));
    const model::Vector3 axis = model::Unit(RandomVector(random, 1.0));
    return model::Path::Arc(start, RandomVector(random, 100.0), axis,
                            std::uniform_real_distribution(-400.0, 400.0)(random));
}

/// The length of one of the steps into which the path is divided.
double StepLength(const model::Path& path) {
    const double length = path.IsArc() ? path.Radius() * model::ToRadians(std::abs(path.Degrees()))
                                       : model::Distance(path.Start(), path.End());
    return length / steps;
}

TEST(Path, HasTheSmallestDistanceThatSamplesHave) {
    std::mt19937_64 random(seed);
    for (int round = 0; round < 300; ++round) {
        SCOPED_TRACE(testing::Message() << "seed " << seed << " round " << round);
        const model::Path path = RandomPath(random);
        const model::Vector3 point = RandomVector(random, 100.0);
        double sampled = model::Distance(path.Start(), point);
        for (int i = 1; i <= steps; ++i) {
            sampled = std::min(sampled, model::Distance(path.At(static_cast<double>(i) / steps), point));
        }
        const double smallest = path.SmallestDistanceTo(point);
        EXPECT_LE(smallest, sampled + rounding);
        EXPECT_GE(smallest, sampled - StepLength(path)) << "the closest point is within a step of a sample";
    }
}

TEST(Path, HasTheRangeOfCoordinatesThatSamplesHave) {
    std::mt19937_64 random(seed);
    for (int round = 0; round < 300; ++round) {
        SCOPED_TRACE(testing::Message() << "seed " << seed << " round " << round);
        const model::Path path = RandomPath(random);
        const model::Vector3 direction = model::Unit(RandomVector(random, 1.0));
        double smallest = model::Dot(path.Start(), direction);
        double largest = smallest;
        for (int i = 1; i <= steps; ++i) {
            const double coordinate = model::Dot(path.At(static_cast<double>(i) / steps), direction);
            smallest = std::min(smallest, coordinate);
            largest = std::max(largest, coordinate);
        }
        const model::Path::Range range = path.RangeAlong(direction);
        EXPECT_LE(range.smallest, smallest + rounding);
        EXPECT_GE(range.smallest, smallest - StepLength(path));
        EXPECT_GE(range.largest, largest - rounding);
        EXPECT_LE(range.largest, largest + StepLength(path));
    }
}

TEST(Path, FindsTheFractionOfAPointOnIt) {
    std::mt19937_64 random(seed);
    for (int round = 0; round < 300; ++round) {
        SCOPED_TRACE(testing::Message() << "seed " << seed << " round " << round);
        const model::Path path = RandomPath(random);
        if (std::abs(path.Degrees()) > 359.0) continue; // one point can have two fractions
        const double fraction = std::uniform_real_distribution(0.0, 1.0)(random);
        EXPECT_NEAR(fraction, path.NearestFraction(path.At(fraction)), 1e-9);
        EXPECT_EQ(0.0, path.NearestFraction(path.At(-0.001)));
        EXPECT_EQ(1.0, path.NearestFraction(path.At(1.001)));
    }
}

TEST(Path, TurnsRightHanded) {
    const model::Path quarter = model::Path::Arc({12.0, 5.0, 7.0}, {2.0, 5.0, -40.0}, {0.0, 0.0, 1.0}, 90.0);
    EXPECT_TRUE(IsAt({12.0, 5.0, 7.0}, quarter.Start(), rounding));
    EXPECT_TRUE(IsAt({2.0, 15.0, 7.0}, quarter.End(), rounding));
    EXPECT_DOUBLE_EQ(10.0, quarter.Radius());
    const model::Path back = model::Path::Arc({12.0, 5.0, 7.0}, {2.0, 5.0, -40.0}, {0.0, 0.0, -1.0}, 90.0);
    EXPECT_TRUE(IsAt({2.0, -5.0, 7.0}, back.End(), rounding));
}

TEST(Path, WithoutLengthIsAPoint) {
    const model::Vector3 place{1.0, 2.0, 3.0};
    const model::Vector3 elsewhere{1.0, 6.0, 6.0};
    for (const model::Path& path :
         {model::Path::Straight(place, place), model::Path::Arc(place, {0.0, 0.0, 0.0}, {0.0, 0.0, 1.0}, 0.0),
          model::Path::Arc(place, {1.0, 2.0, 0.0}, {0.0, 0.0, 1.0}, 90.0)}) {
        EXPECT_DOUBLE_EQ(5.0, path.SmallestDistanceTo(elsewhere));
        EXPECT_TRUE(IsAt({1.0, 2.0, 3.0}, path.End(), rounding));
    }
}

TEST(Path, CanBeShifted) {
    const model::Path arc = model::Path::Arc({10.0, 0.0, 0.0}, {0.0, 0.0, 0.0}, {0.0, 0.0, 1.0}, 180.0);
    const model::Path beside = arc.ShiftedBy({1.0, 2.0, 3.0});
    EXPECT_TRUE(IsAt({11.0, 2.0, 3.0}, beside.Start(), rounding));
    EXPECT_TRUE(IsAt({1.0, 12.0, 3.0}, beside.At(0.5), rounding));
    EXPECT_DOUBLE_EQ(10.0, beside.SmallestDistanceTo({1.0, 2.0, 3.0}));
}

} // namespace
