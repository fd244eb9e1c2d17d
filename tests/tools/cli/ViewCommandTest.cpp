#include "tests/tools/cli/ViewedPlan.h"
#include "tests/tools/cli/WorkingFolder.h"

#include "tools/component/Calculator.h"
#include "tools/text/Failures.h"
#include "tools/text/Text.h"
#include "tools/view/Markup.h"
#include "tools/view/PageTemplate.h"
#include "tools/view/ViewDocument.h"

#include <bit>
#include <cmath>
#include <cstdint>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <numbers>
#include <set>

using namespace qmv40;

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using namespace std::string_literals;

using Vector = model::Vector3;

/// mm and degrees. Numbers of a geometry file have ten digits.
constexpr double filePrecision = 1e-6;
/// mm. The same quantity computed in another order of operations.
constexpr double rounding = 1e-10;

Vector VectorAt(const Json& array) { return {array[0].get<double>(), array[1].get<double>(), array[2].get<double>()}; }

/// Turns a point as an arc does, left-handed: the cross product has the opposite order.
Vector TurnedLeftHanded(const Vector& point, const Json& arc) {
    const Vector origin = VectorAt(arc["origin"]);
    const Vector axis = VectorAt(arc["rotationVector"]);
    const double angle = arc["angle"].get<double>() * std::numbers::pi / 180.0;
    const Vector radius = point - origin;
    return origin + std::cos(angle) * radius + std::sin(angle) * Cross(radius, axis) +
           (1.0 - std::cos(angle)) * Dot(axis, radius) * axis;
}

/// Whether a file contains the text. The message of a failure does not print the whole file.
testing::AssertionResult Holds(const std::string& fileName, const std::string& text) {
    if (ReadFile(fileName).find(text) != std::string::npos) return testing::AssertionSuccess();
    return testing::AssertionFailure() << fileName << " has no '" << text << "'";
}

class ViewCommand : public testing::Test {
protected:
    const ViewedHead head;
};

void ExpectBits(double expected, const Json& number, const std::string& where) {
    EXPECT_EQ(std::bit_cast<std::uint64_t>(expected), std::bit_cast<std::uint64_t>(number.get<double>())) << where;
}

TEST_F(ViewCommand, PrintsTheComponentsNumbersToTheLastBit) {
    component::Calculator calculator;
    calculator.LoadHeadGeometry(head.geometry);
    calculator.SetCurrentHeadPosition({15.0, -75.0});
    const RequiredMoves planned = calculator.CalculateMove({60.0, 165.0});
    const Json moves = head.Document({"--from", "15,-75", "--to", "60,165"})["plans"][0]["moves"];
    ASSERT_EQ(19u, moves.size());
    const double* number = &planned.ApproachUnLockLever.XPosition; // the record consists of doubles only
    for (const Json& move : moves) {
        const std::string name = move["name"].get<std::string>();
        const bool isArc = move["kind"] == "arc";
        for (const char* member : {isArc ? "origin" : "position", "rotationVector"}) {
            if (!move["planned"].contains(member)) continue;
            for (const Json& coordinate : move["planned"][member]) ExpectBits(*number++, coordinate, name);
        }
        ASSERT_EQ(isArc, move["planned"].contains("angle")) << name;
        if (isArc) ExpectBits(*number++, move["planned"]["angle"], name);
        EXPECT_EQ(isArc, move["turn"].is_string()) << name;
    }
    EXPECT_EQ(&planned.DisengageFromLockLever.ZPosition + 1, number);
}

TEST_F(ViewCommand, SamplesEachMoveFromItsStartToItsPlannedEnd) {
    const Json moves = head.Document({"--from", "30,-45", "--to", "45,90"})["plans"][0]["moves"];
    for (std::size_t i = 0; i < moves.size(); ++i) {
        const Json& move = moves[i];
        SCOPED_TRACE(move["name"].get<std::string>());
        const Vector start = VectorAt(move["samples"].front()["at"]);
        const Vector end = VectorAt(move["samples"].back()["at"]);
        if (i > 0) {
            EXPECT_LE(Distance(VectorAt(moves[i - 1]["samples"].back()["at"]), start), rounding);
        }
        const Json& planned = move["planned"];
        const Vector expected =
            move["kind"] == "arc" ? TurnedLeftHanded(start, planned) : VectorAt(planned["position"]);
        EXPECT_LE(Distance(expected, end), rounding);
    }
}

