#include "tools/motion/Polyline.h"
#include "tests/support/IdealHead.h"

#include <gtest/gtest.h>
#include <random>

using namespace qmv40;

namespace {

constexpr unsigned seed = 20261122;

model::Path RandomArc(std::mt19937_64& random) {
    std::uniform_real_distribution<double> number(-100.0, 100.0);
    const auto vector = [&] {
        const double x = number(random);
        const double y = number(random);
        return model::Vector3{x, y, number(random)};
    };
    const model::Vector3 start = vector();
    const model::Vector3 centre = vector();
    return model::Path::Arc(start, centre, model::Unit(vector()),
                            std::uniform_real_distribution(-400.0, 400.0)(random));
}

/// The largest distance of the arc from its chord between two fractions, from samples.
double Sagitta(const model::Path& arc, double from, double to) {
    constexpr int samples = 64;
    const model::Path chord = model::Path::Straight(arc.At(from), arc.At(to));
    double largest = 0.0;
    for (int i = 0; i <= samples; ++i) {
        const double fraction = from + (to - from) * i / samples;
        largest = std::max(largest, chord.SmallestDistanceTo(arc.At(fraction)));
    }
    return largest;
}

TEST(ChordEnds, KeepTheChordsWithinTheToleranceOfTheArc) {
    std::mt19937_64 random(seed);
    for (const double tolerance : {1e-4, 0.01, 1.0, 500.0}) {
        for (int i = 0; i < 50; ++i) {
            const model::Path arc = RandomArc(random);
            const std::vector<model::Vector3> ends = motion::ChordEnds(arc, tolerance);
            const auto chords = static_cast<double>(ends.size());
            for (std::size_t k = 0; k < ends.size(); ++k) {
                const auto number = static_cast<double>(k);
                ASSERT_TRUE(IsAt(arc.At((number + 1.0) / chords), ends[k], rounding)) << "seed " << seed;
                if (k > 20) continue; // all chords of one arc have the same length
                ASSERT_LE(Sagitta(arc, number / chords, (number + 1.0) / chords), tolerance + rounding);
            }
        }
    }
}

TEST(ChordEnds, AreAsFewAsTheToleranceAllows) {
    // At a radius of 50 mm a chord with a sagitta of 0.01 mm covers 2 * acos(1 - 0.01 / 50) = 2.2919 degrees. 90
    // degrees take 40 of them.
    const model::Path arc = model::Path::Arc({50.0, 0.0, 0.0}, {0.0, 0.0, 0.0}, {0.0, 0.0, 1.0}, 90.0);
    EXPECT_EQ(40u, motion::ChordEnds(arc, 0.01).size());
}

TEST(ChordEnds, DivideAFullTurnWhateverTheTolerance) {
    const auto chords = [](double degrees) {
        return motion::ChordEnds(model::Path::Arc({50.0, 0.0, 0.0}, {0.0, 0.0, 0.0}, {0.0, 0.0, 1.0}, degrees), 1000.0);
    };
    EXPECT_EQ(8u, chords(360.0).size()) << "at most 45 degrees per chord";
    EXPECT_EQ(1u, chords(0.0).size()) << "a turn by 0 degrees has one point";
    EXPECT_TRUE(IsAt({50.0, 0.0, 0.0}, chords(-360.0).back(), 1e-12));
}

TEST(ChordEnds, OfAStraightLineAreItsEnd) {
    const std::vector<model::Vector3> ends =
        motion::ChordEnds(model::Path::Straight({1.0, 2.0, 3.0}, {4.0, 6.0, 3.0}), 0.01);
    ASSERT_EQ(1u, ends.size());
    EXPECT_TRUE(IsAt({4.0, 6.0, 3.0}, ends.front(), rounding));
}

} // namespace
