#pragma once

#include "tests/tools/cli/ToolRun.h"

#include <cmath>
#include <gtest/gtest.h>
#include <numbers>

/// Permitted differences between a computed geometry and the head from which the points were computed.
struct Tolerance {
    double length; ///< mm, of the head centre
    double degrees;
    double residual; ///< mm
};

/// Coordinates of captures are rounded to six decimals: 0.5 nm each, and a few times that in a head centre.
inline constexpr Tolerance roundedCapture{5e-6, 2e-6, 2e-6};
/// The noise is 0.001 mm per coordinate. The centre of the A circle then has a standard deviation of about 0.0034 mm;
/// the tolerance is a little more than four times that.
inline constexpr Tolerance noisyCapture{0.015, 0.003, 0.005};

inline double Radians(double degrees) { return degrees * std::numbers::pi / 180.0; }

inline void ExpectNear(const Json& expected, const Json& actual, double tolerance, const std::string& what) {
    EXPECT_NEAR(expected.get<double>(), actual.get<double>(), tolerance) << what;
}

inline void ExpectAllNear(const Json& expected, const Json& actual, double tolerance, const std::string& what) {
    ASSERT_EQ(expected.size(), actual.size()) << what;
    for (const auto& item : expected.items()) {
        ExpectNear(item.value(), actual[item.key()], tolerance, what + " " + item.key());
    }
}

inline void ExpectFit(const Json& fit, const Json& direction, const Json& centre, double radius,
                      const Tolerance& tolerance) {
    ExpectAllNear(centre, fit["centre"], tolerance.length, "centre");
    ExpectAllNear(direction, fit["normal"], Radians(tolerance.degrees) * 10.0, "normal");
    ExpectNear(radius, fit["radius"], tolerance.length, "radius");
    double sum = 0.0;
    for (const Json& residual : fit["residuals"]) {
        EXPECT_LT(residual.get<double>(), tolerance.residual);
        sum += residual.get<double>() * residual.get<double>();
    }
    const auto count = static_cast<double>(fit["residuals"].size());
    EXPECT_NEAR(std::sqrt(sum / count), fit["rms"].get<double>(), 1e-12);
}

/// Expects that the tool computes from a scenario's capture the head from which its points were computed.
inline void ExpectGeometryOf(const Scenario& scenario, const Tolerance& tolerance) {
    SCOPED_TRACE(scenario.name);
    const ToolRun run = RunQmv40(scenario.GeometryArguments({"--json"}));
    ASSERT_EQ(0, run.exitCode) << run.out << run.err;
    const Json document = run.Document();
    const Json& truth = scenario.truth;
    const double mounted = truth["mountingAngle"];
    const double safeHeight = 35.0;
    ExpectAllNear(truth["pole"], document["headCentre"], tolerance.length, "head centre");
    ExpectNear(mounted, document["requiredRotationAroundZ"], tolerance.degrees, "rotation");
    ExpectNear(truth["pole"]["Z"].get<double>() + safeHeight, document["safePosition"]["Z"], tolerance.length,
               "safe Z");

    // The A axis points along the head's -X, the B axis along +Z. During the B set the machine position is length *
    // cos(A) above the pole sphere, on a circle of the radius length * sin(A).
    const double turn = Radians(mounted + truth["aAxisPointsCapturedAtB"].get<double>());
    const double length = -truth["stylus"]["Z"].get<double>();
    const double tilt = Radians(truth["bAxisPointsCapturedAtA"].get<double>());
    Json circleCentre = truth["pole"];
    circleCentre["Z"] = truth["pole"]["Z"].get<double>() + length * std::cos(tilt);
    ExpectFit(document["fits"]["aAxis"], {{"i", -std::cos(turn)}, {"j", -std::sin(turn)}, {"k", 0.0}}, truth["pole"],
              length, tolerance);
    ExpectFit(document["fits"]["bAxis"], {{"i", 0.0}, {"j", 0.0}, {"k", 1.0}}, circleCentre, length * std::sin(tilt),
              tolerance);
}
