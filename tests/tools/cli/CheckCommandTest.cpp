#include "tests/support/SourceFolders.h"
#include "tests/tools/cli/CheckedPlan.h"
#include "tests/tools/cli/ReferenceHead.h"
#include "tools/check/AllPairs.h"
#include "tools/check/Findings.h"
#include "tools/check/HeadFile.h"
#include "tools/cli/Tool.h"
#include "tools/settings/GeometryFile.h"

#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sstream>

using namespace qmv40;

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

// mm and degrees. Numbers of a geometry file have ten digits.
constexpr double filePrecision = 1e-6;

class CheckCommand : public testing::Test, protected PlainHead {
protected:
    ToolRun Check(const std::vector<std::string>& more) const { return RunTool("check", more); }
    Json Report(const std::vector<std::string>& more) const { return Document("check", more); }
};

TEST_F(CheckCommand, FollowsLeverPegAndAnglesThroughTheMoves) {
    const Json report = Report({"--from", "30,-45", "--to", "45,90"});
    EXPECT_EQ("clear", report["verdict"].get<std::string>());
    const Json& moves = report["plans"][0]["moves"];
    ASSERT_EQ(19u, moves.size());
    const struct {
        const char* name;
        const char* lever;
        bool onPeg;
        double a, b;
    } expected[] = {
        {"ApproachUnLockLever", "locked", false, 30, -45},
        {"EngageWithUnLockLever", "locked", false, 30, -45},
        {"UnLock", "open", false, 30, -45},
        {"DisengageFromUnLockLever", "open", false, 30, -45},
        {"RotateToPeg", "open", false, 30, -45},
        {"MoveToPegAtSafeZ", "open", false, 30, -45},
        {"ApproachPeg", "open", false, 30, -45},
        {"EngageWithPeg", "open", true, 30, -45},
        {"IntermediateAPosition", "open", true, 0, -45},
        {"MoveToBPosition", "open", true, 0, 90},
        {"MoveToAPosition", "open", true, 45, 90},
        {"DisengageFromPeg", "open", false, 45, 90},
        {"DisengageFromPegToSafeZ", "open", false, 45, 90},
        {"RotateToLockLever", "open", false, 45, 90},
        {"MoveToLockLeverAtSafeZ", "open", false, 45, 90},
        {"ApproachLockLever", "open", false, 45, 90},
        {"EngageWithLockLever", "open", false, 45, 90},
        {"Lock", "locked", false, 45, 90},
        {"DisengageFromLockLever", "locked", false, 45, 90},
    };
    std::size_t i = 0;
    for (const auto& each : expected) {
        SCOPED_TRACE(each.name);
        const Json& move = moves[i++];
        EXPECT_EQ(i, move["move"].get<std::size_t>());
        EXPECT_EQ(each.name, move["name"].get<std::string>());
        EXPECT_EQ(each.lever, move["after"]["lever"].get<std::string>());
        EXPECT_EQ(each.onPeg, move["after"]["onPeg"].get<bool>());
        EXPECT_NEAR(each.a, move["after"]["A"].get<double>(), filePrecision);
        EXPECT_NEAR(each.b, move["after"]["B"].get<double>(), filePrecision);
    }
}

TEST_F(CheckCommand, MeasuresTheClearanceOfMoves) {
    const Json moves = Report({"--from", "0,0", "--to", "45,90"})["plans"][0]["moves"];
    const auto toSphere = [&](std::size_t number) { return moves[number - 1]["clearanceToPoleSphere"].get<double>(); };
    const auto toLevers = [&](std::size_t number) { return moves[number - 1]["clearanceToLevers"].get<double>(); };
    EXPECT_NEAR(5.0 - 2.5, toLevers(1), filePrecision) << "approached from 5 mm";
    EXPECT_NEAR(60.6 - 2.5, toLevers(3), filePrecision)
        << "the sphere must touch one lever: this is the distance to the other one";
    EXPECT_NEAR(10.0 - 5.0, toSphere(7), filePrecision) << "approached from 10 mm";
    const double cup = std::sqrt(6.95 * 6.95 + 24.0 * 24.0 + 11.5 * 11.5);
    EXPECT_NEAR(cup - 5.0, toSphere(10), filePrecision) << "on the peg, the distance to the head's centre";
    EXPECT_EQ("lever", moves[2]["mustTouch"].get<std::string>());
    EXPECT_EQ("peg", moves[9]["mustTouch"].get<std::string>());
    EXPECT_EQ("", moves[6]["mustTouch"].get<std::string>());
}

