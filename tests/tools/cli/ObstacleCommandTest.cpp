#include "tests/tools/cli/ToolRun.h"
#include "tools/check/AllPairs.h"
#include "tools/check/HeadFile.h"
#include "tools/check/obstacles/ObstacleFile.h"
#include "tools/settings/GeometryFile.h"

#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sstream>

using namespace qmv40;

namespace {

using testing::Contains;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr double stylusLength = 120.0;

using Point = model::Vector3;

Point PointOf(const Json& vector) {
    return {vector[0].get<double>(), vector[1].get<double>(), vector[2].get<double>()};
}

/// A point of a part of the head, at a sample of the document of `qmv40 view`.
Point PlaceOf(const std::string& part, const Json& sample, const Json& document) {
    const Point at = PointOf(sample["at"]);
    if (part == "drive cup") return PointOf(sample["cup"]);
    if (part == "stylus tip") return at + stylusLength * PointOf(sample["stylus"]);
    if (part == "stylus") return at + 0.5 * stylusLength * PointOf(sample["stylus"]);
    if (part == "plus lever") return at + PointOf(document["levers"][0]["pivot"]);
    if (part == "minus lever") return at + PointOf(document["levers"][1]["pivot"]);
    return at + Point{0.0, 0.0, part == "body" ? 100.0 : 0.0};
}

class ObstacleCommand : public testing::Test, protected PlainHead {
protected:
    ToolRun Check(const std::vector<std::string>& more) const { return RunTool("check", more); }

    /// An obstacle: a box with sides of 0.2 mm about a point.
    static Json Pin(const std::string& name, const Point& centre) {
        return {{"name", name},
                {"shape", "box"},
                {"centre", {{"X", centre.x}, {"Y", centre.y}, {"Z", centre.z}}},
                {"size", {{"X", 0.2}, {"Y", 0.2}, {"Z", 0.2}}}};
    }
    std::string Obstacles(const Json& list) const {
        const Json document{{"format", "qmv40/obstacles"}, {"version", 1}, {"obstacles", list}};
        return folder.Write("pins.json", document.dump());
    }
    std::string PinAt(const Point& centre) const { return Obstacles(Json::array({Pin("pin", centre)})); }

