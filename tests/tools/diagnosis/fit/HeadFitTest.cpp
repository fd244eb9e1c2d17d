#include "tools/diagnosis/fit/HeadFit.h"

#include "tests/tools/diagnosis/Captures.h"
#include "tools/diagnosis/fit/HeadSums.h"
#include "tools/model/Angles.h"

#include <gtest/gtest.h>

using namespace qmv40;

namespace {

/// Rounding in the fit to points without noise, some hundreds of millimetres from the origin.
constexpr double lengthRounding = 1e-9;
constexpr double angleRounding = 1e-10;

TEST(HeadFit, FindsTheHeadWhateverItsMountingAngle) {
    SimulatedHead head = SomeSimulatedHead();
    for (int mounting = -180; mounting < 180; mounting += 7) {
        head.mountingAngle = mounting;
        const diagnosis::fit::HeadFit fit = diagnosis::fit::FitHead(SetsOf(head.ASet(0), head.BSet(75)).points);
        EXPECT_NEAR(0.0, model::Wrapped(fit.MountingDegrees() - mounting), angleRounding);
        EXPECT_NEAR(0.0, Length(fit.model.poleSphere - model::Vector3{head.pole[0], head.pole[1], head.pole[2] - 1.5}),
                    lengthRounding)
            << "of points that were not brought to the locked position";
        EXPECT_NEAR(0.0, Length(fit.model.tip - model::Vector3{head.stylus[0], head.stylus[1], head.stylus[2]}),
                    lengthRounding);
        EXPECT_LT(fit.Rms(), lengthRounding);
        EXPECT_EQ(3 * 14 - 7, fit.degreesOfFreedom);
    }
}

TEST(HeadFit, FindsTheErrorsOfAHead) {
    const diagnosis::fit::HeadModel truth = [] {
        diagnosis::fit::HeadModel model;
        model.poleSphere = {100.0, 50.0, -300.0};
        model.mounting = model::ToRadians(-2.0);
        model.tip = {1.0, -1.5, -180.0};
        model.errors = {
            {diagnosis::fit::ModelError::Kind::LeaningHead, 0, 14, {model::ToRadians(0.2), model::ToRadians(-0.1)}},
            {diagnosis::fit::ModelError::Kind::AxesNotSquare, 0, 14, {model::ToRadians(0.15)}},
            {diagnosis::fit::ModelError::Kind::AxesApart, 0, 14, {0.07}}};
        return model;
    }();
    captures::CapturedSets sets = SetsOf(SimulatedHead().ASet(45), SimulatedHead().BSet(75));
    for (std::size_t i = 0; i < sets.points.size(); ++i) sets.points[i].position = truth.Position(sets.points[i], i);
    diagnosis::fit::HeadModel start = diagnosis::fit::FitHead(sets.points).model;
    start.errors = truth.errors;
    for (diagnosis::fit::ModelError& error : start.errors) error.values = {};
    const diagnosis::fit::HeadFit fit = diagnosis::fit::FitHead(sets.points, start);
    EXPECT_LT(fit.Rms(), lengthRounding);
    EXPECT_NEAR(0.07, fit.model.errors[2].values[0], lengthRounding);
    EXPECT_NEAR(-2.0, fit.MountingDegrees(), angleRounding);
}

TEST(HeadFit, KnowsItsMountingAngleAsWellAsRepetitionsShow) {
    const SimulatedHead head = SomeSimulatedHead();
    constexpr double noise = 2e-3;
    constexpr int repetitions = 1000;
    double scatter = 0.0, predicted = 0.0;
    for (int i = 0; i < repetitions; ++i) {
        const auto seed = static_cast<std::uint64_t>(2 * i);
        const auto sets = SetsOf(WithNoise(head.ASet(45), noise, seed), WithNoise(head.BSet(75), noise, seed + 1));
        diagnosis::fit::HeadFit fit = diagnosis::fit::FitHead(sets.points);
        diagnosis::fit::FindVariances(sets.points, fit);
        const double deviation = model::Wrapped(fit.MountingDegrees() - head.mountingAngle);
        scatter += deviation * deviation / repetitions;
        predicted += std::pow(model::ToDegrees(fit.StandardDeviation(fit.mountingVariance)), 2.0) / repetitions;
    }
    // The standard deviation of 1000 repetitions is itself uncertain by 2.2 %. The tolerance is four times that.
    EXPECT_NEAR(1.0, std::sqrt(predicted / scatter), 0.09);
}

TEST(BestHead, IsAsGoodAsTheFitToTheSamePoints) {
    // Points that no head explains: the sum of squares is large, and has several minima over the mounting angle.
    std::mt19937_64 generator(7);
    std::uniform_real_distribution<double> anywhere(-100.0, 100.0);
    for (int round = 0; round < 50; ++round) {
        SCOPED_TRACE(round);
        captures::CapturedSets sets = SetsOf(SimulatedHead().ASet(45), SimulatedHead().BSet(75));
        diagnosis::fit::HeadSums sums;
        for (captures::CapturedPoint& point : sets.points) {
            point.position = {anywhere(generator), anywhere(generator), anywhere(generator)};
            sums += diagnosis::fit::HeadSums(point, 0.0, 0.0);
        }
        const double best = diagnosis::fit::BestHead({&sums, 1}).sumOfSquares;
        EXPECT_NEAR(best, diagnosis::fit::FitHead(sets.points).sumOfSquares, 1e-9 * best);
        for (int start = 0; start < 360; start += 15) {
            diagnosis::fit::HeadModel model;
            model.mounting = model::ToRadians(start);
            EXPECT_GE(diagnosis::fit::FitHead(sets.points, model).sumOfSquares, best * (1.0 - 1e-9))
                << "from " << start;
        }
    }
}

TEST(HeadSums, ForgetAPointThatIsTakenOut) {
    const captures::CapturedSets sets = SetsOf(SomeSimulatedHead().ASet(45), SomeSimulatedHead().BSet(75));
    diagnosis::fit::HeadSums without, withAndOut;
    for (std::size_t i = 0; i < sets.points.size(); ++i) {
        if (i != 3) without += diagnosis::fit::HeadSums(sets.points[i], 0.0, 0.0);
        withAndOut += diagnosis::fit::HeadSums(sets.points[i], 0.0, 0.0);
    }
    withAndOut -= diagnosis::fit::HeadSums(sets.points[3], 0.0, 0.0);
    const diagnosis::fit::BestHeadResult expected = diagnosis::fit::BestHead({&without, 1}),
                                         actual = diagnosis::fit::BestHead({&withAndOut, 1});
    EXPECT_NEAR(0.0, Length(expected.model.tip - actual.model.tip), 1e-7);
    EXPECT_NEAR(expected.model.mounting, actual.model.mounting, 1e-9);
}

} // namespace
