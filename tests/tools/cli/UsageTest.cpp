#include "tests/tools/cli/ToolRun.h"

#include "tools/cli/Tool.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sstream>

using namespace qmv40;

namespace {

constexpr const char* commands[] = {"geometry", "move", "export", "check", "where", "which", "start", "pole", "fit"};

TEST(Usage, HelpOfTheToolNamesCommandsAndTheExitCodes) {
    const ToolRun run = RunQmv40({"--help"});
    EXPECT_EQ(0, run.exitCode);
    for (const char* command : commands) {
        EXPECT_NE(std::string::npos, run.out.find(std::string("\n  ") + command)) << command;
    }
    EXPECT_NE(std::string::npos, run.out.find("Exit codes: 0 done;")) << run.out;
}

TEST(Usage, VersionIsThatOfTheProject) {
    const ToolRun run = RunQmv40({"--version"});
    EXPECT_EQ(0, run.exitCode);
    EXPECT_EQ("qmv40 " QMV40_VERSION "\n", run.out);
}

TEST(Usage, WrongArgumentsAreRefused) {
    const struct {
        std::vector<std::string> arguments;
        const char* why;
    } cases[] = {
        {{}, "no command"},
        {{"fly"}, "no such command"},
        {{"geometry"}, "required options are missing"},
        {{"geometry", "--a-axis", "a.csv"}, "one of two required options"},
        {{"pole", "--geometry", "x.ini", "--colour"}, "no such option"},
        {{"pole", "--geometry", "x.ini", "extra"}, "an argument too many"},
        {{"pole", "--geometry"}, "an option without its value"},
        {{"pole", "--geometry=", "--json"}, "an empty value; the next option must not become the value"},
        {{"pole", "--geometry", "--json"}, "an option instead of a value"},
        {{"start", "--geometry", "x.ini", "--from", "45"}, "one angle"},
        {{"start", "--geometry", "x.ini", "--from", "45;90"}, "the wrong separator"},
        {{"start", "--geometry", "x.ini", "--from", "nan,0"}, "not a finite number"},
        {{"move", "--geometry", "x.ini", "--from", "0,0"}, "no target"},
        {{"move", "--geometry", "x.ini", "--from", "0,0", "--to", "a,b"}, "no numbers"},
        {{"move", "--geometry", "x.ini", "--from", "0,0", "--to", "0,0", "--json", "--csv"}, "two formats"},
        {{"fit", "--shape", "sphere", "--points", "p.csv"}, "no such shape"},
        {{"check", "--geometry", "x.ini", "--all", "--tour", "t.csv"}, "all pairs are no tour"},
        {{"settings"}, "the second word of the command is missing"},
        {{"settings", "validate"}, "no file"},
        {{"selfcheck", "--settings", "x.reg"}, "selfcheck always uses the built-in settings"},
    };
    for (const auto& each : cases) {
        const ToolRun run = RunQmv40(each.arguments);
        EXPECT_EQ(2, run.exitCode) << each.why;
        const bool isJsonWanted = std::ranges::count(each.arguments, "--json") != 0;
        EXPECT_EQ(!isJsonWanted, run.out.empty()) << each.why;
        EXPECT_EQ(isJsonWanted, run.err.empty()) << each.why;
    }
}

TEST(Usage, AnUnknownCommandIsAnsweredWithTheKnownOnes) {
    const struct {
        std::vector<std::string> arguments;
        const char* message;
        const char* why;
    } cases[] = {
        {{}, "a command is missing: one of geometry, move, ", "no command"},
        {{"mvoe", "--from", "0,0"}, "there is no command 'mvoe': give one of geometry, move, ", "a misspelt command"},
        {{"settings"}, "a command is missing: one of show, validate, write", "the second word is missing"},
        {{"settings", "list"},
         "there is no command 'list': give one of show, validate, write",
         "an unknown second word"},
    };
    for (const auto& each : cases) {
        const ToolRun run = RunQmv40(each.arguments);
        EXPECT_EQ(2, run.exitCode) << each.why;
        EXPECT_THAT(run.err, testing::HasSubstr(each.message)) << each.why;
    }
}

TEST(Usage, WrongArgumentsAreReportedAsADocument) {
    const struct {
        std::vector<std::string> arguments;
        const char* format;
        const char* description;
        const char* why;
    } cases[] = {
        {{"move", "--json"}, "qmv40/move", "--geometry is required", "an option is missing"},
        {{"pole", "--geometry", "--json"}, "qmv40/pole", "--geometry: a value is missing before --json", "no value"},
        {{"settings", "show", "--json", "--colour"}, "qmv40/settings-show", "not expected", "a command of two words"},
        {{"fly", "--json"}, "qmv40/error", "", "an unknown command has the format qmv40/error"},
    };
    for (const auto& each : cases) {
        const ToolRun run = RunQmv40(each.arguments);
        EXPECT_EQ(2, run.exitCode) << each.why;
        const Json document = run.Document();
        EXPECT_EQ(each.format, document["format"]) << each.why;
        EXPECT_EQ(1, document["version"]) << each.why;
        EXPECT_THAT(document["error"]["description"].get<std::string>(), testing::HasSubstr(each.description));
        EXPECT_TRUE(document["error"]["file"].is_null()) << each.why;
        EXPECT_TRUE(document["error"]["line"].is_null()) << each.why;
    }
}

TEST(Usage, TheMessageShowsTheWrongAngle) {
    const ToolRun run = RunQmv40({"start", "--geometry", "x.ini", "--from", "45;90"});
    EXPECT_NE(std::string::npos, run.err.find("--from: '45;90' is not two angles in degrees such as 45,-90"))
        << run.err;
}

TEST(Usage, NegativeAnglesAreNotReadAsOptions) {
    const PlainHead head;
    EXPECT_EQ(0, head.RunTool("move", {"--from", "0,-90", "--to", "45,-90"}).exitCode);
    EXPECT_EQ(0, head.RunTool("move", {"--from=0,-90", "--to=-0,-90"}).exitCode);
    EXPECT_EQ(1, head.RunTool("start", {"--from", "-15,0"}).exitCode) << "refused by the component";
}

TEST(Usage, OutputThatCannotBeWrittenIsAFailure) {
    std::ostringstream out;
    std::ostringstream err;
    out.setstate(std::ios::badbit);
    EXPECT_EQ(3, cli::RunTool({"--version"}, {out, err, false}));
    EXPECT_EQ("qmv40: the output could not be written\n", err.str());
}

} // namespace
