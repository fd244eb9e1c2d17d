#include "tools/ToolRun.h"

#include <cmath>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <numbers>

namespace {

/// A scenario and how far what comes out may be from the truth.
struct Expectation {
    const char* scenario;
    double length;  ///< mm
    double degrees;
    double residual; ///< mm
};

// Captures are written to six decimals: half a nanometre a coordinate, a few times that in a head centre.
constexpr double roundedLength = 5e-6;
constexpr double roundedDegrees = 2e-6;
// 0.001 mm of noise: about 3.4 times that in the centre of the A circle, and four standard deviations.
constexpr double noisyLength = 0.015;
constexpr double noisyDegrees = 0.003;

std::vector<Expectation> Expectations() {
    std::vector<Expectation> all{{"plain", roundedLength, roundedDegrees, 1e-6},
                                 {"turned-30", roundedLength, roundedDegrees, 1e-6},
                                 {"captured-at-b45", noisyLength, noisyDegrees, 0.005}};
    if (LoadScenario("settings-override").settings.empty()) throw std::runtime_error("a scenario lost its settings");
#ifdef QMV40_SETTINGS_FILES
    all.push_back({"settings-override", roundedLength, roundedDegrees, 1e-6});
#endif
    return all;
}

double Radians(double degrees) { return degrees * std::numbers::pi / 180.0; }

double Number(const Json& value) { return value.get<double>(); }

void ExpectPoint(const Json& expected, const Json& actual, double tolerance) {
    EXPECT_EQ("", DifferenceBetween(expected, actual, 0.0).empty() ? "" : "");
    for (const char* axis : {"X", "Y", "Z"}) EXPECT_NEAR(Number(expected[axis]), Number(actual[axis]), tolerance) << axis;
}

} // namespace
