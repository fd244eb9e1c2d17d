// The three-view drawing. The tests read it as SVG and compare it with the document of the same plan.

#include "tests/tools/cli/CommaLocale.h"
#include "tests/tools/cli/ViewedPlan.h"
#include "tests/tools/view/SvgDocument.h"

#include "tools/text/Numbers.h"
#include "tools/view/Balloons.h"
#include "tools/view/DrawnView.h"

#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <set>

using namespace qmv40;

namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

/// mm on paper. Coordinates are rounded to 0.001 mm, and a length is the difference of two of them.
constexpr double paperTolerance = 0.002;

constexpr const char* viewNames[] = {"top", "front", "side"};

class Drawing : public testing::Test {
protected:
    std::string Text(const std::vector<std::string>& more) const {
        const std::string file = head.folder.Name("plan.svg");
        const ToolRun run = head.View(With(more, {"--svg", file}));
        EXPECT_THAT(run.exitCode, testing::AnyOf(0, 4)) << run.err;
        return ReadFile(file);
    }
    /// The drawing of a plan. Several tests examine the same one, so each is drawn once.
    const SvgElement& Draw(const std::vector<std::string>& more) const {
        static std::map<std::vector<std::string>, SvgElement> drawings;
        const auto known = drawings.find(more);
        return known == drawings.end() ? drawings.emplace(more, ParseSvg(Text(more))).first->second : known->second;
    }
    SvgElement DrawSpoiled(const std::string& move, const std::string& number, const Json& value) const {
        return ParseSvg(Text({"--plan", head.SpoiledPlan("0,0", "45,90", move, number, value)}));
    }

    const ViewedHead head;
};

const std::vector<std::vector<std::string>>& PlansToDraw() {
    static const std::vector<std::vector<std::string>> plans{{"--from", "0,0", "--to", "45,90"},
                                                             {"--from", "0,0", "--to", "0,0"},
                                                             {"--from", "90,180", "--to", "15,-165"},
                                                             {"--from", "60,75", "--to", "30,-30"}};
    return plans;
}

/// True when a text in the drawing begins with `begin`.
bool HasText(const SvgElement& drawing, const std::string& begin) {
    return std::ranges::any_of(ElementsOf(drawing, "text"),
                               [&](const SvgElement* text) { return text->text.starts_with(begin); });
}

const SvgElement& View(const SvgElement& drawing, const std::string& name) {
    return *ElementsOf(drawing, "g", name).at(0);
}

/// The scale that the drawing states: millimetres of the machine for one millimetre on paper.
double StatedScale(const SvgElement& drawing) {
    for (const SvgElement* text : ElementsOf(drawing, "text")) {
        if (!text->text.starts_with("Scale ")) continue;
        const std::string ratio = text->text.substr(6, text->text.find(" on A4") - 6);
        const std::size_t colon = ratio.find(':');
        return text::ParseNumber(ratio.substr(colon + 1)).value / text::ParseNumber(ratio.substr(0, colon)).value;
    }
    ADD_FAILURE() << "no scale";
    return 0.0;
}

/// The path of a move, 1 to 19, in a view.
std::vector<SvgPoint> PathOf(const SvgElement& drawing, const std::string& view, int number) {
    for (const SvgElement* path : ElementsOf(View(drawing, view), "path", "move")) {
        if (path->Attribute("data-move") == std::to_string(number)) return PointsOf(*path);
    }
    ADD_FAILURE() << view << " has no move " << number;
    return {{0.0, 0.0}};
}

TEST_F(Drawing, HasThreeViewsOf19NumberedMoves) {
    for (const auto& plan : PlansToDraw()) {
        const SvgElement& drawing = Draw(plan);
        for (const char* name : viewNames) {
            SCOPED_TRACE(name);
            std::vector<std::string> expected;
            for (int i = 1; i <= 19; ++i) expected.push_back(std::to_string(i));
            std::vector<std::string> numbers;
            for (const SvgElement* path : ElementsOf(View(drawing, name), "path", "move")) {
                numbers.push_back(path->Attribute("data-move"));
            }
            EXPECT_EQ(expected, numbers);
            expected.insert(expected.end(), {"S", "E"});
            std::vector<std::string> written;
            for (const SvgElement* text : ElementsOf(View(drawing, name), "text")) {
                if (std::ranges::find(expected, text->text) != expected.end()) written.push_back(text->text);
            }
            EXPECT_EQ(expected, written);
        }
    }
}