TEST_F(ViewCommand, SamplesAreAtMostAMillimetreOrADegreeApart) {
    const Json moves = head.Document({"--from", "30,-45", "--to", "45,90"})["plans"][0]["moves"];
    for (const Json& move : moves) {
        SCOPED_TRACE(move["name"].get<std::string>());
        const Json& samples = move["samples"];
        ASSERT_GE(samples.size(), 2u);
        // On an arc: the chord of one degree. The origin may lie beside the arc's plane, so this radius is an upper
        // bound.
        const double radius =
            move["kind"] == "arc" ? Distance(VectorAt(samples[0]["at"]), VectorAt(move["planned"]["origin"])) : 0;
        const double largestStep =
            move["kind"] == "arc" ? 2.0 * radius * std::sin(0.5 * std::numbers::pi / 180.0) : 1.0;
        for (std::size_t i = 1; i < samples.size(); ++i) {
            EXPECT_LE(Distance(VectorAt(samples[i - 1]["at"]), VectorAt(samples[i]["at"])), largestStep + rounding);
        }
        const double angle = move["kind"] == "arc" ? std::abs(move["planned"]["angle"].get<double>()) : 0.0;
        EXPECT_GE(static_cast<double>(samples.size()), angle + 1.0);
    }
}

TEST_F(ViewCommand, HasAnglesLeverAndPegAtEachSample) {
    const Json moves = head.Document({"--from", "30,-45", "--to", "45,90"})["plans"][0]["moves"];
    const Json first = moves[0]["samples"].front();
    EXPECT_EQ(30.0, first["A"].get<double>());
    EXPECT_EQ(-45.0, first["B"].get<double>());
    EXPECT_EQ("locked", first["lever"].get<std::string>());
    EXPECT_EQ("open", moves[2]["samples"].back()["lever"].get<std::string>());
    EXPECT_TRUE(moves[7]["samples"].back()["onPeg"].get<bool>());
    const Json last = moves[18]["samples"].back();
    EXPECT_NEAR(45.0, last["A"].get<double>(), rounding);
    EXPECT_NEAR(90.0, last["B"].get<double>(), rounding);
    EXPECT_EQ("locked", last["lever"].get<std::string>());
    EXPECT_FALSE(last["onPeg"].get<bool>());
}

TEST_F(ViewCommand, KeepsTheCupOnTheSphereWhileOnThePeg) {
    const Json document = head.Document({"--from", "30,-45", "--to", "45,90"});
    const Vector sphere = VectorAt(document["sphere"]["centre"]);
    int samples = 0;
    for (const Json& move : document["plans"][0]["moves"]) {
        for (const Json& sample : move["samples"]) {
            if (!sample["onPeg"].get<bool>()) continue;
            EXPECT_LE(Distance(sphere, VectorAt(sample["cup"])), filePrecision);
            ++samples;
        }
    }
    EXPECT_GE(samples, 30 + 135 + 45) << "one sample per degree";
}

TEST_F(ViewCommand, HasTheLeverBallsWhereTheSphereTouchesThem) {
    // When the sphere touches the locked lever of side 0, the machine position is the sphere's centre plus
    // (30.3, 0, -32.25) and (0, -19.3, -4.3). The ball's offset from the head's centre is the opposite of that sum.
    const Json levers = head.Document({"--from", "0,0", "--to", "45,90"})["levers"];
    const struct {
        const char* side;
        Vector pivot, locked, unlocked;
    } expected[] = {{"plus", {-30.3, 0.0, 32.25}, {-30.3, 19.3, 36.55}, {-30.3, -19.3, 36.55}},
                    {"minus", {30.3, 0.0, 32.25}, {30.3, 19.3, 36.55}, {30.3, -19.3, 36.55}}};
    ASSERT_EQ(2u, levers.size());
    for (std::size_t i = 0; i < 2; ++i) {
        EXPECT_EQ(expected[i].side, levers[i]["side"].get<std::string>());
        EXPECT_LE(Distance(expected[i].pivot, VectorAt(levers[i]["pivot"])), filePrecision);
        EXPECT_LE(Distance(expected[i].locked, VectorAt(levers[i]["locked"])), filePrecision);
        EXPECT_LE(Distance(expected[i].unlocked, VectorAt(levers[i]["unlocked"])), filePrecision);
    }
}

