// What happens little by little during a capture: the machine warms up, the head settles on its mount.

#include "tests/tools/diagnosis/PaperTrial.h"

#include <cmath>
#include <gtest/gtest.h>
#include <string>

namespace {

using paper::Measurement;
using qmv40::model::Vector3;

/// A whole capture during which something comes to rest: `change` is given the share of the movement that is left. It
/// goes from 1 at the first measurement to about exp(-timeConstants) at the last.
template <typename Change>
PaperTrial TrialOf(std::uint64_t seed, bool aSetIsFirst, double timeConstants, Change change) {
    PaperCapture capture(seed);
    capture.aSetIsFirst = aSetIsFirst;
    capture.noise = 0.002;
    capture.SetPositions(45, {0, 15, 30, 45, 60, 75, 90}, 90.0, {-180, -135, -90, -45, 0, 45, 90, 135});
    const double step = timeConstants / static_cast<double>(capture.aSet.size() + capture.bSet.size());
    double passed = 0.0;
    capture.All([&](Measurement& each) {
        each.tip = {0.0, 0.0, -150.0};
        change(each, std::exp(-passed));
        passed += step;
    });
    capture.Measure();
    return PaperTrial(capture);
}

TEST(Drift, IsNamedAfterWhatComesToRest) {
    const struct {
        void (*change)(Measurement&, double left);
        std::vector<std::string_view> names;
        const char* what;
    } cases[] = {
        {[](Measurement& each, double left) {
             each.sphere = each.sphere + left * Vector3{0.2, -0.3, 0.2};
         },
         {"drifts"},
         "the machine warms up"},
        {[](Measurement& each, double left) { each.mounting += 0.5 * left; }, {"turned-on-mount"}, "the head turns"},
        {[](Measurement& each, double left) { each.leanX += 0.3 * left, each.leanY -= 0.2 * left; },
         {"head-tilted"},
         "the head tilts"},
        {[](Measurement& each, double left) {
             each.tip = each.tip + left * Vector3{0.5, 0.4, 0.0};
         },
         {"stylus-bent"},
         "the stylus is loose"},
    };
    for (const auto& each : cases) {
        for (const bool aSetIsFirst : {true, false}) {
            for (const double timeConstants : {1.0, 2.0, 4.5, 9.0}) {
                // With nine time constants a twentieth of the movement is left at the sixth measurement. Other mistakes
                // look the same.
                const bool isNamed = timeConstants < 9.0;
                SCOPED_TRACE(std::string(each.what) + (aSetIsFirst ? ", A first, " : ", B first, ") +
                             std::to_string(timeConstants) + " time constants");
                const PaperTrial trial = TrialOf(1, aSetIsFirst, timeConstants, each.change);
                EXPECT_FALSE(trial.IsAccepted()) << trial.Text();
                EXPECT_TRUE(trial.Names(each.names) || !isNamed) << trial.Text();
            }
        }
    }
}

/// The stated standard deviations assume noise, and a drift is not noise: without an explanation by a drift, a head
/// centre was off by 0.12 mm with a stated standard deviation of 0.02 mm.
TEST(Drift, OfAFewPointsIsNotTakenForInexactAngles) {
    // The smallest of these drifts are within the stated precision. Without an explanation by a drift, 11 are accepted.
    constexpr int mostAccepted = 4;
    int accepted = 0;
    for (std::uint64_t seed = 1; seed <= 40; ++seed) {
        PaperCapture capture(seed);
        capture.noise = 0.002;
        capture.SetPositions(45, {0, 15, 30, 45, 60, 75, 90}, 90.0, {-180, -90, 0, 90});
        const Vector3 whole = capture.Vector(0.1, 1.0);
        double left = 1.0;
        capture.All([&](Measurement& each) {
            each.sphere = each.sphere + left * whole;
            left *= std::exp(-3.0 / 11.0);
        });
        capture.Measure();
        const PaperTrial trial(capture);
        EXPECT_FALSE(trial.IsAccepted() && trial.IsWrong()) << "seed " << seed << ": " << trial.Text();
        if (trial.IsAccepted()) ++accepted;
    }
    EXPECT_LE(accepted, mostAccepted) << "of 40 that drift by 0.1 to 1 mm";
}

} // namespace