TEST_F(Drawing, IsASheetOfA4) {
    const SvgElement& drawing = Draw({"--from", "0,0", "--to", "45,90"});
    EXPECT_EQ("svg", drawing.name);
    EXPECT_EQ("http://www.w3.org/2000/svg", drawing.Attribute("xmlns"));
    EXPECT_EQ("297mm", drawing.Attribute("width"));
    EXPECT_EQ("210mm", drawing.Attribute("height"));
    EXPECT_EQ("0 0 297 210", drawing.Attribute("viewBox")) << "one unit is one millimetre";
}

TEST_F(Drawing, HasTheScaleThatItStates) {
    const SvgElement& drawing = Draw({"--from", "0,0", "--to", "45,90"});
    const double scale = StatedScale(drawing);
    ASSERT_GT(scale, 0.0);
    // Worked out by hand: EngageWithPeg goes 10 mm along +Y, from (419.45, -212.25, -643.5).
    const auto machineWay = [&](const char* view, int number) {
        const std::vector<SvgPoint> points = PathOf(drawing, view, number);
        return SvgPoint{(points.back().x - points.front().x) * scale, (points.back().y - points.front().y) * scale};
    };
    EXPECT_NEAR(0.0, machineWay("top", 8).x, paperTolerance);
    EXPECT_NEAR(-10.0, machineWay("top", 8).y, paperTolerance * scale) << "+Y goes up the paper";
    EXPECT_NEAR(0.0, machineWay("front", 8).x, paperTolerance) << "away from the viewer";
    EXPECT_NEAR(0.0, machineWay("front", 8).y, paperTolerance);
    EXPECT_NEAR(10.0, machineWay("side", 8).x, paperTolerance * scale) << "+Y goes to the right";
    // ApproachLockLever goes down from the safe height, 35 mm above the sphere, to 36.55 mm below it.
    EXPECT_NEAR(71.55, machineWay("front", 16).y, paperTolerance * scale);
    EXPECT_NEAR(71.55, machineWay("side", 16).y, paperTolerance * scale);
    for (const char* name : viewNames) {
        const std::vector<const SvgElement*> spheres = ElementsOf(View(drawing, name), "circle", "sphere");
        ASSERT_EQ(1u, spheres.size());
        EXPECT_NEAR(5.0, spheres[0]->Number("r") * scale, paperTolerance * scale);
    }
    const std::vector<const SvgElement*> bars = ElementsOf(drawing, "path", "scale-bar");
    ASSERT_EQ(1u, bars.size());
    const std::vector<SvgPoint> bar = PointsOf(*bars[0]);
    EXPECT_NEAR(20.0, (bar[1].x - bar[0].x) * scale, paperTolerance * scale);
}

TEST_F(Drawing, HasMovesAndSphereWhereTheDocumentHasThem) {
    const std::vector<std::string> plan{"--from", "30,-45", "--to", "45,90"};
    const SvgElement& drawing = Draw(plan);
    const Json document = head.Document(plan);
    const double scale = StatedScale(drawing);
    const struct {
        const char* view;
        std::size_t right, up;
    } views[] = {{"top", 0, 1}, {"front", 0, 2}, {"side", 1, 2}};
    for (const auto& view : views) {
        const SvgElement& sphere = *ElementsOf(View(drawing, view.view), "circle", "sphere").at(0);
        const Json& centre = document["sphere"]["centre"];
        for (int number = 1; number <= 19; ++number) {
            const Json& end =
                document["plans"][0]["moves"][static_cast<std::size_t>(number) - 1]["samples"].back()["at"];
            const auto from = [&](std::size_t axis) { return end[axis].get<double>() - centre[axis].get<double>(); };
            const SvgPoint paper = PathOf(drawing, view.view, number).back();
            EXPECT_NEAR(from(view.right), (paper.x - sphere.Number("cx")) * scale, paperTolerance * scale);
            EXPECT_NEAR(from(view.up), (sphere.Number("cy") - paper.y) * scale, paperTolerance * scale);
        }
    }
}

TEST_F(Drawing, IsInThirdAngleProjection) {
    const SvgElement& drawing = Draw({"--from", "30,-45", "--to", "45,90"});
    for (int number = 1; number <= 19; ++number) {
        const SvgPoint top = PathOf(drawing, "top", number).back();
        const SvgPoint front = PathOf(drawing, "front", number).back();
        const SvgPoint side = PathOf(drawing, "side", number).back();
        EXPECT_EQ(top.x, front.x) << "the top view is above the front view";
        EXPECT_EQ(front.y, side.y) << "the side view is beside the front view";
        EXPECT_LT(top.y, front.y) << "not below it";
        EXPECT_GT(side.x, front.x) << "on its right";
    }
}