TEST_F(ViewCommand, TouchesTheLeversInTheirLockedAndUnlockedPlaces) {
    const struct {
        const char* from;
        const char* to;
        std::size_t unlocks, locks; ///< the lever that is pushed to unlock and to lock: 0 plus, 1 minus
    } cases[] = {{"0,0", "45,90", 0, 0}, {"30,-45", "45,90", 1, 0}, {"0,90", "30,-15", 1, 1}};
    for (const auto& each : cases) {
        SCOPED_TRACE(each.from);
        const Json document = head.Document({"--from", each.from, "--to", each.to});
        const Vector sphere = VectorAt(document["sphere"]["centre"]);
        const auto touched = [&](std::size_t move, std::size_t lever, const char* state) {
            const Vector machine = VectorAt(document["plans"][0]["moves"][move - 1]["samples"].back()["at"]);
            return machine + VectorAt(document["levers"][lever][state]);
        };
        EXPECT_LE(Distance(sphere, touched(2, each.unlocks, "locked")), filePrecision);
        EXPECT_LE(Distance(sphere, touched(17, each.locks, "unlocked")), filePrecision);
    }
}

TEST(View, TurnsLeversAndAxesWithTheMountingAngle) {
    const TemporaryFolder folder;
    const std::string geometry = folder.Name("turned.ini");
    ASSERT_EQ(0, RunQmv40(LoadScenario("turned-30").GeometryArguments({"--output", geometry})).exitCode);
    const Json document =
        RunQmv40({"view", "--geometry", geometry, "--from", "0,0", "--to", "0,0", "--json"}).Document();
    const double c = std::sqrt(3.0) / 2.0;
    const double s = 0.5;
    // The coordinates of the capture are rounded to 1 nm; its circles have the radius of the stylus.
    constexpr double roundedCapture = 1e-6;
    EXPECT_LE(Distance(Vector{c, s, 0.0}, VectorAt(document["mounting"]["right"])), roundedCapture);
    EXPECT_LE(Distance(Vector{-s, c, 0.0}, VectorAt(document["mounting"]["forward"])), roundedCapture);
    const Vector pivot{-30.3 * c, -30.3 * s, 32.25};
    EXPECT_LE(Distance(pivot, VectorAt(document["levers"][0]["pivot"])), 100.0 * roundedCapture);
    // The tilt axis is turned by 30 degrees too. The stylus hangs straight down.
    const Json& sample = document["plans"][0]["moves"][0]["samples"][0];
    EXPECT_LE(Distance(Vector{-c, -s, 0.0}, VectorAt(sample["tiltAxis"])), roundedCapture);
    EXPECT_LE(Distance(Vector{0.0, 0.0, -1.0}, VectorAt(sample["stylus"])), roundedCapture);
}

TEST_F(ViewCommand, HasTheDirectionsOfStylusAndTiltAxis) {
    const double h = std::sqrt(0.5);
    const struct {
        const char* stop;
        Vector tiltAxis, stylus;
        const char* why;
    } cases[] = {
        {"0,0", {-1, 0, 0}, {0, 0, -1}, "straight down"},
        {"90,0", {-1, 0, 0}, {0, -1, 0}, "A turns right-handed about -X, so the stylus points to the front"},
        {"90,90", {0, -1, 0}, {1, 0, 0}, "B turns the stylus from the front to the right"},
        {"45,180", {1, 0, 0}, {0, h, -h}, "half-way up, to the back"},
        {"0,-90", {0, 1, 0}, {0, 0, -1}, "at A = 0, B turns only the axis"},
    };
    for (const auto& each : cases) {
        const Json moves = head.Document({"--from", "0,0", "--to", each.stop})["plans"][0]["moves"];
        const Json& sample = moves[18]["samples"].back();
        EXPECT_LE(Distance(each.tiltAxis, VectorAt(sample["tiltAxis"])), filePrecision) << each.why;
        EXPECT_LE(Distance(each.stylus, VectorAt(sample["stylus"])), filePrecision) << each.why;
    }
}

