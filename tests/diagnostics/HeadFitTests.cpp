#include "diagnostics/HeadFit.h"

#include "diagnostics/Angles.h"
#include "diagnostics/Captures.h"
#include "diagnostics/HeadSums.h"

#include <gtest/gtest.h>

namespace {

using namespace diagnostics;

/// Of exact points some hundreds from the origin.
constexpr double lengthRounding = 1e-9;
constexpr double angleRounding = 1e-10;

TEST(HeadFit, FindsTheHeadWhateverItsMountingAngle) {
    SimulatedHead head = SomeSimulatedHead();
    for (int mounting = -180; mounting < 180; mounting += 7) {
        head.mountingAngle = mounting;
        const HeadFit fit = FitHead(SetsOf(head.ASet(0), head.BSet(75)).points);
        EXPECT_NEAR(0.0, Wrapped(fit.MountingDegrees() - mounting), angleRounding);
        EXPECT_NEAR(0.0, Length(fit.model.pole - Vector3{head.pole[0], head.pole[1], head.pole[2] - 1.5}),
                    lengthRounding)
            << "of points that were not brought to the locked position";
        EXPECT_NEAR(0.0, Length(fit.model.tip - Vector3{head.stylus[0], head.stylus[1], head.stylus[2]}),
                    lengthRounding);
        EXPECT_LT(fit.Rms(), lengthRounding);
        EXPECT_EQ(3 * 14 - 7, fit.redundancy);
    }
}

TEST(HeadFit, FindsDeparturesOfTheHeadThatAreThere) {
    const HeadModel truth = [] {
        HeadModel model;
        model.pole = {100.0, 50.0, -300.0};
        model.mounting = ToRadians(-2.0);
        model.tip = {1.0, -1.5, -180.0};
        model.departures = {{Departure::Kind::LeaningHead, 0, 14, {ToRadians(0.2), ToRadians(-0.1)}},
                            {Departure::Kind::AxesNotSquare, 0, 14, {ToRadians(0.15)}},
                            {Departure::Kind::AxesApart, 0, 14, {0.07}}};
        return model;
    }();
    CapturedSets sets = SetsOf(SimulatedHead().ASet(45), SimulatedHead().BSet(75));
    for (std::size_t i = 0; i < sets.points.size(); ++i) sets.points[i].position = truth.Position(sets.points[i], i);
    HeadModel start = FitHead(sets.points).model;
    start.departures = truth.departures;
    for (Departure& departure : start.departures) departure.values = {};
    const HeadFit fit = FitHead(sets.points, start);
    EXPECT_LT(fit.Rms(), lengthRounding);
    EXPECT_NEAR(0.07, fit.model.departures[2].values[0], lengthRounding);
    EXPECT_NEAR(-2.0, fit.MountingDegrees(), angleRounding);
}

TEST(HeadFit, KnowsItsMountingAngleAsWellAsRepetitionsShow) {
    const SimulatedHead head = SomeSimulatedHead();
    constexpr double noise = 2e-3;
    constexpr int repetitions = 1000;
    double scatter = 0.0, predicted = 0.0;
    for (int i = 0; i < repetitions; ++i) {
        const auto seed = static_cast<std::uint64_t>(2 * i);
        const HeadFit fit =
            FitHead(SetsOf(WithNoise(head.ASet(45), noise, seed), WithNoise(head.BSet(75), noise, seed + 1)).points);
        const double deviation = Wrapped(fit.MountingDegrees() - head.mountingAngle);
        scatter += deviation * deviation / repetitions;
        predicted += fit.MountingDeviation() * fit.MountingDeviation() / repetitions;
    }
    // A thousand repetitions give the scatter to 2.2 %: four times that.
    EXPECT_NEAR(1.0, std::sqrt(predicted / scatter), 0.09);
}

TEST(BestHead, IsAsGoodAsTheFitToTheSamePoints) {
    // Points that no head explains: the sum of squares is large, and the search has hills to choose from.
    std::mt19937_64 generator(7);
    std::uniform_real_distribution<double> anywhere(-100.0, 100.0);
    for (int round = 0; round < 50; ++round) {
        SCOPED_TRACE(round);
        CapturedSets sets = SetsOf(SimulatedHead().ASet(45), SimulatedHead().BSet(75));
        HeadSums sums;
        for (CapturedPoint& point : sets.points) {
            point.position = {anywhere(generator), anywhere(generator), anywhere(generator)};
            sums += HeadSums(point, 0.0, 0.0);
        }
        const double best = BestHead({&sums, 1}).sumOfSquares;
        EXPECT_NEAR(best, FitHead(sets.points).sumOfSquares, 1e-9 * best);
        for (int start = 0; start < 360; start += 15) {
            HeadModel model;
            model.mounting = ToRadians(start);
            EXPECT_GE(FitHead(sets.points, model).sumOfSquares, best * (1.0 - 1e-9)) << "from " << start;
        }
    }
}

TEST(HeadSums, ForgetAPointThatIsTakenOut) {
    const CapturedSets sets = SetsOf(SomeSimulatedHead().ASet(45), SomeSimulatedHead().BSet(75));
    HeadSums without, withAndOut;
    for (std::size_t i = 0; i < sets.points.size(); ++i) {
        if (i != 3) without += HeadSums(sets.points[i], 0.0, 0.0);
        withAndOut += HeadSums(sets.points[i], 0.0, 0.0);
    }
    withAndOut -= HeadSums(sets.points[3], 0.0, 0.0);
    const BestHeadResult expected = BestHead({&without, 1}), actual = BestHead({&withAndOut, 1});
    EXPECT_NEAR(0.0, Length(expected.model.tip - actual.model.tip), 1e-7);
    EXPECT_NEAR(expected.model.mounting, actual.model.mounting, 1e-9);
}

} // namespace
