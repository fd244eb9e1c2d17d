#include "tests/tools/cli/ScenarioExpectations.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sstream>

namespace {

using testing::HasSubstr;

class WhereAndWhich : public testing::Test, protected PlainHead {
protected:
    std::string Where(const std::string& at, const std::string& tip, const std::vector<std::string>& more = {}) const {
        const Json position = Document("where", With({"--at", at, "--tip", tip}, more))["position"];
        return position["X"].dump() + "," + position["Y"].dump() + "," + position["Z"].dump();
    }
};

TEST_F(WhereAndWhich, GiveThePointsOfTheCapture) {
    // The points were captured unlocked, with the stylus tip of truth.json.
    const Scenario scenario = LoadScenario("plain");
    std::istringstream lines(ReadFile(scenario.aAxis));
    std::string header;
    while (header.empty() || header.starts_with('#')) std::getline(lines, header);
    ASSERT_EQ("APosition,BPosition,XPosition,YPosition,ZPosition", header);
    int points = 0;
    for (std::string line; std::getline(lines, line); ++points) {
        double a = 0;
        double b = 0;
        double x = 0;
        double y = 0;
        double z = 0;
        ASSERT_EQ(5, std::sscanf(line.c_str(), "%lf,%lf,%lf,%lf,%lf", &a, &b, &x, &y, &z)) << line;
        const std::string tip = "0,0," + scenario.truth["stylus"]["Z"].dump();
        const std::string at = std::to_string(a) + "," + std::to_string(b);
        const Json position = Document("where", {"--at", at, "--tip", tip, "--unlocked"})["position"];
        EXPECT_NEAR(x, position["X"].get<double>(), roundedCapture.length) << line;
        EXPECT_NEAR(y, position["Y"].get<double>(), roundedCapture.length) << line;
        EXPECT_NEAR(z, position["Z"].get<double>(), roundedCapture.length) << line;
    }
    EXPECT_LE(4, points);
}

TEST_F(WhereAndWhich, AreInverseToEachOther) {
    for (const std::vector<std::string>& state : {std::vector<std::string>{}, {"--unlocked"}}) {
        const std::string place = Where("45,90", "3,-2,-180", state);
        const ToolRun run = RunTool("which", With({"--tip", "3,-2,-180", "--measured", place, "--json"}, state));
        EXPECT_EQ(0, run.exitCode) << run.out;
        const Json document = run.Document();
        EXPECT_EQ(R"({"A":45.0,"B":90.0})", document["nearest"].dump());
        EXPECT_NEAR(45.0, document["A"].get<double>(), 1e-7);
        EXPECT_NEAR(90.0, document["B"].get<double>(), 1e-7);
        EXPECT_NEAR(0.0, document["offPlace"].get<double>(), 1e-7);
        EXPECT_TRUE(document["findings"].empty());
    }
}

TEST_F(WhereAndWhich, SayThatTheHeadDidNotIndex) {
    const std::string place = Where("47,90", "0,0,-180");
    const ToolRun text = RunTool("which", {"--tip", "0,0,-180", "--measured", place});
    EXPECT_EQ(4, text.exitCode);
    EXPECT_THAT(text.out,
                HasSubstr("The head did not index\n  nearest position A 45, B 90 deg, 6.2829 mm off its place\n"
                          "  measured A 47.0000, B 90.0000 deg\n"))
        << "2 degrees at 180 mm: a chord of 2 * 180 * sin(1 degree)";
    const Json document = RunTool("which", {"--tip", "0,0,-180", "--measured", place, "--json"}).Document();
    EXPECT_EQ("did-not-index", document["findings"][0]["name"]);
    EXPECT_EQ("fault", document["findings"][0]["severity"]);
}

TEST_F(WhereAndWhich, SayWhenSeveralPositionsHaveTheTipInOnePlace) {
    const ToolRun hanging = RunTool("which", {"--tip", "0,0,-180", "--measured", Where("0,30", "0,0,-180"), "--json"});
    EXPECT_EQ(0, hanging.exitCode) << "a note, not a fault";
    EXPECT_TRUE(hanging.Document()["B"].is_null());
    EXPECT_TRUE(hanging.Document()["nearest"]["B"].is_null());
    EXPECT_EQ("several-positions", hanging.Document()["findings"][0]["name"]);
    EXPECT_EQ(25u, hanging.Document()["findings"][0]["positions"].size());
    const std::string behind = Where("60,180", "0,0,-180");
    EXPECT_THAT(
        RunTool("which", {"--tip", "0,0,-180", "--measured", behind}).out,
        HasSubstr("note: several-positions\n    The tip is in one place at several positions: A 60, B -180; A 60, "
                  "B 180."));
}

TEST_F(WhereAndWhich, RefuseATipThatIsNotThreeNumbers) {
    for (const char* tip : {"0,0", "0,0,x", "0;0;-180", "0,0,-180,1", "nan,0,0"}) {
        const ToolRun run = RunTool("where", {"--at", "0,0", "--tip", tip});
        EXPECT_EQ(2, run.exitCode) << tip;
        EXPECT_THAT(run.err, HasSubstr("is not three numbers such as 0,0,-180")) << tip;
    }
    EXPECT_EQ(2, RunTool("which", {"--tip", "0,0,-180"}).exitCode);
    EXPECT_EQ(3, RunQmv40({"where", "--geometry", folder.Name("no.ini"), "--at", "0,0", "--tip", "0,0,-1"}).exitCode);
}

TEST_F(WhereAndWhich, PrintUnits) {
    EXPECT_EQ("Where the machine stands with the tip on the pole sphere, the head at A 0, B 0 (deg) and locked\n"
              "  X 412.5000 mm   Y -178.2500 mm   Z -475.0000 mm\n",
              RunTool("where", {"--at", "0,0", "--tip", "0,0,-180"}).out);
    EXPECT_THAT(RunTool("which", {"--tip", "0,0,-180", "--measured", Where("15,30", "0,0,-180")}).out,
                HasSubstr("The head stands at A 15, B 30 (deg)\n  nearest position A 15, B 30 deg, 0.0000 mm off"));
}

} // namespace