TEST_F(ViewCommand, HasAClearanceAtEachSampleThatFitsTheMoves) {
    const Json moves = head.Document({"--from", "0,0", "--to", "45,90"})["plans"][0]["moves"];
    EXPECT_NEAR(5.0 - 2.5, moves[0]["samples"].back()["clearance"].get<double>(), filePrecision)
        << "5 mm from the lever, ball radius 2.5 mm";
    EXPECT_NEAR(10.0 - 5.0, moves[6]["samples"].back()["clearance"].get<double>(), filePrecision)
        << "10 mm from the peg, sphere radius 5 mm";
    for (const Json& move : moves) {
        SCOPED_TRACE(move["name"].get<std::string>());
        const double least =
            std::min(move["clearanceToPoleSphere"].get<double>(), move["clearanceToLevers"].get<double>());
        double leastSampled = std::numeric_limits<double>::infinity();
        for (const Json& sample : move["samples"]) {
            ASSERT_EQ(move["mustTouch"] != "", sample["clearance"].is_null());
            if (!sample["clearance"].is_null())
                leastSampled = std::min(leastSampled, sample["clearance"].get<double>());
        }
        if (move["mustTouch"] != "") continue;
        EXPECT_GE(leastSampled, least - rounding);
        // Samples are at most 1 mm apart, so one lies within 0.5 mm of the closest point.
        EXPECT_LE(leastSampled, least + 0.5 + rounding);
    }
}

TEST_F(ViewCommand, GivesEachMoveItsLevel) {
    for (const char* radius : {"5", "8"}) {
        const Json document = head.Document({"--from", "0,0", "--to", "45,90", "--sphere-radius", radius});
        EXPECT_EQ("clear, no findings", document["verdict"]["text"].get<std::string>());
        std::set<std::string> levels;
        for (const Json& move : document["plans"][0]["moves"]) {
            const double clearance =
                std::min(move["clearanceToPoleSphere"].get<double>(), move["clearanceToLevers"].get<double>());
            // The check ignores 0.001 mm.
            const char* const expected = move["mustTouch"] != "" ? "contact" : clearance < 4.999 ? "tight" : "clear";
            EXPECT_EQ(expected, move["level"].get<std::string>()) << move["name"];
            levels.insert(expected);
        }
        EXPECT_EQ(3u, levels.size()) << "the plan has moves of all three levels";
    }
    // The approach begins 10 mm before the peg: a radius of 5 mm leaves 5 mm, a radius of 8 mm leaves 2 mm.
    const auto approach = [&](const char* radius) {
        return head.Document({"--from", "0,0", "--to", "45,90", "--sphere-radius", radius})["plans"][0]["moves"][6];
    };
    EXPECT_EQ("clear", approach("5")["level"].get<std::string>());
    EXPECT_EQ("tight", approach("8")["level"].get<std::string>());
}

