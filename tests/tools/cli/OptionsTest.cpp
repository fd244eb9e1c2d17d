#include "tests/tools/cli/ToolRun.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using testing::HasSubstr;
using testing::StartsWith;

namespace {

constexpr const char* validGeometry = "[HEADCENTRE]\nX=412.5\nY=-178.25\nZ=-655\n[SAFEPOSITION]\nX=0\nY=0\nZ=-620\n"
                                      "[AlignmentOffset]\nRequiredRotationAroundZ=30\n";

std::string GeometryWith(const std::string& from, const std::string& to) {
    std::string content = validGeometry;
    content.replace(content.find(from), from.size(), to);
    return content;
}

class GeometryOption : public testing::Test {
protected:
    ToolRun Run(const std::vector<std::string>& arguments, const std::string& content,
                const std::vector<std::string>& more = {}) const {
        return RunQmv40(With(With(arguments, {"--geometry", folder.Write("head.ini", content)}), more));
    }

    const TemporaryFolder folder;
    const std::string file = folder.Name("head.ini");
    /// Every command that needs a geometry file, with its arguments but without --geometry.
    const std::vector<std::vector<std::string>> planningCommands{
        {"move", "--from", "0,0", "--to", "45,90"},
        {"start", "--from", "0,0"},
        {"pole"},
        {"check", "--from", "0,0", "--to", "45,90"},
        {"view", "--from", "0,0", "--to", "45,90", "--svg", folder.Name("plan.svg")},
        {"export", "--from", "0,0", "--to", "45,90", "--format", "points"},
        {"where", "--at", "0,0", "--tip", "0,0,-180"},
        {"recover", "--from", "0,0", "--to", "45,90", "--standing", "412.5,-178.25,-500", "--during", "1"},
        {"which", "--tip", "0,0,-180", "--measured", "412.5,-178,-475"},
    };
};

TEST_F(GeometryOption, WithADoubtfulEntryStopsEveryCommand) {
    for (const auto& command : planningCommands) {
        SCOPED_TRACE(command.front());
        const ToolRun run = Run(command, GeometryWith("-178.25", "-178,25"));
        EXPECT_EQ(4, run.exitCode);
        EXPECT_THAT(run.err,
                    StartsWith(file + ":3: [HEADCENTRE] Y '-178,25' reads as -178: the decimal mark is a point\n"));
        EXPECT_THAT(run.err, HasSubstr("qmv40 geometry")) << "the remedy";
        EXPECT_EQ("", run.out) << "no plan";
    }
}

TEST_F(GeometryOption, NamesEachDoubtfulEntryAndItsLine) {
    const struct {
        std::string content;
        const char* place;
        const char* problem;
        const char* why;
    } cases[] = {
        {GeometryWith("412.5", "left"), ":2: ", "[HEADCENTRE] X 'left' reads as 0: it does not begin with a number",
         "a word"},
        {GeometryWith("412.5", ""), ":2: ", "[HEADCENTRE] X '' reads as 0: it does not begin with a number",
         "an empty value"},
        {GeometryWith("412.5", "412.5 mm"), ":2: ", "'412.5 mm' reads as 412.5: what follows the number is ignored",
         "a unit"},
        {GeometryWith("412.5", "nan"), ":2: ", "'nan' reads as nan, which is no length or angle", "not a number"},
        {GeometryWith("412.5", "1e999"), ":2: ", "'1e999' reads as inf, which is no length or angle", "too large"},
        {GeometryWith("Z=-620", "Z=x"), ":8: ", "[SAFEPOSITION] Z 'x' reads as 0",
         "an entry that is read and not used"},
        {GeometryWith("=30", "=30deg"), ":10: ", "[AlignmentOffset] RequiredRotationAroundZ '30deg' reads as 30",
         "the last entry"},
        {GeometryWith("X=412.5\n", ""), ": ", "[HEADCENTRE] X is missing", "a missing key"},
        {GeometryWith("X=412.5", "X"), ":2: ", "[HEADCENTRE] X is missing", "a key without a value"},
        {GeometryWith("X=412.5", "X=999999999"), ":2: ", "[HEADCENTRE] X is 999999999, which counts as missing",
         "999999999 stands for a missing value"},
        {"no geometry at all", ": ", "[HEADCENTRE] X is missing", "another file"},
    };
    for (const auto& each : cases) {
        const ToolRun run = Run({"pole"}, each.content);
        EXPECT_EQ(4, run.exitCode) << each.why;
        EXPECT_THAT(run.err, StartsWith(file + each.place)) << each.why;
        EXPECT_THAT(run.err, HasSubstr(each.problem)) << each.why;
        EXPECT_EQ("", run.out) << each.why;
    }
}

TEST_F(GeometryOption, AcceptsEveryFormOfANumberThatTheComponentReads) {
    const std::string expected = Run({"pole"}, validGeometry).out;
    for (const char* form : {"4.125000000e+02", "+412.5", "\"412.5\"", "  412.50  ", "4125e-1"}) {
        const ToolRun run = Run({"pole"}, GeometryWith("412.5", form));
        EXPECT_EQ(0, run.exitCode) << form;
        EXPECT_EQ(expected, run.out) << form;
        EXPECT_EQ("", run.err) << form;
    }
}

TEST_F(GeometryOption, WithForceOnlyWarnsOfADoubtfulEntry) {
    const std::string comma = GeometryWith("-178.25", "-178,25");
    for (const auto& command : planningCommands) {
        SCOPED_TRACE(command.front());
        const ToolRun forced = Run(command, comma, {"--force"});
        EXPECT_THAT(forced.err, HasSubstr("warning: " + file + ":3: [HEADCENTRE] Y '-178,25' reads as -178"));
        EXPECT_EQ(Run(command, GeometryWith("-178.25", "-178")).out, forced.out);
        EXPECT_EQ(0, forced.exitCode);
    }
}

TEST_F(GeometryOption, WithForceLetsTheComponentRefuseAMissingEntry) {
    for (const auto& command : planningCommands) {
        const ToolRun run = Run(command, GeometryWith("Y=-178.25\n", ""), {"--force"});
        EXPECT_EQ(1, run.exitCode) << command.front();
        EXPECT_THAT(run.err, HasSubstr("qmv40: error 0x8A000001 from RoundThePole::ReadDoubleFromIniFile: Failed To "
                                       "Read from File\n"));
    }
}

TEST_F(GeometryOption, ReportsADoubtfulEntryInTheDocument) {
    const ToolRun run = Run({"pole", "--json"}, GeometryWith("-178.25", "word"));
    EXPECT_EQ(4, run.exitCode);
    EXPECT_EQ("", run.err);
    const Json error = run.Document()["error"];
    EXPECT_EQ(file, error["file"]);
    EXPECT_EQ(3, error["line"]);
    EXPECT_THAT(error["description"].get<std::string>(), StartsWith("[HEADCENTRE] Y 'word' reads as 0"));
}

} // namespace