TEST_F(CheckCommand, UsesTheGivenRadiiOfSphereAndBall) {
    const Json moves =
        Report({"--from", "0,0", "--to", "45,90", "--sphere-radius", "8", "--ball-radius", "4.5"})["plans"][0]["moves"];
    EXPECT_NEAR(0.5, moves[0]["clearanceToLevers"].get<double>(), filePrecision);
    EXPECT_NEAR(2.0, moves[6]["clearanceToPoleSphere"].get<double>(), filePrecision);
    EXPECT_EQ(4, Check({"--from", "0,0", "--to", "45,90", "--sphere-radius", "10.5"}).exitCode);
    EXPECT_EQ(4, Check({"--from", "0,0", "--to", "45,90", "--ball-radius", "5.5"}).exitCode);
}

TEST_F(CheckCommand, ListsPointsAlongEachMoveForDrawing) {
    const Json moves = Report({"--from", "30,-45", "--to", "45,90"})["plans"][0]["moves"];
    for (std::size_t i = 0; i < moves.size(); ++i) {
        const Json& path = moves[i]["path"];
        EXPECT_EQ("", DifferenceBetween(moves[i]["before"]["position"], path.front()["position"], 0.0));
        EXPECT_EQ("", DifferenceBetween(moves[i]["after"]["position"], path.back()["position"], 0.0));
        EXPECT_EQ(moves[i]["kind"] == "arc", path.size() > 2) << moves[i]["name"];
        if (i > 0) {
            EXPECT_EQ("", DifferenceBetween(moves[i - 1]["path"].back()["position"], path.front()["position"], 1e-12));
        }
    }
    // MoveToBPosition turns from B = -45 to 90: the middle is at 22.5.
    const Json& turn = moves[9]["path"];
    EXPECT_NEAR(22.5, turn[(turn.size() - 1) / 2]["B"].get<double>(), 1.5 + filePrecision)
        << "one point every 3 degrees";
}

TEST_F(CheckCommand, ChecksTheWayBetweenThePlansOfATour) {
    const Json report = Report({"--from", "0,0", "--to", "45,90", "--to", "15,-30"});
    EXPECT_EQ("clear", report["verdict"].get<std::string>());
    ASSERT_EQ(2u, report["plans"].size());
    const Json& first = report["plans"][1]["moves"][0];
    Json above = first["after"]["position"];
    above["Z"] = -655.0 + 35.0;
    EXPECT_EQ("", DifferenceBetween(above, first["before"]["position"], filePrecision)) << "at the safe height";
    EXPECT_NEAR(5.0 - 2.5, first["clearanceToLevers"].get<double>(), filePrecision);
}

TEST_F(CheckCommand, FindsAPlanThatDoesNotStartWhereTheOneBeforeEnded) {
    Json tour = Document("move", {"--from", "0,0", "--to", "45,90"});
    tour["plans"].push_back(PlansThrough({"45,75", "0,0"})[0]);
    const ToolRun run = Check({"--plan", folder.Write("tour.json", tour.dump()), "--json"});
    EXPECT_EQ(4, run.exitCode);
    const Json plans = run.Document()["plans"];
    EXPECT_THAT(FindingNames(plans[0]), IsEmpty());
    EXPECT_THAT(FindingNames(plans[1]), ElementsAre("the plan start-is-not-the-end-before"));
    EXPECT_EQ(15.0, plans[1]["findings"][0]["amount"].get<double>());
}

TEST_F(CheckCommand, PrintsATableOfStatesClearancesAndTheVerdict) {
    const ToolRun run = Check({"--from", "0,0", "--to", "45,90"});
    EXPECT_EQ(0, run.exitCode);
    for (const char* expected :
         {"Plan: from A 0, B 0 to A 45, B 90 (deg), as after each move\n",
          "  10  MoveToBPosition           open    on peg   0.0000  90.0000      22.5055", "  peg\n",
          "  smallest clearance to a lever           2.5000 mm  move 1 ApproachUnLockLever\n",
          "Verdict: clear, no findings in 1 plan.\n"}) {
        EXPECT_THAT(run.out, HasSubstr(expected));
    }
    EXPECT_TRUE(IsWithin100Columns(run.out)) << run.out;
}