TEST_F(ViewCommand, HasTheFindingsOfTheCheckAndMarksTheirMoves) {
    const struct {
        const char* move;
        const char* number;
        double value;
        std::vector<std::string> more;
    } cases[] = {{"UnLock", "RotationAngle", 135.0, {}},
                 {"MoveToBPosition", "XOrigin", 413.0, {}},
                 {"ApproachPeg", "YPosition", -200.0, {}},
                 {"DisengageFromLockLever", "ZPosition", -690.0, {"--z-travel", "-680,0"}}};
    for (const auto& each : cases) {
        SCOPED_TRACE(each.move);
        const std::string spoiled = head.SpoiledPlan("0,0", "45,90", each.move, each.number, each.value);
        const std::vector<std::string> arguments = With({"--plan", spoiled, "--json"}, each.more);
        const ToolRun view = head.View(arguments);
        EXPECT_EQ(4, view.exitCode);
        const Json checked = head.RunTool("check", arguments).Document()["plans"][0]["findings"];
        const Json plan = view.Document()["plans"][0];
        EXPECT_EQ(checked.dump(), plan["findings"].dump());
        EXPECT_FALSE(plan["verdict"]["clear"].get<bool>());
        std::set<int> named;
        for (const Json& finding : checked) {
            if (!finding["move"].is_null()) named.insert(finding["move"].get<int>());
        }
        ASSERT_FALSE(named.empty());
        int number = 0;
        for (const Json& move : plan["moves"]) {
            EXPECT_EQ(named.contains(++number), move["level"] == "finding") << move["name"];
        }
    }
}

/// Adds the names of members that are null.
void CollectNulls(const Json& document,
                  std::set<std::string>& nulls) { // NOLINT(misc-no-recursion): documents are nested
    for (const auto& item : document.items()) {
        if (item.value().is_null()) nulls.insert(item.key());
        if (item.value().is_structured()) CollectNulls(item.value(), nulls);
    }
}

TEST_F(ViewCommand, HasNullOnlyInMembersThatMayBeEmpty) {
    const Json document = head.Document({"--from", "0,0", "--to", "45,90"});
    std::set<std::string> nulls;
    CollectNulls(document, nulls);
    EXPECT_THAT(nulls, ElementsAre("arc", "atLeast", "clearance", "nearest", "stylus", "table", "turn"))
        << "no stylus, no table; straight moves have no arc; contacts have no clearance";
}

TEST_F(ViewCommand, HasNoSamplesFromAMoveThatCannotBeRun) {
    const Json plan =
        head.Document({"--plan", head.SpoiledPlan("0,0", "45,90", "ApproachPeg", "YPosition", nullptr)})["plans"][0];
    ASSERT_EQ(19u, plan["moves"].size());
    for (std::size_t i = 0; i < 19; ++i) {
        const Json& move = plan["moves"][i];
        SCOPED_TRACE(move["name"].get<std::string>());
        EXPECT_EQ(i >= 6, move["samples"].empty());
        EXPECT_EQ(i >= 6, move["clearanceToLevers"].is_null());
        if (i >= 6) {
            EXPECT_EQ("finding", move["level"].get<std::string>());
        }
    }
    EXPECT_TRUE(plan["moves"][6]["planned"]["position"][1].is_null());
}

TEST_F(ViewCommand, StartsEachPlanOfATourWhereTheOneBeforeEnded) {
    const Json document = head.Document({"--from", "0,0", "--to", "45,90", "--to", "15,-30"});
    EXPECT_EQ("plain.ini: (0, 0) to (45, 90) to (15, -30)", document["title"].get<std::string>());
    const Json& plans = document["plans"];
    ASSERT_EQ(2u, plans.size());
    EXPECT_EQ(plans[0]["moves"][18]["samples"].back()["at"].dump(), plans[1]["moves"][0]["samples"][0]["at"].dump());
    EXPECT_EQ(R"({"A":15.0,"B":-30.0})", plans[1]["to"].dump());
}

TEST_F(ViewCommand, FillsThePageWithTitleDocumentAndDrawings) {
    const std::vector<std::string> tour{"--from", "0,0", "--to", "45,90", "--to", "0,0"};
    const ToolRun run = head.View(With(tour, {"--template", head.page, "--output", head.folder.Name("tour.html")}));
    EXPECT_EQ(0, run.exitCode) << run.err;
    EXPECT_THAT(run.out, HasSubstr("Verdict: clear, no findings in 2 plans."));
    EXPECT_EQ("Written to " + head.folder.Name("tour.html") + ": open it in a browser.\n", run.err);
    const std::string page = ReadFile(head.folder.Name("tour.html"));
    EXPECT_THAT(page, HasSubstr("<title>plain.ini: (0, 0) to (45, 90) to (0, 0)</title>"));
    const std::string before = "<script type=\"application/json\" id=\"document\">";
    const std::size_t begin = page.find(before) + before.size();
    const Json embedded = Json::parse(page.substr(begin, page.find("</script>") - begin));
    EXPECT_TRUE(head.View(With(tour, {"--json"})).Content() == embedded)
        << "the page's document differs from that of --json";
    std::size_t figures = 0;
    for (std::size_t at = page.find("<figure>\n<svg "); at != std::string::npos; at = page.find("<figure>", at + 1)) {
        ++figures;
    }
    EXPECT_EQ(2u, figures);
}

