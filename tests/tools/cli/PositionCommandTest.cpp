#include "tests/tools/cli/ScenarioExpectations.h"

#include <gtest/gtest.h>

namespace {

class PositionCommands : public testing::Test {
protected:
    const TemporaryFolder folder;
    const std::string geometry = PlainGeometryFile(folder);
};

TEST_F(PositionCommands, StartIsTheFirstPointOfAnyPlanFromThere) {
    for (const char* from : {"0,0", "45,90", "90,-180", "15,15"}) {
        const ToolRun start = RunQmv40({"start", "--geometry", geometry, "--from", from, "--json"});
        const ToolRun move = RunQmv40({"move", "--geometry", geometry, "--from", from, "--to", "30,-45", "--json"});
        const Json expected = move.Document()["plans"][0]["moves"][0]["record"];
        EXPECT_EQ(expected.dump(), start.Document()["startPosition"].dump()) << from;
    }
}

TEST_F(PositionCommands, StartIsBesideTheLeverThatUnlocks) {
    // At A = 45, B = 90 the lever side is 0: pole sphere + (30.3, -24.3, -36.55).
    const ToolRun run = RunQmv40({"start", "--geometry", geometry, "--from", "45,90"});
    EXPECT_EQ(0, run.exitCode);
    EXPECT_EQ("Start of any indexing from A 45, B 90 (deg)\n  X 442.8000 mm   Y -202.5500 mm   Z -691.5500 mm\n",
              run.out);
}

TEST_F(PositionCommands, StartRefusesAPositionThatTheHeadCannotHave) {
    const ToolRun run = RunQmv40({"start", "--geometry", geometry, "--from", "10,0", "--json"});
    EXPECT_EQ(1, run.exitCode);
    EXPECT_EQ("0x8A00000E", run.Document()["error"]["code"]);
}

TEST_F(PositionCommands, PoleIsTheHeadCentre) {
    const ToolRun run = RunQmv40({"pole", "--geometry", geometry, "--json"});
    EXPECT_EQ(0, run.exitCode);
    const Json expected{{"poleSpherePosition", {{"XPosition", 412.5}, {"YPosition", -178.25}, {"ZPosition", -655.0}}}};
    EXPECT_EQ("", DifferenceBetween(expected["poleSpherePosition"], run.Document()["poleSpherePosition"],
                                    roundedCapture.length));
    EXPECT_EQ("Centre of the pole sphere\n  X 412.5000 mm   Y -178.2500 mm   Z -655.0000 mm\n",
              RunQmv40({"pole", "--geometry", geometry}).out);
}

TEST_F(PositionCommands, PoleRefusesAMissingGeometryFile) {
    EXPECT_EQ(3, RunQmv40({"pole", "--geometry", folder.Name("missing.ini")}).exitCode);
}

} // namespace