TEST_F(CheckCommand, PrintsWhatIsWrongAndWhatToDo) {
    const ToolRun run = Check({"--from", "0,0", "--to", "45,90", "--z-travel", "-690,0"});
    EXPECT_EQ(4, run.exitCode);
    EXPECT_THAT(run.out, HasSubstr("  move 1 ApproachUnLockLever: fault: travel-limit-exceeded by 1.5500 mm\n"
                                   "    The move leaves the machine's travel.\n"
                                   "    -> Move the pole sphere further into the measuring volume, or correct the "
                                   "limits.\n"));
    EXPECT_THAT(run.out, HasSubstr("Verdict: "));
    EXPECT_THAT(run.out, Not(HasSubstr("Verdict: clear")));
}

TEST_F(CheckCommand, ChecksAllPairsAndCountsTheRefusedOnes) {
    const ToolRun run = Check({"--all", "--json"});
    EXPECT_EQ(0, run.exitCode);
    EXPECT_THAT(run.err, Not(HasSubstr("\r"))) << "not a terminal: progress must not overwrite its line";
    const Json report = run.Document();
    EXPECT_EQ(325, report["positions"].get<int>());
    EXPECT_EQ(105625, report["pairs"].get<int>());
    EXPECT_EQ(75000, report["refused"].get<int>()) << "A below 0 at either end: 325² - 175²";
    EXPECT_EQ(30625, report["checked"].get<int>());
    EXPECT_THAT(report["findings"], IsEmpty());
    EXPECT_LE(report["worst"]["targetMiss"]["value"].get<double>(), filePrecision);
}

TEST_F(CheckCommand, GivesAnExampleOfEachFindingAmongAllPairs) {
    std::ostringstream out;
    std::ostringstream err;
    // A terminal: the progress is shown in one line, which is erased at the end.
    EXPECT_EQ(
        4, cli::RunTool({"check", "--geometry", geometry, "--all", "--reachable", "--sphere-radius", "9.5", "--json"},
                        {out, err, false, true}));
    EXPECT_TRUE(err.str().ends_with("\r\x1b[K")) << err.str();
    EXPECT_THAT(err.str(), Not(HasSubstr("\n")));
    const Json report = Json::parse(out.str());
    EXPECT_EQ(0, report["refused"].get<int>());
    ASSERT_EQ(1u, report["findings"].size());
    const Json& finding = report["findings"][0];
    EXPECT_EQ("touches-pole-sphere", finding["name"].get<std::string>());
    EXPECT_GT(finding["count"].get<int>(), 0);
    // A check of that plan alone has the same finding.
    const Json& first = finding["first"];
    const auto angles = [](const Json& at) {
        return std::to_string(at["A"].get<int>()) + "," + std::to_string(at["B"].get<int>());
    };
    const Json alone = Report({"--from", angles(first["from"]), "--to", angles(first["to"]), "--sphere-radius", "9.5"});
    EXPECT_EQ(first["amount"].get<double>(), alone["plans"][0]["findings"][0]["amount"].get<double>());
}

TEST_F(CheckCommand, PrintsHowOftenAFindingOccursAmongPairs) {
    check::CheckOptions options;
    options.sizes.poleSphereRadius = 9.5;
    const model::HeadModel head = check::HeadModelOf(settings::GeometryFile(geometry).Numbers());
    std::vector<model::HeadAngles> positions = check::HeadPositions(0);
    std::erase_if(positions, [](const model::HeadAngles& each) { return each.b > -150.0; });
    std::ostringstream out;
    const text::Console console{out, out};
    check::PrintAllPairs(check::CheckAllPairs(geometry, head, options, positions, console), options, console);
    EXPECT_THAT(out.str(), HasSubstr(" times, first from A 0, B -180 to A "));
}