/// The picture is the one of `geometry --svg`, which has tests of its own.
TEST_F(ViewCommand, ShowsTheResidualsOfTheCaptureInThePage) {
    const Scenario plain = LoadScenario("plain");
    std::string spoilt = ReadFile(plain.aAxis);
    const std::string coordinate = "348.860390";
    spoilt.replace(spoilt.find(coordinate), coordinate.size(), "349.560390");
    const std::string aAxis = head.folder.Write("a & b.csv", spoilt);
    const std::string page = head.folder.Name("capture.html"), picture = head.folder.Name("capture.svg");
    const ToolRun run = head.View({"--from", "0,0", "--to", "45,90", "--template", head.page, "--output", page,
                                   "--a-axis", aAxis, "--b-axis", plain.bAxis});
    EXPECT_EQ(0, run.exitCode) << run.err;
    EXPECT_TRUE(Holds(page, "<h3>Capture: fault</h3>"));
    EXPECT_TRUE(Holds(page, "a &amp; b.csv:5 lies 0.700 mm off its place.<br>\xE2\x86\x92 Measure the point again"));
    RunQmv40({"geometry", "--a-axis", aAxis, "--b-axis", plain.bAxis, "--svg", picture});
    const std::string drawn = ReadFile(picture);
    EXPECT_TRUE(Holds(page, drawn.substr(drawn.find("<title>"), drawn.find("</svg>") - drawn.find("<title>"))));
}

TEST_F(ViewCommand, TakesACaptureOnlyWholeAndForThePage) {
    const Scenario plain = LoadScenario("plain");
    const struct {
        std::vector<std::string> arguments;
        int exitCode;
        const char* message;
    } cases[] = {
        {{"--a-axis", plain.aAxis}, 2, "--a-axis requires --b-axis"},
        {{"--b-axis", plain.bAxis}, 2, "--b-axis requires --a-axis"},
        {{"--a-axis", plain.aAxis, "--b-axis", plain.bAxis, "--svg", head.folder.Name("plan.svg")},
         2,
         "--a-axis and --b-axis are shown in the page: give --output"},
        {{"--a-axis", plain.bAxis, "--b-axis", plain.bAxis, "--output", head.folder.Name("none.html")}, 1, "error"},
    };
    for (const auto& each : cases) {
        const ToolRun run =
            head.View(With({"--from", "0,0", "--to", "45,90", "--template", head.page}, each.arguments));
        EXPECT_EQ(each.exitCode, run.exitCode) << each.message;
        EXPECT_THAT(run.err, HasSubstr(each.message));
    }
    EXPECT_FALSE(std::filesystem::exists(head.folder.Name("none.html")));
}

TEST_F(ViewCommand, WritesPageAndDrawingOfAPlanThatHasFindings) {
    const std::string plan = head.SpoiledPlan("0,0", "45,90", "UnLock", "RotationAngle", 135.0);
    const ToolRun run = head.View({"--plan", plan, "--template", head.page, "--output", head.folder.Name("bad.html"),
                                   "--svg", head.folder.Name("bad.svg")});
    EXPECT_EQ(4, run.exitCode);
    EXPECT_THAT(run.out, HasSubstr("move 3 UnLock: fault: arc-turns-the-wrong-way by 270.0000 deg"));
    EXPECT_TRUE(Holds(head.folder.Name("bad.html"), "\"name\":\"arc-turns-the-wrong-way\""));
    EXPECT_TRUE(Holds(head.folder.Name("bad.svg"), "arc-turns-the-wrong-way"));
}

