#pragma once

#include "tests/tools/cli/ToolRun.h"

#include <cmath>
#include <gtest/gtest.h>
#include <numbers>

/// How far what comes out of a capture may be from the truth.
struct Tolerance {
    double length; ///< mm, of the head centre
    double degrees;
    double residual; ///< mm
};

/// Captures are written to six decimals: half a nanometre a coordinate, a few times that in a head centre.
inline constexpr Tolerance roundedCapture{5e-6, 2e-6, 2e-6};
/// 0.001 mm of noise: about 3.4 times that in the centre of the A circle, and four standard deviations.
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

/// The geometry that the tool computes from a scenario, against the head that the points were computed from.
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

    // The A axis is -X of the head, the B axis its +Z; the B circle hangs below the pole by the cosine of its A.
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
