#include "tests/tools/cli/ScenarioExpectations.h"

#include <gtest/gtest.h>

namespace {

class PositionCommands : public testing::Test, protected PlainHead {};

TEST_F(PositionCommands, StartIsTheFirstPointOfAnyPlanFromThere) {
    for (const char* from : {"0,0", "45,90", "90,-180", "15,15"}) {
        const Json expected = PlansThrough({from, "30,-45"})[0]["moves"][0]["record"];
        EXPECT_EQ(expected.dump(), Document("start", {"--from", from})["startPosition"].dump()) << from;
    }
}

TEST_F(PositionCommands, StartIsBesideTheLeverThatUnlocks) {
    // At A = 45, B = 90 the lever side is 0: pole sphere + (30.3, -24.3, -36.55).
    const ToolRun run = RunTool("start", {"--from", "45,90"});
    EXPECT_EQ(0, run.exitCode);
    EXPECT_EQ("Start of any indexing from A 45, B 90 (deg)\n  X 442.8000 mm   Y -202.5500 mm   Z -691.5500 mm\n",
              run.out);
}

TEST_F(PositionCommands, StartRefusesAPositionThatTheHeadCannotHave) {
    const ToolRun run = RunTool("start", {"--from", "10,0", "--json"});
    EXPECT_EQ(1, run.exitCode);
    EXPECT_EQ("0x8A00000E", run.Document()["error"]["code"]);
}

TEST_F(PositionCommands, PoleIsTheHeadCentre) {
    const ToolRun run = RunTool("pole", {"--json"});
    EXPECT_EQ(0, run.exitCode);
    const Json expected{{"poleSpherePosition", {{"XPosition", 412.5}, {"YPosition", -178.25}, {"ZPosition", -655.0}}}};
    EXPECT_EQ("", DifferenceBetween(expected["poleSpherePosition"], run.Document()["poleSpherePosition"],
                                    roundedCapture.length));
    EXPECT_EQ("Centre of the pole sphere\n  X 412.5000 mm   Y -178.2500 mm   Z -655.0000 mm\n", RunTool("pole").out);
}

TEST_F(PositionCommands, PoleRefusesAMissingGeometryFile) {
    EXPECT_EQ(3, RunQmv40({"pole", "--geometry", folder.Name("missing.ini")}).exitCode);
}

} // namespace