TEST_F(ViewCommand, WritesOneDrawingForEachPlanOfATour) {
    const ToolRun run =
        head.View({"--from", "0,0", "--to", "45,90", "--to", "0,0", "--svg", head.folder.Name("of a tour.v2.svg")});
    EXPECT_EQ(0, run.exitCode) << run.err;
    EXPECT_TRUE(Holds(head.folder.Name("of a tour.v2-1.svg"), "Sheet 1 of 2"));
    EXPECT_TRUE(Holds(head.folder.Name("of a tour.v2-2.svg"), "Sheet 2 of 2"));
    EXPECT_FALSE(std::filesystem::exists(head.folder.Path() / "of a tour.v2.svg"));
}

TEST_F(ViewCommand, WritesNoPageWhenADrawingOrADocumentIsAskedFor) {
    const struct {
        std::vector<std::string> arguments;
        bool isPageWritten;
    } cases[] = {
        {{}, true}, {{"--json"}, false}, {{"--svg", "plan.svg"}, false}, {{"--json", "--svg", "plan.svg"}, false}};
    for (const auto& each : cases) {
        const TemporaryFolder folder;
        const WorkingFolder here(folder.Path());
        const std::vector<std::string> plan{"--from", "0,0", "--to", "0,0", "--template", head.page};
        EXPECT_EQ(0, head.View(With(plan, each.arguments)).exitCode);
        EXPECT_EQ(each.isPageWritten, std::filesystem::exists("view.html"));
        EXPECT_EQ(each.arguments.size() > 1, std::filesystem::exists("plan.svg"));
    }
}

TEST_F(ViewCommand, WritesNothingWhenThePlanIsRefused) {
    const std::string page = head.folder.Write("kept.html", "before");
    const std::string drawing = head.folder.Write("kept.svg", "before");
    const struct {
        std::vector<std::string> arguments;
        int exitCode;
        const char* why;
    } cases[] = {
        {{"--from", "0,0", "--to", "45,90", "--to", "-15,0"}, 1, "the component refuses the second plan"},
        {{"--plan", head.folder.Name("none.json")}, 3, "no such file"},
        {{"--from", "0,0", "--to", "0,0", "--template", head.folder.Name("none.html")}, 3, "the template is missing"},
        {{"--from", "0,0", "--to", "0,0", "--template", head.geometry}, 3, "a file that is no template"},
        {{"--from", "0,0"}, 2, "no target"}};
    for (const auto& each : cases) {
        const bool hasTemplate = std::ranges::count(each.arguments, "--template") != 0;
        const ToolRun run =
            head.View(With(With(each.arguments, {"--output", page, "--svg", drawing}),
                           hasTemplate ? std::vector<std::string>() : std::vector{"--template"s, head.page}));
        EXPECT_EQ(each.exitCode, run.exitCode) << each.why;
        EXPECT_NE("", run.err) << each.why;
        EXPECT_EQ("before", ReadFile(page)) << each.why;
        EXPECT_EQ("before", ReadFile(drawing)) << each.why;
    }
}

TEST_F(ViewCommand, SaysWhichPlaceholderOfATemplateIsWrong) {
    const std::string page = head.folder.Write("twice.html", "@TITLE@ @DOCUMENT@ @DRAWINGS@ @DRAWINGS@");
    const ToolRun run = head.View({"--from", "0,0", "--to", "0,0", "--template", page});
    EXPECT_EQ(3, run.exitCode);
    EXPECT_EQ(page + ": is no template of this tool: @DRAWINGS@ must stand in it once\n", run.err);
}

TEST(PageTemplate, IsFoundInShareBesideBinOrBesideTheProgram) {
    const TemporaryFolder folder;
    const std::filesystem::path programs = folder.Path() / "bin";
    const std::filesystem::path beside = programs / "share" / "qmv40";
    const std::filesystem::path above = folder.Path() / "share" / "qmv40";
    std::filesystem::create_directories(beside);
    std::filesystem::create_directories(above);
    folder.Write("bin/share/qmv40/view.html", "zip");
    EXPECT_TRUE(std::filesystem::equivalent(beside / "view.html", text::PathOf(view::FindPageTemplate(programs))));
    folder.Write("share/qmv40/view.html", "installed");
    EXPECT_TRUE(std::filesystem::equivalent(above / "view.html", text::PathOf(view::FindPageTemplate(programs))));
}