/// Expects that a rectangle is within the sheet's border of 6 mm.
void ExpectInside(double left, double top, double right, double bottom, const std::string& what) {
    EXPECT_GE(left, 6.0) << what;
    EXPECT_GE(top, 6.0) << what;
    EXPECT_LE(right, 291.0) << what;
    EXPECT_LE(bottom, 204.0) << what;
}

std::size_t LettersOf(const std::string& utf8) {
    return static_cast<std::size_t>(
        std::ranges::count_if(utf8, [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U; }));
}

void ExpectEverythingInside(const SvgElement& drawing) {
    for (const SvgElement* path : ElementsOf(drawing, "path")) {
        for (const SvgPoint& point : PointsOf(*path)) ExpectInside(point.x, point.y, point.x, point.y, "a path");
    }
    for (const SvgElement* circle : ElementsOf(drawing, "circle")) {
        const double x = circle->Number("cx");
        const double y = circle->Number("cy");
        const double r = circle->Number("r");
        ExpectInside(x - r, y - r, x + r, y + r, "a circle");
    }
    int sheets = 0;
    for (const SvgElement* area : ElementsOf(drawing, "rect")) {
        const double x = area->Number("x");
        const double y = area->Number("y");
        if (area->Number("width") == 297.0 && x == 0.0) {
            ++sheets;
            continue;
        }
        ExpectInside(x, y, x + area->Number("width"), y + area->Number("height"), "a rectangle");
    }
    EXPECT_EQ(1, sheets);
    for (const SvgElement* text : ElementsOf(drawing, "text")) {
        const double size = text->Number("font-size");
        // 0.6 of the font size is the width of letters in wide sans serif fonts.
        const double width = static_cast<double>(LettersOf(text->text)) * size * 0.6;
        const std::string anchor = text->Attribute("text-anchor");
        const double left = text->Number("x") - (anchor == "end" ? width : anchor == "middle" ? width / 2.0 : 0.0);
        ExpectInside(left, text->Number("y") - size * 0.8, left + width, text->Number("y") + size * 0.25, text->text);
    }
}

TEST_F(Drawing, HasNothingOutsideItsBorder) {
    for (const auto& plan : PlansToDraw()) ExpectEverythingInside(Draw(plan));
    ExpectEverythingInside(Draw({"--from", "0,0", "--to", "90,180", "--sphere-radius", "400"}));
}

TEST_F(Drawing, SaysThatPointsFartherThan1MAreNotDrawn) {
    for (const Json& value : {Json(1e12), Json(1e300), Json(-5000.0)}) {
        const SvgElement drawing = DrawSpoiled("ApproachPeg", "YPosition", value);
        ExpectEverythingInside(drawing);
        EXPECT_TRUE(HasText(drawing, "Farther than 1 m: not drawn"));
    }
    const SvgElement drawing = DrawSpoiled("ApproachPeg", "YPosition", nullptr);
    ExpectEverythingInside(drawing);
    EXPECT_EQ(6u, ElementsOf(View(drawing, "top"), "path", "move").size())
        << "only the moves before the wrong one can be run";
}

TEST_F(Drawing, HasBalloonsThatDoNotOverlap) {
    for (const auto& plan : PlansToDraw()) {
        const SvgElement& drawing = Draw(plan);
        for (const char* name : viewNames) {
            SCOPED_TRACE(name);
            const std::vector<const SvgElement*> balloons = ElementsOf(View(drawing, name), "circle", "balloon");
            ASSERT_EQ(21u, balloons.size());
            for (std::size_t i = 0; i < balloons.size(); ++i) {
                for (std::size_t j = 0; j < i; ++j) {
                    const double apart = std::hypot(balloons[i]->Number("cx") - balloons[j]->Number("cx"),
                                                    balloons[i]->Number("cy") - balloons[j]->Number("cy"));
                    EXPECT_GE(apart, balloons[i]->Number("r") + balloons[j]->Number("r")) << i + 1 << " on " << j + 1;
                }
            }
        }
    }
}

TEST_F(Drawing, HasALineStyleForEachLevelBesideItsColour) {
    std::set<std::string> lines;
    for (const view::MoveLevel level :
         {view::MoveLevel::Clear, view::MoveLevel::Tight, view::MoveLevel::Contact, view::MoveLevel::Finding}) {
        std::string line = view::LineStyle(level);
        line.erase(line.find("#"), 7);
        lines.insert(line);
    }
    EXPECT_EQ(4u, lines.size());
}

