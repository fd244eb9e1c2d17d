#include "tests/tools/cli/ExecutedProgram.h"
#include "tools/motion/Export.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <regex>
#include <sstream>

using namespace qmv40;

namespace {

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

constexpr double plainSafeHeight = -620.0; // of the plain scenario: 35 mm above the head centre, Z -655
constexpr double printedPrecision = 1e-6;

class ExportCommand : public testing::Test, protected PlainHead {
protected:
    ToolRun Export(const std::string& format, const std::vector<std::string>& more = {}) const {
        return RunTool("export", With({"--format", format}, more));
    }
    std::string Text(const std::string& format, const std::vector<std::string>& more = {}) const {
        const ToolRun run = Export(format, With({"--from", "0,0", "--to", "45,90", "--to", "15,-30"}, more));
        EXPECT_EQ(0, run.exitCode) << run.err;
        return run.out;
    }
    Json Plans() const { return PlansThrough({"0,0", "45,90", "15,-30"}); }
};

std::vector<model::Vector3> EndsOf(const std::vector<Part>& parts) {
    std::vector<model::Vector3> ends;
    for (const Part& part : parts) ends.push_back(part.end);
    return ends;
}

TEST_F(ExportCommand, PrintsPointsAsCsvAndTheHeadingOnStandardError) {
    const ToolRun run = Export("points", {"--from", "0,0", "--to", "45,90"});
    EXPECT_THAT(run.out, StartsWith("Plan,Move,Name,X,Y,Z\n1,1,ApproachUnLockLever,442.8,-202.55,-691.55"));
    EXPECT_THAT(run.out, Not(HasSubstr("#")));
    EXPECT_THAT(run.err, StartsWith("# qmv40 export: points\n# Plan 1 of 1: from A 0, B 0 to A 45, B 90 deg\n"));
    EXPECT_THAT(run.err, HasSubstr("\n# Rehearse in the air (--lift) before the first run"));
}

TEST_F(ExportCommand, WritesOneRowForAStraightMoveAndForNoMove) {
    const Program points = ReadPoints(Text("points"));
    EXPECT_EQ(1u, points.at({1, 1}).size());
    EXPECT_EQ(1u, points.at({1, 9}).size()) << "IntermediateAPosition turns by 0: A is 0 already";
    EXPECT_LT(8u, points.at({1, 3}).size());
    EXPECT_EQ("", DifferenceFromPlans(points, Plans(), 0.01));
}

TEST_F(ExportCommand, WritesTheWayBetweenPlansUpAcrossAndDown) {
    const Program points = ReadPoints(Text("points"));
    EXPECT_EQ(0u, points.count({1, 0})) << "the position before the first plan is not known";
    const std::vector<model::Vector3> way = EndsOf(points.at({2, 0}));
    ASSERT_EQ(2u, way.size());
    const model::Vector3 before = points.at({1, 19}).back().end;
    const model::Vector3 after = points.at({2, 1}).back().end;
    EXPECT_EQ(before.x, way[0].x);
    EXPECT_EQ(before.y, way[0].y);
    EXPECT_NEAR(plainSafeHeight, way[0].z, printedPrecision);
    EXPECT_EQ(after.x, way[1].x);
    EXPECT_EQ(after.y, way[1].y);
    EXPECT_NEAR(plainSafeHeight, way[1].z, printedPrecision);
}

TEST_F(ExportCommand, GoesBetweenPlansAtTheGivenHeightUnlessTooLow) {
    const Program points = ReadPoints(Text("points", {"--safe-height", "-500"}));
    EXPECT_EQ(-500.0, points.at({2, 0}).front().end.z);
    const ToolRun low = Export("points", {"--from", "0,0", "--to", "0,15", "--safe-height", "-621"});
    EXPECT_EQ(2, low.exitCode);
    EXPECT_THAT(low.err, HasSubstr("the machine moves freely from Z -620"));
}

TEST_F(ExportCommand, LiftsTheWholeProgramForARehearsal) {
    for (const char* format : {"points", "gcode"}) {
        const std::string text = Text(format, {"--lift", "200"});
        const Program program = std::string(format) == "points" ? ReadPoints(text) : ReadGcode(text);
        EXPECT_EQ("", DifferenceFromPlans(program, Plans(), 0.01, 200.0)) << format;
        EXPECT_NEAR(plainSafeHeight + 200.0, program.at({2, 0}).front().end.z, printedPrecision) << format;
    }
    EXPECT_THAT(Text("gcode", {"--lift", "200"}), HasSubstr("\n(REHEARSAL: everything is 200 mm higher"));
    EXPECT_EQ(2, Export("points", {"--from", "0,0", "--to", "0,15", "--lift", "-1"}).exitCode);
}

TEST_F(ExportCommand, BeginsGcodeWithItsModesAndAProgramStop) {
    const std::string text = Text("gcode", {"--feed", "450"});
    EXPECT_THAT(text, StartsWith("(qmv40 export: gcode)\n"));
    const std::size_t firstMove = text.find("\nG1 ");
    ASSERT_NE(std::string::npos, firstMove);
    const std::string start = text.substr(0, firstMove);
    for (const char* words : {"\nG21 G90 G94 G17 ", "\nG40 G49 G80 ", "\nG61 ", "\nG54 G91.1 ", "\nM0 ", "\nF450"}) {
        EXPECT_THAT(start, HasSubstr(words));
    }
    EXPECT_THAT(text, Not(HasSubstr("G53 G1")));
    EXPECT_TRUE(text.ends_with("\nM2\n"));
}

TEST_F(ExportCommand, UsesMachineCoordinatesWithChordsInsteadOfArcs) {
    const std::string text = Text("gcode", {"--arcs", "chords"});
    EXPECT_FALSE(std::regex_search(text, std::regex("\nG[123] |\nM0")));
    EXPECT_THAT(text, HasSubstr("\nG53 G1 X"));
    EXPECT_EQ("", DifferenceFromPlans(ReadGcode(text), Plans(), 0.01));
}

TEST_F(ExportCommand, WritesArcsForAHeadMountedSquare) {
    const std::string text = Text("gcode");
    for (const char* plane : {"\nG17\n", "\nG18\n", "\nG19\n"}) EXPECT_THAT(text, HasSubstr(plane));
    const Program program = ReadGcode(text);
    EXPECT_TRUE(program.at({1, 3}).front().isArc);
    EXPECT_EQ(2u, program.at({1, 3}).size()) << "135 degrees: two arcs, because one turns by 120 degrees at most";
    EXPECT_EQ("", DifferenceFromPlans(program, Plans(), 0.01));
}

TEST_F(ExportCommand, WritesChordsForArcsOutsideTheMachinesPlanes) {
    const std::string turned = folder.Name("turned.ini");
    ASSERT_EQ(0, RunQmv40(LoadScenario("turned-30").GeometryArguments({"--output", turned})).exitCode);
    const ToolRun run =
        RunQmv40({"export", "--geometry", turned, "--format", "gcode", "--from", "0,0", "--to", "45,90"});
    const Program program = ReadGcode(run.out);
    EXPECT_FALSE(program.at({1, 3}).front().isArc) << "its axis lies between X and Y";
    EXPECT_TRUE(program.at({1, 5}).front().isArc) << "its axis is vertical";
}

TEST_F(ExportCommand, WritesATurnOf360Degrees) {
    const Program program = ReadGcode(Export("gcode", {"--from", "90,-180", "--to", "90,180"}).out);
    ASSERT_EQ(3u, program.at({1, 10}).size());
    EXPECT_EQ("", DifferenceFromPlans(program, PlansThrough({"90,-180", "90,180"}), 0.01));
}

TEST_F(ExportCommand, ApproachesTheFirstPlanFromTheSafeHeight) {
    const std::vector<Part> way = ReadGcode(Text("gcode")).at({1, 0});
    ASSERT_EQ(1u, way.size());
    EXPECT_NEAR(442.8, way[0].end.x, printedPrecision);
    EXPECT_NEAR(-202.55, way[0].end.y, printedPrecision);
    EXPECT_NEAR(plainSafeHeight, way[0].end.z, printedPrecision);
}

/// The points in the lines that match the expression, which has three groups: X, Y and Z.
std::vector<model::Vector3> PointsIn(const std::string& text, const std::regex& line) {
    std::vector<model::Vector3> points;
    for (std::sregex_iterator each(text.begin(), text.end(), line), end; each != end; ++each) {
        points.push_back({std::stod((*each)[1]), std::stod((*each)[2]), std::stod((*each)[3])});
    }
    return points;
}

TEST_F(ExportCommand, WritesTheSamePointsInDmisIppDmeAndGcodeChords) {
    std::vector<model::Vector3> expected;
    for (const auto& [place, parts] : ReadGcode(Text("gcode", {"--arcs", "chords"}))) {
        for (const Part& part : parts) expected.push_back(part.end);
    }
    const struct {
        const char* format;
        std::regex line;
    } cases[] = {
        {"dmis", std::regex("\nGOTO/([-.0-9]+),([-.0-9]+),([-.0-9]+)")},
        {"ippdme", std::regex("\n[0-9]{5} GoTo\\(X\\(([-.0-9]+)\\), Y\\(([-.0-9]+)\\), Z\\(([-.0-9]+)\\)\\)")}};
    for (const auto& each : cases) {
        const std::vector<model::Vector3> points = PointsIn(Text(each.format), each.line);
        ASSERT_EQ(expected.size(), points.size()) << each.format;
        for (std::size_t i = 0; i < points.size(); ++i) {
            ASSERT_EQ(0.0, model::Distance(expected[i], points[i])) << each.format << " point " << i;
        }
    }
}

TEST_F(ExportCommand, StopsEveryProgramBeforeItsFirstMove) {
    const struct {
        const char* format;
        const char* stop;
        const char* firstMove;
    } cases[] = {{"gcode", "\nM0 ", "\nG1 "}, {"dmis", "\nDMESW/PAUSE\n", "\nGOTO/"}, {"ippdme", "\nSTOP ", " GoTo("}};
    for (const auto& each : cases) {
        const std::string text = Text(each.format);
        EXPECT_LT(text.find(each.stop), text.find(each.firstMove)) << each.format;
        EXPECT_THAT(text,
                    HasSubstr(motion::exportMark + std::string(each.format) + (each.format[0] == 'g' ? ")\n" : "\n")));
    }
}

TEST_F(ExportCommand, ReadsATourFromAFile) {
    const std::string tour = folder.Write("tour.csv", "B,A\n0,0\n90,45\n-30,15\n");
    EXPECT_EQ(Text("points"), Export("points", {"--tour", tour}).out);
    const std::string rest = folder.Write("rest.csv", "A,B\n45,90\n15,-30\n");
    EXPECT_EQ(Text("points"), Export("points", {"--from", "0,0", "--tour", rest}).out);
    EXPECT_EQ(2, Export("points", {"--tour", folder.Write("one.csv", "A,B\n0,0\n")}).exitCode);
    EXPECT_EQ(3, Export("points", {"--tour", folder.Name("missing.csv")}).exitCode);
}

TEST_F(ExportCommand, WritesNothingWhenAPlanHasFindings) {
    const Json plan = Edited(Document("move", {"--from", "0,0", "--to", "45,90"}),
                             [](Json& records) { records["UnLock"]["RotationAngle"] = -120.0; });
    const std::string file = folder.Write("plan.json", plan.dump());
    const std::string output = folder.Name("program.ngc");
    const ToolRun refused = Export("gcode", {"--plan", file, "--output", output});
    EXPECT_EQ(4, refused.exitCode);
    EXPECT_EQ("", refused.out);
    EXPECT_THAT(refused.err, HasSubstr("arc-angle-off"));
    EXPECT_THROW(ReadFile(output), std::runtime_error);
    EXPECT_EQ(0, Export("gcode", {"--plan", file, "--output", output, "--force"}).exitCode);
    EXPECT_THAT(ReadFile(output), StartsWith("(qmv40 export: gcode)\n"));
}

TEST_F(ExportCommand, RefusesAPlanWithAnAngleThatIsNoNumber) {
    const Json plan = Edited(Document("move", {"--from", "0,0", "--to", "45,90"}),
                             [](Json& records) { records["UnLock"]["RotationAngle"] = nullptr; });
    const ToolRun run = Export("points", {"--plan", folder.Write("plan.json", plan.dump()), "--force"});
    EXPECT_EQ(3, run.exitCode);
    EXPECT_THAT(run.err, HasSubstr("plan 1: UnLock has a number that is not finite"));
}

TEST_F(ExportCommand, WritesTheHeadingOfPointsIntoTheFile) {
    const std::string output = folder.Name("points.csv");
    Text("points", {"--output", output});
    EXPECT_THAT(ReadFile(output), StartsWith("# qmv40 export: points\n"));
    EXPECT_TRUE(ReadFile(output).ends_with(Text("points")));
}

TEST_F(ExportCommand, PrintsADocumentThatContainsTheProgram) {
    const Json document = Export("gcode", {"--from", "0,0", "--to", "45,90", "--json"}).Document();
    EXPECT_EQ("gcode", document["dialect"]);
    EXPECT_TRUE(document["file"].is_null());
    EXPECT_EQ(Export("gcode", {"--from", "0,0", "--to", "45,90"}).out, document["content"].get<std::string>());
    EXPECT_LT(100.0, document["pathLength"].get<double>());
}

} // namespace
