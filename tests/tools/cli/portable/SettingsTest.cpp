#include "tests/tools/cli/ReferenceHead.h"
#include "tests/tools/cli/ScenarioExpectations.h"

#include <gtest/gtest.h>

namespace {

Json MovesOf(const PlainHead& head, const std::vector<std::string>& more = {}) {
    return RecordsOf(head.Document("move", With({"--from", "0,0", "--to", "45,90"}, more))["plans"][0]["moves"]);
}

TEST(Settings, OfTheScenarioGiveItsGeometry) {
    const Scenario scenario = LoadScenario("settings-override");
    ASSERT_NE("", scenario.settings);
    ExpectGeometryOf(scenario, roundedCapture);
}

TEST(Settings, OfTheScenarioAreThoseOfItsHead) {
    const Scenario scenario = LoadScenario("settings-override");
    EXPECT_EQ(SettingsText(scenario.truth["settings"]), ReadFile(scenario.settings));
    EXPECT_EQ(14u, scenario.truth["settings"].size());
}

TEST(Settings, AreNeededForTheGeometryOfTheScenario) {
    Scenario scenario = LoadScenario("settings-override");
    scenario.settings.clear();
    const Json document = RunQmv40(scenario.GeometryArguments({"--json"})).Document();
    // The built-in locked-to-unlocked offset is 0.12 mm shorter than that of this head.
    const double expected = scenario.truth["pole"]["Z"].get<double>() - 0.12;
    EXPECT_NEAR(expected, document["headCentre"]["Z"].get<double>(), roundedCapture.length);
}

TEST(Settings, ChangeTheLeversOfAPlan) {
    const PlainHead head;
    const Json builtIn = MovesOf(head);
    const Json overridden = MovesOf(head, {"--settings", LoadScenario("settings-override").settings});
    EXPECT_EQ(-135.0, builtIn["UnLock"]["RotationAngle"].get<double>());
    EXPECT_EQ(-138.0, builtIn["Lock"]["RotationAngle"].get<double>());
    EXPECT_EQ(-120.0, overridden["UnLock"]["RotationAngle"].get<double>());
    EXPECT_EQ(-131.5, overridden["Lock"]["RotationAngle"].get<double>());
    // Pole + lever centre (30.45, 0.15, -32.2) + ball (0.05, -19.4, -4.35).
    const Json ball{{"XPosition", 443.0}, {"YPosition", -197.5}, {"ZPosition", -691.55}};
    EXPECT_EQ("", DifferenceBetween(ball, overridden["EngageWithUnLockLever"], roundedCapture.length));
    // Pole - drive cup (-7.1, 24.25, -11.4).
    const Json peg{{"XPosition", 419.6}, {"YPosition", -202.5}, {"ZPosition", -643.6}};
    EXPECT_EQ("", DifferenceBetween(peg, overridden["EngageWithPeg"], roundedCapture.length));
}

TEST(Settings, OfOneRunDoNotReachTheNext) {
    const PlainHead head;
    const Json before = MovesOf(head);
    MovesOf(head, {"--settings", LoadScenario("settings-override").settings});
    EXPECT_EQ(before.dump(), MovesOf(head).dump());
}

TEST(Settings, FileThatIsMissingIsReported) {
    const PlainHead head;
    for (const std::string& name : {head.folder.Name("missing.reg"), head.folder.Name(".")}) {
        const ToolRun run = head.RunTool("pole", {"--settings", name});
        EXPECT_EQ(3, run.exitCode);
        EXPECT_EQ(name + ": no such settings file\n", run.err);
    }
}

TEST(Settings, ThatAreDoubtfulAreReportedByEveryCommand) {
    const struct {
        Json stored;
        std::vector<std::string> told;
        const char* why;
    } cases[] = {
        {{{"UnLocked To locked Lever Rotation", "137,5"}},
         {"  line 4: fault: setting-misread\n"
          "    \"UnLocked To locked Lever Rotation\" '137,5' reads as 137: the decimal mark is a point.\n"},
         "a decimal comma"},
        {{{"UnLocked To locked Lever Rotation", "137.5 deg"}}, {"reads as 137.5: what follows"}, "a unit"},
        {{{"UnLocked To locked Lever Rotation", "1e999"}}, {"reads as inf, which is no length or angle"}, "too large"},
        {{{"Locked To Unlocked Z Offset", "-1.6"}}, {"is not read, because"}, "Z without X and Y"},
        {{{"Locked To Unlocked X Offset", "0,0"}, {"Locked To Unlocked Y Offset", "0.00"}},
         {"\"Locked To Unlocked X Offset\" '0,0'", "\"Locked To Unlocked Y Offset\" is not read"},
         "two of them"},
        {{{"UnLocked To locked Lever Rotation", "137.5"}}, {}, "valid settings"},
    };
    const TemporaryFolder folder;
    const std::string geometry = PlainGeometryFile(folder);
    const Scenario plain = LoadScenario("plain");
    const std::vector<std::string> commands[] = {
        {"geometry", "--a-axis", plain.aAxis, "--b-axis", plain.bAxis},
        {"move", "--geometry", geometry, "--from", "0,0", "--to", "45,90"},
        {"start", "--geometry", geometry, "--from", "0,0"},
        {"pole", "--geometry", geometry},
        {"check", "--geometry", geometry, "--from", "0,0", "--to", "0,0"},
        {"view", "--geometry", geometry, "--from", "0,0", "--to", "0,0", "--json"},
    };
    for (const auto& each : cases) {
        const std::string settings = folder.Write("settings.reg", SettingsText(each.stored));
        for (const std::vector<std::string>& command : commands) {
            const std::string& name = command.front();
            const ToolRun run = RunQmv40(With(command, {"--settings", settings}));
            EXPECT_TRUE(run.exitCode == 0 || run.exitCode == 4)
                << name << ": findings of settings do not change the exit code";
            EXPECT_EQ(each.told.empty(), run.err.empty()) << name << ": " << each.why << '\n' << run.err;
            for (const std::string& text : each.told) {
                const std::size_t found = run.err.find(text);
                ASSERT_NE(std::string::npos, found) << name << ": " << each.why << '\n' << run.err;
                EXPECT_EQ(std::string::npos, run.err.find(text, found + 1)) << name << ": printed twice\n" << run.err;
            }
        }
    }
}

TEST(Settings, WithTheLeverOnThePoleGiveAnAngleOfNaN) {
    const PlainHead head;
    const std::string settings =
        head.folder.Write("pole.reg", SettingsText({{"Head Centre To Lever Centre X Offset", "0"},
                                                    {"Lever Centre To Ball Centre X Offset", "0"},
                                                    {"Lever Centre To Ball Centre Y Offset", "0"}}));
    EXPECT_TRUE(MovesOf(head, {"--settings", settings})["RotateToPeg"]["RotationAngle"].is_null());
    const ToolRun run = head.RunTool("move", {"--settings", settings, "--from", "0,0", "--to", "45,90"});
    EXPECT_NE(std::string::npos, run.out.find("the angle is not a number: do not run this move"));
}

TEST(Settings, GiveTheExpectedResultForTheReferenceHeads) {
    const TemporaryFolder folder;
    int heads = 0;
    for (const Json& head : LoadReferenceDocuments()) {
        if (head["settings"].empty()) continue;
        ExpectReferenceHead(head, folder.Write("settings.reg", SettingsText(head["settings"])));
        ++heads;
    }
    EXPECT_GE(heads, 3) << "the reference heads were not found";
}

TEST(Settings, OfTheScenarioGivePlansThatTheCheckPasses) {
    const TemporaryFolder folder;
    const Scenario scenario = LoadScenario("settings-override");
    const std::string geometry = folder.Name("head.ini");
    ASSERT_EQ(0, RunQmv40(scenario.GeometryArguments({"--output", geometry})).exitCode);
    const ToolRun run = RunQmv40({"check", "--geometry", geometry, "--tour", folder.Write("tour.csv", RandomTour(300)),
                                  "--settings", scenario.settings});
    EXPECT_EQ(0, run.exitCode) << run.out;
}

TEST(Settings, OtherThanThoseOfThePlanAreFoundByTheCheck) {
    const PlainHead head;
    const std::string plan =
        head.folder.Write("plan.json", head.Document("move", {"--from", "0,0", "--to", "45,90"}).dump());
    const ToolRun run =
        head.RunTool("check", {"--plan", plan, "--settings", LoadScenario("settings-override").settings});
    EXPECT_EQ(4, run.exitCode);
    EXPECT_NE(std::string::npos, run.out.find("lever-not-touched")) << run.out;
}

TEST(Settings, OfEveryReferenceHeadGiveClearPlans) {
    const TemporaryFolder folder;
    const std::string tour = folder.Write("tour.csv", RandomTour(300));
    for (const Json& head : LoadReferenceDocuments()) {
        const bool isRandom = !head["settings"].empty();
        const std::string settings = isRandom ? folder.Write("settings.reg", SettingsText(head["settings"])) : "";
        std::vector<std::string> check{"check", "--geometry", ReferenceGeometryFile(head, folder, settings), "--tour",
                                       tour};
        // With random dimensions a lever may be too close to the sphere. Radii of 0 leave the rest of the check.
        if (isRandom) check = With(check, {"--settings", settings, "--sphere-radius", "0", "--ball-radius", "0"});
        const ToolRun run = RunQmv40(check);
        EXPECT_EQ(0, run.exitCode) << head["name"] << '\n' << run.out;
    }
}

} // namespace
