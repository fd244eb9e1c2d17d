#include "tests/tools/cli/CommaLocale.h"
#include "tests/tools/cli/ScenarioExpectations.h"
#include "tools/cli/Tool.h"
#include "tools/component/Calculator.h"
#include "tools/plans/Moves.h"
#include "tools/text/Numbers.h"

#include <bit>
#include <cmath>
#include <cstdint>
#include <gtest/gtest.h>
#include <sstream>

using namespace qmv40;

namespace {

std::vector<std::string> MoveArguments(const std::string& geometry, const std::string& from,
                                       std::initializer_list<std::string> targets,
                                       std::initializer_list<std::string> more = {}) {
    std::vector<std::string> arguments{"move", "--geometry", geometry, "--from", from};
    for (const std::string& target : targets) arguments.insert(arguments.end(), {"--to", target});
    arguments.insert(arguments.end(), more);
    return arguments;
}

/// The numbers of a member, each after a comma. Missing numbers are empty fields; the result has `count` fields.
std::string CsvFields(const Json& document, const char* member, std::size_t count) {
    if (!document.contains(member)) return std::string(count, ',');
    std::string fields;
    for (const auto& number : document[member].items()) fields += "," + text::ExactText(number.value().get<double>());
    return fields + std::string(count - document[member].size(), ',');
}

std::string CsvRow(std::size_t plan, const Json& move) {
    return std::to_string(plan) + "," + std::to_string(move["number"].get<int>()) + "," +
           move["name"].get<std::string>() + "," + move["kind"].get<std::string>() + CsvFields(move, "record", 7) +
           CsvFields(move, "start", 3) + CsvFields(move, "end", 3);
}

class MoveCommand : public testing::Test, protected PlainHead {};

TEST_F(MoveCommand, PrintsThe19MovesInOrderWithTheirFields) {
    const Json document = RunQmv40(MoveArguments(geometry, "0,0", {"45,90"}, {"--json"})).Document();
    const Json xyz{{"XPosition", 0.0}, {"YPosition", 0.0}, {"ZPosition", 0.0}};
    const Json arc{{"XOrigin", 0.0},         {"YOrigin", 0.0},         {"ZOrigin", 0.0},      {"iRotationVector", 0.0},
                   {"jRotationVector", 0.0}, {"kRotationVector", 0.0}, {"RotationAngle", 0.0}};
    const Json moves{{"ApproachUnLockLever", xyz},
                     {"EngageWithUnLockLever", xyz},
                     {"UnLock", arc},
                     {"DisengageFromUnLockLever", xyz},
                     {"RotateToPeg", arc},
                     {"MoveToPegAtSafeZ", xyz},
                     {"ApproachPeg", xyz},
                     {"EngageWithPeg", xyz},
                     {"IntermediateAPosition", arc},
                     {"MoveToBPosition", arc},
                     {"MoveToAPosition", arc},
                     {"DisengageFromPeg", xyz},
                     {"DisengageFromPegToSafeZ", xyz},
                     {"RotateToLockLever", arc},
                     {"MoveToLockLeverAtSafeZ", xyz},
                     {"ApproachLockLever", xyz},
                     {"EngageWithLockLever", xyz},
                     {"Lock", arc},
                     {"DisengageFromLockLever", xyz}};
    const Json point{{"X", 0.0}, {"Y", 0.0}, {"Z", 0.0}};
    Json list = Json::array();
    for (const auto& move : moves.items()) {
        list.push_back({{"number", list.size() + 1},
                        {"name", move.key()},
                        {"kind", move.value() == xyz ? "straight" : "arc"},
                        {"record", move.value()}});
        if (list.size() > 1) list.back()["start"] = point;
        list.back()["end"] = point;
    }
    Json expected{{"format", "qmv40/move"}, {"version", 1}, {"plans", Json::array()}};
    expected["plans"].push_back(
        {{"from", {{"A", 0.0}, {"B", 0.0}}}, {"to", {{"A", 45.0}, {"B", 90.0}}}, {"moves", list}});
    constexpr double anyNumber = 1e300;
    EXPECT_EQ("", DifferenceBetween(expected, document, anyNumber));
    for (std::size_t i = 0; i < list.size(); ++i) {
        EXPECT_EQ(list[i]["name"], document["plans"][0]["moves"][i]["name"]);
        EXPECT_EQ(list[i]["kind"], document["plans"][0]["moves"][i]["kind"]);
        EXPECT_EQ(i + 1, document["plans"][0]["moves"][i]["number"]);
    }
}

TEST_F(MoveCommand, PlansTheMovesOfTheHeadThatWasCaptured) {
    // Worked out by hand from the pole sphere at (412.5, -178.25, -655) and the built-in dimensions: drive cup
    // (-6.95, 24, -11.5), lever centre (+-30.3, 0, -32.25), ball (0, -+19.3, -4.3). The lever side is 0 at (0, 0),
    // because B = 0 counts as negative, and also at (45, 90).
    const Json moves = RecordsOf(PlansThrough({"0,0", "45,90"})[0]["moves"]);
    const struct {
        const char* move;
        std::vector<double> numbers;
    } cases[] = {
        {"ApproachUnLockLever", {442.8, -202.55, -691.55}},
        {"EngageWithUnLockLever", {442.8, -197.55, -691.55}},
        {"UnLock", {442.8, -180.25, -691.25, -1.0, 0.0, 0.0, -135.0}},
        {"DisengageFromUnLockLever", {442.8, -158.95, -620.0}},
        {"ApproachPeg", {419.45, -212.25, -643.5}},
        {"EngageWithPeg", {419.45, -202.25, -643.5}},
        {"IntermediateAPosition", {412.5, -178.25, -655.0, -1.0, 0.0, 0.0, 0.0}},
        {"MoveToBPosition", {412.5, -178.25, -655.0, 0.0, 0.0, 1.0, -90.0}},
        {"MoveToAPosition", {412.5, -178.25, -655.0, 0.0, -1.0, 0.0, -45.0}},
        {"ApproachLockLever", {442.8, -153.95, -691.55}},
        {"Lock", {442.8, -176.25, -691.25, 1.0, 0.0, 0.0, -138.0}},
        {"DisengageFromLockLever", {442.8, -197.55, -681.55}},
    };
    for (const auto& each : cases) {
        ASSERT_EQ(each.numbers.size(), moves[each.move].size()) << each.move;
        std::size_t i = 0;
        for (const auto& item : moves[each.move].items()) {
            EXPECT_NEAR(each.numbers[i++], item.value().get<double>(), roundedCapture.length)
                << each.move << item.key();
        }
    }
}

TEST_F(MoveCommand, PrintsTheComponentsNumbersToTheLastBit) {
    component::Calculator calculator;
    calculator.LoadHeadGeometry(geometry);
    calculator.SetCurrentHeadPosition({15.0, -75.0});
    const RequiredMoves planned = calculator.CalculateMove({60.0, 165.0});
    const Json moves = RecordsOf(PlansThrough({"15,-75", "60,165"})[0]["moves"]);
    const double* number = &planned.ApproachUnLockLever.XPosition;
    for (const auto& move : moves.items()) {
        for (const auto& field : move.value().items()) {
            ASSERT_EQ(std::bit_cast<std::uint64_t>(*number++),
                      std::bit_cast<std::uint64_t>(field.value().get<double>()))
                << move.key() << field.key();
        }
    }
}

TEST_F(MoveCommand, KeepsTheSignOfAZeroAngle) {
    const Json moves = RecordsOf(PlansThrough({"0,0", "0,90"})[0]["moves"]);
    EXPECT_TRUE(std::signbit(moves["MoveToAPosition"]["RotationAngle"].get<double>()));
    EXPECT_FALSE(std::signbit(moves["IntermediateAPosition"]["RotationAngle"].get<double>()));
}

TEST_F(MoveCommand, StartsEachPlanOfATourWhereTheOneBeforeEnded) {
    const Json tour = PlansThrough({"0,0", "45,-90", "90,180", "0,0"});
    ASSERT_EQ(3u, tour.size());
    const char* const stops[] = {"0,0", "45,-90", "90,180", "0,0"};
    for (std::size_t i = 0; i < tour.size(); ++i) {
        const Json single = PlansThrough({stops[i], stops[i + 1]});
        EXPECT_EQ(single[0].dump(), tour[i].dump()) << "plan " << i + 1;
    }
}

TEST_F(MoveCommand, ShowsTheTargetThatTheComponentRoundedTo) {
    const Json tour = PlansThrough({"0,0", "45.4,-89.6", "0,0"});
    EXPECT_EQ(R"({"A":45.0,"B":-90.0})", tour[0]["to"].dump());
    EXPECT_EQ(R"({"A":45.0,"B":-90.0})", tour[1]["from"].dump());
}

TEST_F(MoveCommand, RefusesATargetThatTheHeadCannotReach) {
    const struct {
        const char* from;
        const char* to;
        const char* description;
    } cases[] = {
        {"0,0", "7.4,0", "Invalid A Target Angle, value must be a 15 degree interval."},
        {"0,0", "0,7", "Invalid B Target Angle, value must be a 15 degree interval."},
        {"0,0", "105,0", "Invalid A Target Angle, value must be between 0 and 90."},
        {"0,0", "-45,0", "Invalid A Target Angle, value must be between 0 and 90."},
        {"0,0", "0,-195", "Invalid B Target Angle, value must be between -180 and 180."},
        {"0,0", "1e300,0", "Invalid A Target Angle, value must be between 0 and 90."},
        {"45.4,0", "0,0", "Invalid A Target Angle, value must be a 15 degree interval."},
    };
    for (const auto& each : cases) {
        const ToolRun text = RunQmv40(MoveArguments(geometry, each.from, {each.to}));
        EXPECT_EQ(1, text.exitCode) << each.to;
        EXPECT_EQ("", text.out) << each.to;
        EXPECT_EQ("qmv40: error 0x8A00000E from CQMVCalculator::ValidateMoveTarget: " + std::string(each.description) +
                      "\nA goes from 0 to 90 and B from -180 to 180, both in steps of 15 degrees.\n",
                  text.err);
        const ToolRun document = RunQmv40(MoveArguments(geometry, each.from, {each.to}, {"--json"}));
        EXPECT_EQ(1, document.exitCode);
        const Json error{{"code", "0x8A00000E"},
                         {"source", "CQMVCalculator::ValidateMoveTarget"},
                         {"description", each.description}};
        EXPECT_EQ(error.dump(), document.Document()["error"].dump());
    }
}

TEST_F(MoveCommand, BeginsEveryMoveWhereTheOneBeforeEnded) {
    const Json moves = PlansThrough({"15,-75", "60,165"})[0]["moves"];
    EXPECT_FALSE(moves[0].contains("start")) << "the position before the plan is not known";
    for (std::size_t i = 1; i < moves.size(); ++i) {
        EXPECT_EQ(moves[i - 1]["end"].dump(), moves[i]["start"].dump()) << moves[i]["name"];
    }
}

TEST_F(MoveCommand, EndsTheIndexingWithTheCupOnThePegAtTheTarget) {
    // With the drive cup on the peg, the machine position is the pole sphere minus the cup's offset (-6.95, 24, -11.5),
    // turned right-handed about -X by A = 60 and then about Z by B = 90.
    const double tiltedY = 24.0 * std::cos(Radians(60.0)) - 11.5 * std::sin(Radians(60.0));
    const double tiltedZ = -11.5 * std::cos(Radians(60.0)) - 24.0 * std::sin(Radians(60.0));
    const Json moves = PlansThrough({"15,-75", "60,90"})[0]["moves"];
    const Json end = moves[10]["end"];
    EXPECT_NEAR(412.5 + tiltedY, end["X"].get<double>(), roundedCapture.length);
    EXPECT_NEAR(-178.25 + 6.95, end["Y"].get<double>(), roundedCapture.length);
    EXPECT_NEAR(-655.0 - tiltedZ, end["Z"].get<double>(), roundedCapture.length);
}

TEST_F(MoveCommand, SaysWhichPlanOfATourIsRefused) {
    const ToolRun text = RunQmv40(MoveArguments(geometry, "0,0", {"45,90", "45,91", "0,0"}));
    EXPECT_TRUE(text.err.starts_with("Plan 2 of the tour:\nqmv40: error 0x8A00000E")) << text.err;
    const ToolRun document = RunQmv40(MoveArguments(geometry, "0,0", {"45,90", "45,91", "0,0"}, {"--json"}));
    EXPECT_EQ(2, document.Document()["error"]["plan"]);
}

TEST_F(MoveCommand, PrintsNoPlanWhenOneOfTheTourIsRefused) {
    for (const char* format : {"--csv", "--json"}) {
        const ToolRun run = RunQmv40(MoveArguments(geometry, "0,0", {"45,90", "45,91"}, {format}));
        EXPECT_EQ(1, run.exitCode);
        EXPECT_EQ(std::string::npos, run.out.find("UnLock")) << run.out;
    }
}

TEST_F(MoveCommand, PrintsOneCsvRowPerMove) {
    const Json plans = PlansThrough({"0,0", "45,90", "15,-30"});
    std::istringstream lines(RunQmv40(MoveArguments(geometry, "0,0", {"45,90", "15,-30"}, {"--csv"})).out);
    std::string line;
    std::getline(lines, line);
    EXPECT_EQ("Plan,Move,Name,Kind,X,Y,Z,i,j,k,RotationAngle,StartX,StartY,StartZ,EndX,EndY,EndZ", line);
    for (std::size_t plan = 0; plan < plans.size(); ++plan) {
        for (const Json& move : plans[plan]["moves"]) {
            ASSERT_TRUE(std::getline(lines, line));
            EXPECT_EQ(CsvRow(plan + 1, move), line);
        }
    }
    EXPECT_FALSE(std::getline(lines, line)) << line;
}

TEST_F(MoveCommand, PrintsEveryMoveAndWhichWayEachArcTurns) {
    const std::string text = RunQmv40(MoveArguments(geometry, "0,0", {"45,90"})).out;
    for (const char* expected : {
             "Plan: from A 0, B 0 to A 45, B 90 (deg)\n",
             "   #  Move                      to X (mm)  to Y (mm)  to Z (mm)  What the machine does\n",
             "   1  ApproachUnLockLever        442.8000  -202.5500  -691.5500  go to the locked lever\n",
             // Worked out by hand: relative to the lever centre, the machine starts at 17.3 mm in -Y and 0.3 mm in -Z
             // and turns by 135 degrees over the top.
             "   3  UnLock                     442.8000  -168.2292  -678.8049  push the lever to unlock\n"
             "        turn 135.0000 deg up and over, towards +Y\n"
             "        about (442.8000, -180.2500, -691.2500) along (-1.000000, 0.000000, 0.000000)\n",
             "        turn 90.0000 deg counter-clockwise, seen from above\n",
             "  11  MoveToAPosition            ",
             "  19  DisengageFromLockLever     442.8000  -197.5500  -681.5500  lift off the locked lever\n",
         }) {
        EXPECT_NE(std::string::npos, text.find(expected)) << "missing: " << expected << "\nin:\n" << text;
    }
    EXPECT_TRUE(IsWithin100Columns(text)) << text;
}

TEST_F(MoveCommand, NumbersThePlansOfATour) {
    const std::string text = RunQmv40(MoveArguments(geometry, "0,0", {"45,90", "0,0"})).out;
    EXPECT_TRUE(text.starts_with("Plan 1: from A 0, B 0 to A 45, B 90 (deg)\n")) << text;
    EXPECT_NE(std::string::npos, text.find("\nPlan 2: from A 45, B 90 to A 0, B 0 (deg)\n")) << text;
}

TEST_F(MoveCommand, PrintsTheWayBetweenThePlansOfATour) {
    // The first plan ends above the lever at (442.8, -197.55). The second begins 5 mm before the ball of its lever.
    const std::string text = RunQmv40(MoveArguments(geometry, "0,0", {"45,90", "0,0"})).out;
    EXPECT_NE(std::string::npos, text.find("The way between the plans, at the safe height (mm)\n"
                                           "  to plan 2\n"
                                           "    up to     X 442.8000  Y -197.5500  Z -620.0000\n"
                                           "    across to X 442.8000  Y -202.5500  Z -620.0000\n"
                                           "    down to its first move\n"
                                           "The whole tour is "))
        << text;
    EXPECT_EQ(std::string::npos, RunQmv40(MoveArguments(geometry, "0,0", {"45,90"})).out.find("The way between"));
}

TEST_F(MoveCommand, UsesColoursInTheTableOnly) {
    const auto coloured = [&](std::initializer_list<std::string> more) {
        std::ostringstream out;
        std::ostringstream err;
        cli::RunTool(MoveArguments(geometry, "0,0", {"45,90"}, more), {out, err, true});
        return out.str().find('\x1b') != std::string::npos;
    };
    EXPECT_TRUE(coloured({}));
    EXPECT_FALSE(coloured({"--csv"}));
    EXPECT_FALSE(coloured({"--json"}));
    EXPECT_EQ(std::string::npos, RunQmv40(MoveArguments(geometry, "0,0", {"45,90"})).out.find('\x1b'));
}

TEST_F(MoveCommand, ReadsAndWritesTheSameNumbersInEveryLocale) {
    const auto everything = [&] {
        std::string all;
        for (const std::vector<std::string>& format : {std::vector<std::string>{"--json"}, {"--csv"}, {}}) {
            all += RunTool("move", With({"--from", "0,0", "--to", "45,90"}, format)).out;
        }
        return all + RunQmv40(LoadScenario("captured-at-b45").GeometryArguments()).out;
    };
    const std::string expected = everything();
    const CommaLocale commas;
    EXPECT_EQ(expected, everything());
}

TEST_F(MoveCommand, RefusesAMissingGeometryFile) {
    for (const std::string& name : {folder.Name("missing.ini"), folder.Name(".")}) {
        const ToolRun run = RunQmv40(MoveArguments(name, "0,0", {"45,90"}));
        EXPECT_EQ(3, run.exitCode);
        EXPECT_TRUE(run.err.starts_with(name + ": ")) << run.err;
    }
}

} // namespace