    const std::vector<std::string> plan{"--from", "30,-45", "--to", "45,90", "--stylus", "120", "--json"};
};

/// Each finding as "7 stylus tip to pin": move, part and obstacle.
std::vector<std::string> TouchesOf(const Json& report) {
    std::vector<std::string> touches;
    for (const Json& finding : report["plans"][0]["findings"]) {
        touches.push_back(std::to_string(finding["move"].get<int>()) + " " + finding["part"].get<std::string>() +
                          " to " + finding["obstacle"].get<std::string>());
    }
    return touches;
}

TEST_F(ObstacleCommand, FindsABoxInTheWayOfEachPartInEachMove) {
    const Json document = RunTool("view", plan).Document();
    const Json& moves = document["plans"][0]["moves"];
    ASSERT_EQ(19u, moves.size());
    const char* const parts[] = {"body", "joint", "drive cup", "plus lever", "minus lever", "stylus", "stylus tip"};
    for (std::size_t i = 0; i < moves.size(); ++i) {
        const Json& samples = moves[i]["samples"];
        const Json& onTheWay = samples[samples.size() / 2];
        Json pins = Json::array();
        for (const char* const part : parts)
            pins.push_back(Pin(std::string("pin of ") + part, PlaceOf(part, onTheWay, document)));
        const ToolRun run = Check(With(plan, {"--obstacles", Obstacles(pins)}));
        EXPECT_EQ(4, run.exitCode);
        const std::vector<std::string> touches = TouchesOf(run.Document());
        for (const std::string part : parts) {
            EXPECT_THAT(touches, Contains(std::to_string(i + 1) + " " + part + " to pin of " + part));
        }
    }
}

TEST_F(ObstacleCommand, PrintsTheClearanceOfEachPartToEachObstacle) {
    // The box and the table are far below all parts: every clearance is positive.
    const ToolRun run = Check(With(plan, {"--obstacles", PinAt({412.5, -178.25, -2000.0}), "--table", "-1000",
                                          "--body-diameter", "30", "--joint-diameter", "30"}));
    EXPECT_EQ(0, run.exitCode) << run.out;
    const Json report = run.Document();
    const Json& first = report["plans"][0]["moves"][0]["clearances"];
    std::vector<std::string> pairs;
    for (const Json& each : first) {
        pairs.push_back(each["part"].get<std::string>() + " to " + each["obstacle"].get<std::string>());
    }
    EXPECT_THAT(pairs, testing::ElementsAre("body to pole sphere", "body to stem", "body to table", "body to pin",
                                            "joint to pole sphere", "joint to stem", "joint to table", "joint to pin",
                                            "drive cup to table", "drive cup to pin", "plus lever to table",
                                            "plus lever to pin", "minus lever to table", "minus lever to pin",
                                            "stylus to pole sphere", "stylus to stem", "stylus to table",
                                            "stylus to pin", "stylus tip to pole sphere", "stylus tip to stem",
                                            "stylus tip to table", "stylus tip to pin"));
    EXPECT_EQ("pin", report["assumptions"]["obstacles"][0]["name"].get<std::string>());
    EXPECT_EQ(-1000.0, report["assumptions"]["table"].get<double>());
    EXPECT_EQ(120.0, report["assumptions"]["stylus"]["length"].get<double>());
}

TEST_F(ObstacleCommand, PrintsTheLowestTipAndTheLargestSphereRadius) {
    const Json report =
        Check({"--from", "0,0", "--to", "0,0", "--stylus", "120", "--tip-diameter", "6", "--json"}).Document();
    // At A = 0 the stylus hangs straight down. When the sphere (at Z -655) touches a lever, the head's centre is
    // 36.55 mm below it.
    EXPECT_NEAR(-655.0 - 36.55 - 120.0 - 3.0, report["worst"]["lowestTip"]["value"].get<double>(), 0.01);
    const double largest = report["worst"]["largestSphereRadius"].get<double>();
    for (const double step : {-0.02, 0.02}) {
        const ToolRun run = Check({"--from", "0,0", "--to", "0,0", "--stylus", "120", "--tip-diameter", "6",
                                   "--sphere-radius", std::to_string(largest + step)});
        EXPECT_EQ(step < 0.0 ? 0 : 4, run.exitCode) << largest;
    }
}

TEST_F(ObstacleCommand, PrintsItsAssumptions) {
    const ToolRun run = Check({"--from", "0,0", "--to", "45,90"});
    for (const char* expected : {"Assumed\n", "radius 5 mm", "--sphere-radius", "not given: not checked", "--stylus",
                                 "--table", "--z-travel", "none given", "upright rod on the head centre"}) {
        EXPECT_THAT(run.out, HasSubstr(expected));
    }
    EXPECT_EQ(2, Check({"--from", "0,0", "--to", "45,90", "--tip-diameter", "3"}).exitCode)
        << "--tip-diameter without --stylus";
    EXPECT_EQ(3, Check({"--from", "0,0", "--to", "45,90", "--obstacles", folder.Name("none.stl")}).exitCode);
}

TEST_F(ObstacleCommand, FindsTheTableUnderALongStylus) {
    const Json report =
        Check({"--from", "0,0", "--to", "45,90", "--stylus", "120", "--table", "-800", "--json"}).Document();
    EXPECT_THAT(TouchesOf(report), Contains("2 stylus tip to table"));
    EXPECT_THAT(TouchesOf(report), testing::Not(Contains("6 stylus tip to table"))) << "at the safe height";
}

TEST_F(ObstacleCommand, ChecksAllPairsAsItChecksSinglePlans) {
    // A box lower than the levers, beside the path of the head round the pole.
    const std::string box = PinAt({412.5 + 45.0, -178.25 + 10.0, -655.0 - 80.0});
    check::CheckOptions options;
    options.scene.parts.stylus = check::Stylus{.length = stylusLength};
    options.scene.obstacles = check::obstacles::ReadObstacles(box);
    // Only some of the positions: the pairs of all positions take ten seconds.
    std::vector<model::HeadAngles> positions = check::HeadPositions(0);
    std::erase_if(positions, [](const auto& each) { return std::fmod(each.b, 60.0) != 0.0; });
    const model::HeadModel head = check::HeadModelOf(settings::GeometryFile(geometry).Numbers());
    std::ostringstream nowhere;
    const check::AllPairs pairs =
        check::CheckAllPairs(geometry, head, options, positions, text::Console{nowhere, nowhere});
    EXPECT_GT(pairs.Pairs() * 19 / 4, pairs.differentMoves) << "many plans have a move in common";
    const Json all = Json::parse(check::AllPairsJson(pairs, options).Dump());
    int compared = 0;
    for (const Json& worst : all["worst"]["clearances"]) {
        if (worst["obstacle"] != "pin") continue;
        const auto angles = [](const Json& at) {
            return std::to_string(at["A"].get<double>()) + "," + std::to_string(at["B"].get<double>());
        };
        const Json report = Document("check", {"--from", angles(worst["from"]), "--to", angles(worst["to"]), "--stylus",
                                               "120", "--obstacles", box});
        const Json& alone = report["plans"][0]["moves"][worst["move"].get<std::size_t>() - 1];
        for (const Json& each : alone["clearances"]) {
            if (each["obstacle"] != "pin" || each["part"] != worst["part"]) continue;
            EXPECT_NEAR(each["clearance"].get<double>(), worst["value"].get<double>(), 0.0201) << worst.dump();
            ++compared;
        }
    }
    EXPECT_EQ(7, compared) << "the parts of the head";
}

} // namespace