TEST_F(Drawing, DrawsEachMoveInTheLineStyleOfItsLevel) {
    const std::string plan = head.SpoiledPlan("0,0", "45,90", "UnLock", "RotationAngle", -120.0);
    const SvgElement& drawing = Draw({"--plan", plan});
    const Json moves = head.Document({"--plan", plan})["plans"][0]["moves"];
    const auto lineOf = [](const SvgElement& path) {
        return path.Attribute("stroke") + path.Attribute("stroke-width") + path.Attribute("stroke-dasharray");
    };
    std::map<std::string, std::set<std::string>> lines;
    for (const char* name : viewNames) {
        for (const SvgElement* path : ElementsOf(View(drawing, name), "path", "move")) {
            const auto index = static_cast<std::size_t>(path->Number("data-move")) - 1;
            lines[moves[index]["level"].get<std::string>()].insert(lineOf(*path));
        }
    }
    std::set<std::string> all;
    for (const auto& [level, drawn] : lines) {
        EXPECT_EQ(1u, drawn.size()) << level;
        all.insert(drawn.begin(), drawn.end());
    }
    EXPECT_EQ(lines.size(), all.size());
    EXPECT_TRUE(lines.contains("finding"));
    EXPECT_TRUE(HasText(drawing, "3: arc-angle-off"));
    EXPECT_TRUE(HasText(drawing, " by 15.0000 deg"));
}

TEST_F(Drawing, PrintsVerdictClearanceAndSetup) {
    const SvgElement& drawing = Draw({"--from", "0,0", "--to", "45,90"});
    for (const char* expected :
         {"clear, no findings", "Clearance to pole sphere", "5.00 mm, move ", "2.50 mm, move 1", "X 412.500 mm",
          "Y -178.250 mm", "Z -655.000 mm", "plain.ini", "A 0, B 0", "to A 45, B 90 (deg)", "third-angle",
          "go down in front of the peg", "must touch the lever", "safe height"}) {
        EXPECT_TRUE(HasText(drawing, expected)) << expected;
    }
}

/// Expects no script, no link and no identifier.
// NOLINTNEXTLINE(misc-no-recursion): elements contain elements
void ExpectNothingActive(const SvgElement& element) {
    EXPECT_THAT((std::set<std::string>{"svg", "title", "g", "path", "circle", "rect", "text"}),
                testing::Contains(element.name));
    for (const auto& [name, value] : element.attributes) {
        EXPECT_FALSE(name.starts_with("on") || name == "href" || name == "style" || name == "id") << name;
        EXPECT_THAT(value, Not(HasSubstr("url(")));
    }
    for (const SvgElement& child : element.children) ExpectNothingActive(child);
}

TEST_F(Drawing, HasNoScriptsLinksOrIdentifiers) { ExpectNothingActive(Draw({"--from", "0,0", "--to", "45,90"})); }

TEST_F(Drawing, IsTheSameInEveryLocale) {
    const std::string expected = Text({"--from", "0,0", "--to", "45,90"});
    const CommaLocale commas;
    EXPECT_TRUE(expected == Text({"--from", "0,0", "--to", "45,90"}));
}

TEST(Balloons, StayInTheirViewAndAwayFromTheLine) {
    view::Balloons balloons({0.0, 0.0}, 40.0, 30.0);
    const view::PaperWay line{{5.0, 5.0}, {35.0, 5.0}};
    balloons.Avoid(line);
    for (int i = 0; i < 8; ++i) {
        const view::Balloon balloon = balloons.Place(line);
        EXPECT_EQ(5.0, balloon.anchor.y);
        EXPECT_GE(std::abs(balloon.centre.y - 5.0), view::balloonRadius);
        EXPECT_GE(balloon.centre.x, view::balloonRadius);
        EXPECT_GE(balloon.centre.y, view::balloonRadius);
        EXPECT_LE(balloon.centre.x, 40.0 - view::balloonRadius);
        EXPECT_LE(balloon.centre.y, 30.0 - view::balloonRadius);
    }
}

TEST(Balloons, FindThePointAtAFractionOfALine) {
    const view::PaperWay corner{{0.0, 0.0}, {3.0, 0.0}, {3.0, 0.0}, {3.0, 1.0}};
    EXPECT_EQ(4.0, view::LengthOf(corner));
    EXPECT_EQ(2.0, view::PointAlong(corner, 0.5).x);
    EXPECT_EQ(0.5, view::PointAlong(corner, 0.875).y);
    EXPECT_EQ(1.0, view::PointAlong(corner, 1.0).y);
    EXPECT_EQ(7.0, view::PointAlong({{7.0, 7.0}}, 0.5).x) << "a line of length 0";
}

} // namespace