TEST(PageTemplate, ThatIsMissingIsReportedWithPlacesAndRemedy) {
    const TemporaryFolder folder;
    try {
        view::FindPageTemplate(folder.Path() / "bin");
        FAIL() << "found " << view::FindPageTemplate(folder.Path() / "bin");
    } catch (const text::InputError& error) {
        EXPECT_EQ(text::PathOf(error.file), folder.Path() / "share/qmv40/view.html");
        EXPECT_THAT(error.reason, HasSubstr(text::Utf8Name(folder.Path() / "bin" / "share/qmv40/view.html")));
        EXPECT_THAT(error.reason, HasSubstr("--template"));
        EXPECT_THAT(error.reason, HasSubstr("--svg"));
    }
}

TEST(PageTemplate, IsFilledInOnePass) {
    const view::Filling fillings[] = {{"@ONE@", "first, not @TWO@"}, {"@TWO@", "second, not @ONE@"}};
    EXPECT_EQ("<second, not @ONE@> first, not @TWO@.", view::FilledTemplate("page", "<@TWO@> @ONE@.", fillings));
}

TEST(Markup, EscapesATextForMarkup) {
    EXPECT_EQ("a&lt;b&gt;&amp;&quot;&#39;.ini", view::MarkupText("a<b>&\"'.ini"));
    EXPECT_EQ("Prüfkopf 検査 😀", view::MarkupText("Prüfkopf 検査 😀"));
    // A control character, an invalid UTF-8 byte and the noncharacter U+FFFF.
    EXPECT_EQ("a\xEF\xBF\xBD"
              "b\xEF\xBF\xBD"
              "c\xEF\xBF\xBD",
              view::MarkupText("a\x01"
                               "b\xFF"
                               "c\xEF\xBF\xBF"));
}

TEST(Markup, CutsATextToANumberOfColumns) {
    EXPECT_EQ("twelve chars", view::CutText("twelve chars", 12));
    EXPECT_EQ("twelve char…", view::CutText("twelve chars.", 12));
    EXPECT_EQ("検査検査", view::CutText("検査検査", 8)) << "each of these characters takes two columns";
    EXPECT_EQ("検査検…", view::CutText("検査検査", 7));
    EXPECT_EQ("üüü", view::CutText("üüü", 3));
}

TEST(ViewDocument, CannotEndTheScriptElementAroundIt) {
    const text::Json document{{"title", "</script><!--<script>"}};
    const std::string embedded = view::EmbeddedDocument(document);
    EXPECT_EQ(std::string::npos, embedded.find('<')) << embedded;
    EXPECT_EQ(document.Dump(), Json::parse(embedded).dump());
}

TEST_F(ViewCommand, TakesNamesInAnyAlphabet) {
    // The component opens the geometry file, and on Windows it accepts only names in the ANSI code page.
    const std::string name = head.folder.Write("Prüfkopf O'Neill & Söhne.ini", ReadFile(head.geometry));
    const std::string page = head.folder.Name("Überblick 検査.html");
    const std::string drawing = head.folder.Name("Überblick 検査.svg");
    const ToolRun run = RunQmv40({"view", "--geometry", name, "--from", "0,0", "--to", "0,0", "--template", head.page,
                                  "--output", page, "--svg", drawing});
    ASSERT_EQ(0, run.exitCode) << run.err;
    EXPECT_TRUE(Holds(page, "<title>Prüfkopf O&#39;Neill &amp; Söhne.ini: (0, 0) to (0, 0)</title>"));
    EXPECT_TRUE(Holds(page, R"x("title":"Prüfkopf O'Neill & Söhne.ini: (0, 0) to (0, 0)")x"));
    EXPECT_TRUE(Holds(drawing, ">Prüfkopf O&#39;Neill &amp; Söhne.ini<"));
}

} // namespace
