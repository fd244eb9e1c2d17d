#include "tests/tools/cli/ToolRun.h"

#include <cmath>
#include <gtest/gtest.h>

namespace {

constexpr const char* pointsHeader = "XPosition,YPosition,ZPosition\n";
// The points were made by hand, with coordinates of at most 43: only rounding errors remain.
constexpr double tolerance = 1e-12;

Json FitOf(const std::string& shape, const std::string& points) {
    const TemporaryFolder folder;
    const ToolRun run =
        RunQmv40({"fit", "--shape", shape, "--points", folder.Write("points.csv", pointsHeader + points), "--json"});
    EXPECT_EQ(0, run.exitCode) << run.out << run.err;
    return run.Content();
}

TEST(FitCommand, FitsACircle) {
    // Radius 5 about (10, 20, 30), in a plane normal to Y.
    const Json expected = Json::parse(R"({"shape": "circle",
        "centre": {"X": 10, "Y": 20, "Z": 30}, "normal": {"i": 0, "j": 1, "k": 0},
        "radius": 5, "rms": 0, "residuals": [0, 0, 0, 0, 0]})");
    const Json actual = FitOf("circle", "15,20,30\n13,20,34\n10,20,35\n5,20,30\n14,20,27\n");
    EXPECT_EQ("", DifferenceBetween(expected, actual, tolerance));
}

TEST(FitCommand, PrintsTheDistancesOfThePointsFromTheCircle) {
    // The points lie in turn 0.3 above and 0.3 below the plane of the fitted circle.
    const Json fit = FitOf("circle", "1,0,0.3\n0,1,-0.3\n-1,0,0.3\n0,-1,-0.3\n");
    EXPECT_NEAR(1.0, fit["radius"].get<double>(), tolerance);
    EXPECT_NEAR(0.3, fit["rms"].get<double>(), tolerance);
    ASSERT_EQ(4u, fit["residuals"].size());
    for (const Json& residual : fit["residuals"]) EXPECT_NEAR(0.3, residual.get<double>(), tolerance);
}

TEST(FitCommand, FitsAPlaneWithResidualsSignedByItsNormal) {
    const Json expected = Json::parse(R"({"shape": "plane",
        "point": {"X": 0, "Y": 0, "Z": 7}, "normal": {"i": 0, "j": 0, "k": 1},
        "rms": 0.25, "residuals": [0.25, -0.25, 0.25, -0.25]})");
    const Json actual = FitOf("plane", "4,4,7.25\n-4,4,6.75\n-4,-4,7.25\n4,-4,6.75\n");
    EXPECT_EQ("", DifferenceBetween(expected, actual, tolerance));
}

TEST(FitCommand, FitsALine) {
    // The line runs along (3, 0, 4) through (1, 2, 3); two points are 0.5 away from it.
    const Json expected = Json::parse(R"({"shape": "line",
        "point": {"X": 1, "Y": 2, "Z": 3}, "direction": {"i": 0.6, "j": 0, "k": 0.8},
        "rms": 0.3535533905932738, "residuals": [0, 0.5, 0.5, 0]})");
    const Json actual = FitOf("line", "-29,2,-37\n1,2.5,3\n1,1.5,3\n31,2,43\n");
    EXPECT_EQ("", DifferenceBetween(expected, actual, tolerance));
}

TEST(FitCommand, PrintsTheRmsOfTheResiduals) {
    const TemporaryFolder folder;
    // Four points of a square; one of them is 0.01 too high. The plane is 0.0025 off each.
    const std::string points =
        folder.Write("points.csv", std::string(pointsHeader) + "1,0,0\n0,1,0\n-1,0,0\n0,-1,0.01\n");
    const ToolRun run = RunQmv40({"fit", "--shape", "plane", "--points", points});
    EXPECT_EQ(0, run.exitCode);
    EXPECT_NE(std::string::npos, run.out.find("RMS of the residuals  0.002500  mm")) << run.out;
    EXPECT_NE(std::string::npos, run.out.find("normal k")) << run.out;
}

TEST(FitCommand, PrintsTheArcThatThePointsOfACircleCover) {
    const TemporaryFolder folder;
    const std::string points = folder.Write(
        "points.csv", std::string(pointsHeader) + "0,10,0\n10,0,0\n7.0710678118654755,7.0710678118654755,0\n");
    const ToolRun run = RunQmv40({"fit", "--shape", "circle", "--points", points});
    EXPECT_NE(std::string::npos, run.out.find("arc covered            90.0000  deg")) << run.out;
}

TEST(FitCommand, RefusesPointsThatDoNotDetermineTheShape) {
    const struct {
        const char* shape;
        const char* points;
        const char* source;
        const char* why;
    } cases[] = {
        {"circle", "0,0,0\n1,1,1\n2,2,2\n3,3,3\n", "CMaCircle::Fit", "on one line"},
        {"circle", "0,0,0\n1,0,0\n", "CMaCircle::Fit", "two points"},
        {"circle", "", "CMaCircle::Fit", "no point at all"},
        {"plane", "0,0,0\n1,0,0\n2,0,0\n", "CMaPlane::Fit", "on one line"},
        {"line", "1,2,3\n1,2,3\n", "CMaLine::Fit", "two equal points"},
    };
    const TemporaryFolder folder;
    for (const auto& each : cases) {
        const std::string points = folder.Write("points.csv", std::string(pointsHeader) + each.points);
        const ToolRun run = RunQmv40({"fit", "--shape", each.shape, "--points", points, "--json"});
        EXPECT_EQ(1, run.exitCode) << each.why;
        EXPECT_EQ("0x8A00000C", run.Document()["error"]["code"]) << each.why;
        EXPECT_EQ(each.source, run.Document()["error"]["source"]) << each.why;
    }
}

} // namespace