TEST_F(CheckCommand, RefusesADocumentWithoutAValidPlan) {
    const std::string head = R"({"plans":[{"from":{"A":0,"B":0},"to":{"A":0,"B":0},"moves":)";
    const struct {
        std::string text;
        const char* reason;
        const char* why;
    } cases[] = {
        {"{\n\"plans\": [,]}", ":2: is not JSON from here on", "a syntax error, with its line"},
        {"", ":1: is not JSON from here on", "an empty file"},
        {"[]", ": the document is not an object", "another document"},
        {"{}", ": the document has no member plans", "another document"},
        {R"({"plans":{}})", ": plans is not a list", "plans must be a list"},
        {R"({"plans":[]})", ": plans is empty", "no plan"},
        {R"({"plans":[{"from":{"A":0}}]})", ": plans[0].from has no member B", "B is missing"},
        {R"({"plans":[{"from":{"A":"0","B":0}}]})", ": plans[0].from.A is not a number", "a text instead of a number"},
        {R"({"plans":[{"from":{"A":0,"A":1,"B":0}}]})", ": the member A stands twice", "two values for A"},
        {R"({"plans":[{"from":{"A":1e999,"B":0}}]})", ": holds a number that is too large",
         "beyond the range of double"},
        {head + R"({}}]})", ": plans[0].moves is not a list", "moves must be a list"},
        {head + R"([{"name":"UnLok"}]}]})", ": plans[0].moves[0].name is UnLok, and there is no such move",
         "a misspelt name"},
        {head + R"([{"name":3}]}]})", ": plans[0].moves[0].name is not a text", "a number instead of a name"},
        {head + R"([{"name":"Lock"}]}]})", ": plans[0].moves[0] has no member record", "a move without its record"},
        {head + R"([{"name":"UnLock","record":{"XOrigin":0}}]}]})", ": plans[0].moves[0].record has no member YOrigin",
         "a record with one of seven numbers"},
        {head + R"([{"name":"UnLock","record":3}]}]})", ": plans[0].moves[0].record is not an object",
         "a number instead of a record"},
    };
    for (const auto& each : cases) {
        const std::string name = folder.Write("plan.json", each.text);
        const ToolRun run = Check({"--plan", name});
        EXPECT_EQ(3, run.exitCode) << each.why;
        EXPECT_EQ(name + each.reason + "\n", run.err) << each.why;
        EXPECT_EQ("", run.out) << each.why;
    }
    EXPECT_EQ(3, Check({"--plan", folder.Name("missing.json")}).exitCode);
}

TEST_F(CheckCommand, RefusesOptionsThatDoNotSayWhatToCheck) {
    const std::string plan = folder.Write("plan.json", RunTool("move", {"--from", "0,0", "--to", "0,0", "--json"}).out);
    const struct {
        std::vector<std::string> arguments;
        const char* why;
    } cases[] = {
        {{}, "no plan and no angles"},
        {{"--from", "0,0"}, "no target"},
        {{"--to", "0,0"}, "no start"},
        {{"--all", "--to", "0,0"}, "all pairs and one target"},
        {{"--all", "--plan", plan}, "all pairs and a plan"},
        {{"--reachable", "--from", "0,0", "--to", "0,0"}, "--reachable is for --all only"},
        {{"--plan", plan, "--to", "0,0", "--to", "15,0"}, "more targets than plans"},
        {{"--all", "--sphere-radius", "-1"}, "a negative radius"},
        {{"--all", "--clearance", "nan"}, "not a number"},
        {{"--all", "--x-travel", "5"}, "one limit instead of two"},
        {{"--all", "--x-travel", "5,-5"}, "the lower limit after the upper one"},
    };
    for (const auto& each : cases) {
        const ToolRun run = Check(each.arguments);
        EXPECT_EQ(2, run.exitCode) << each.why;
        EXPECT_EQ("", run.out) << each.why;
        EXPECT_NE("", run.err) << each.why;
    }
}

TEST_F(CheckCommand, ReportsARefusalOfTheComponentAsEveryCommandDoes) {
    const ToolRun run = Check({"--from", "0,0", "--to", "-15,0", "--json"});
    EXPECT_EQ(1, run.exitCode);
    EXPECT_EQ("0x8A00000E", run.Document()["error"]["code"].get<std::string>());
    EXPECT_EQ(3, RunQmv40({"check", "--geometry", folder.Name("missing.ini"), "--all"}).exitCode);
}

TEST(Check, ListsEveryFindingInTheManual) {
    const std::string manual = ReadFile(SourceRoot() + "/docs/qmv40.md");
    for (const check::FindingText& text : check::AllFindingTexts()) {
        EXPECT_THAT(manual, HasSubstr(std::string("| `") + text.name + "` |"));
    }
}

/// All pairs of "plain" are checked above.
TEST(Check, PassesTheShippedScenariosThatAreMountedTurned) {
    const TemporaryFolder folder;
    const std::string tour = folder.Write("tour.csv", RandomTour(300));
    const std::pair<const char*, std::vector<std::string>> scenarios[] = {{"turned-30", {"--all", "--reachable"}},
                                                                          {"captured-at-b45", {"--tour", tour}}};
    for (const auto& [name, plans] : scenarios) {
        const std::string geometry = folder.Name(std::string(name) + ".ini");
        ASSERT_EQ(0, RunQmv40(LoadScenario(name).GeometryArguments({"--output", geometry})).exitCode) << name;
        const ToolRun run = RunQmv40(With({"check", "--geometry", geometry}, plans));
        EXPECT_EQ(0, run.exitCode) << name << '\n' << run.out;
    }
}

} // namespace
