#include "tests/tools/cli/ScenarioExpectations.h"
#include "tests/tools/cli/WorkingFolder.h"

#include <filesystem>
#include <gtest/gtest.h>

namespace {

constexpr const char* captureHeader = "APosition,BPosition,XPosition,YPosition,ZPosition\n";

TEST(GeometryCommand, FindsTheHeadThatTheScenarioWasComputedFrom) {
    ExpectGeometryOf(LoadScenario("plain"), roundedCapture);
    ExpectGeometryOf(LoadScenario("turned-30"), roundedCapture);
    ExpectGeometryOf(LoadScenario("captured-at-b45"), noisyCapture);
}

TEST(GeometryCommand, PrintsTheDocumentWithItsMembersInOrder) {
    const Json document = RunQmv40(LoadScenario("plain").GeometryArguments({"--json"})).Document();
    const auto keys = [](const Json& object) {
        std::string all;
        for (const auto& item : object.items()) all += item.key() + " ";
        return all;
    };
    EXPECT_EQ("format version headCentre requiredRotationAroundZ safePosition fits diagnostics ", keys(document));
    EXPECT_EQ("X Y Z ", keys(document["headCentre"]));
    EXPECT_EQ("X Y Z ", keys(document["safePosition"]));
    EXPECT_EQ("aAxis bAxis ", keys(document["fits"]));
    EXPECT_EQ("centre normal radius rms residuals ", keys(document["fits"]["aAxis"]));
    EXPECT_EQ("X Y Z ", keys(document["fits"]["aAxis"]["centre"]));
    EXPECT_EQ("i j k ", keys(document["fits"]["aAxis"]["normal"]));
    EXPECT_EQ(7u, document["fits"]["aAxis"]["residuals"].size());
    EXPECT_EQ(13u, document["fits"]["bAxis"]["residuals"].size());
}

TEST(GeometryCommand, WritesNoFileUnlessAskedTo) {
    const TemporaryFolder folder;
    const WorkingFolder here(folder.Path());
    const ToolRun run = RunQmv40(LoadScenario("plain").GeometryArguments());
    EXPECT_EQ(0, run.exitCode);
    EXPECT_EQ("", run.err);
    EXPECT_TRUE(folder.IsEmpty());
}

TEST(GeometryCommand, AcceptsARelativeOutputName) {
    const TemporaryFolder folder;
    const WorkingFolder here(folder.Path());
    const ToolRun run = RunQmv40(LoadScenario("plain").GeometryArguments({"--output", "head.ini"}));
    EXPECT_EQ(0, run.exitCode);
    EXPECT_EQ("The geometry was written to head.ini\n", run.err);
    EXPECT_NE(std::string::npos, ReadFile("head.ini").find("X=4.125000000e+02"));
    EXPECT_EQ(0, RunQmv40({"pole", "--geometry", "head.ini"}).exitCode);
}

TEST(GeometryCommand, AcceptsFileNamesWithSpacesAndUmlauts) {
    const TemporaryFolder folder;
    const Scenario plain = LoadScenario("plain");
    const std::string aAxis = folder.Write("Aufnahme \xC3\xA4 (A).csv", ReadFile(plain.aAxis));
    const std::string bAxis = folder.Write("Aufnahme \xC3\xA4 (B).csv", ReadFile(plain.bAxis));
    const std::string output = folder.Name("K\xC3\xB6pfe = [1].ini");
    const ToolRun run = RunQmv40({"geometry", "--a-axis", aAxis, "--b-axis", bAxis, "--output", output});
    EXPECT_EQ(0, run.exitCode) << run.err;
    EXPECT_NE(std::string::npos, ReadFile(output).find("[HEADCENTRE]"));
    EXPECT_EQ(0, RunQmv40({"pole", "--geometry", output}).exitCode);
}

TEST(GeometryCommand, PrintsEveryFigureWithItsUnit) {
    const std::string text = RunQmv40(LoadScenario("turned-30").GeometryArguments()).out;
    for (const char* expected : {
             "X -265.7500 mm   Y 320.1250 mm   Z -480.5000 mm",
             "  30.0000 deg\n",
             "  Z -445.5000 mm\n",
             "captured at                B 45       A 90  deg\n",
             "radius                 195.5000   195.5000  mm\n",
             "arc covered             90.0000   330.0000  deg\n",
             "RMS tells how well the points lie on a circle, not how well its centre is known",
         }) {
        EXPECT_NE(std::string::npos, text.find(expected)) << "missing: " << expected << "\nin:\n" << text;
    }
}

TEST(GeometryCommand, ReportsTheComponentsRefusal) {
    const std::string three = "0,45,1,0,0\n15,45,2,0,0\n30,45,3,0,0\n";
    const std::string h = captureHeader;
    const struct {
        std::string aAxis;
        const char* code;
        const char* source;
        const char* description;
        const char* why;
    } cases[] = {
        {h + three, "0x8A000009", "RoundThePole::ValidateSafeArrayData", "Too Few A Axis Points Supplied",
         "three points"},
        {h, "0x8A000009", "RoundThePole::ValidateSafeArrayData", "Too Few A Axis Points Supplied", "none"},
        {h + three + "45,46,4,0,0\n", "0x8A00000A", "RoundThePole::ValidateSafeArrayData",
         "Invalid Data. B Axis Must Remain Fixed During A Axis Data Capture", "B moved"},
        {h + three + "45,45,4,0,0\n", "0x8A00000C", "RoundThePole::FitPointsToACircle",
         "Error Fitting points to a circle", "all on one line"},
    };
    const TemporaryFolder folder;
    for (const auto& each : cases) {
        const std::string aAxis = folder.Write("a.csv", each.aAxis);
        const std::vector<std::string> arguments{"geometry", "--a-axis", aAxis, "--b-axis",
                                                 LoadScenario("plain").bAxis};
        const ToolRun text = RunQmv40(arguments);
        EXPECT_EQ(1, text.exitCode) << each.why;
        EXPECT_EQ("", text.out) << each.why;
        const std::string line =
            std::string("qmv40: error ") + each.code + " from " + each.source + ": " + each.description + "\n";
        EXPECT_TRUE(text.err.starts_with(line)) << each.why << ": " << text.err;
        EXPECT_GT(text.err.size(), line.size()) << "no remedy: " << each.why;

        std::vector<std::string> asDocument = arguments;
        asDocument.push_back("--json");
        const ToolRun document = RunQmv40(asDocument);
        EXPECT_EQ(1, document.exitCode) << each.why;
        EXPECT_EQ("", document.err) << each.why;
        const Json expected{{"code", each.code}, {"source", each.source}, {"description", each.description}};
        EXPECT_EQ(expected.dump(), document.Document()["error"].dump()) << each.why;
    }
}

TEST(GeometryCommand, WritesNothingWhenTheCaptureIsRefused) {
    const TemporaryFolder folder;
    const Scenario plain = LoadScenario("plain");
    const std::string aAxis = folder.Write("a.csv", std::string(captureHeader) + "0,45,1,0,0\n");
    const std::string output = folder.Name("head.ini");
    EXPECT_EQ(1, RunQmv40({"geometry", "--a-axis", aAxis, "--b-axis", plain.bAxis, "--output", output}).exitCode);
    EXPECT_FALSE(std::filesystem::exists(std::filesystem::path(output)));
}

TEST(GeometryCommand, ReportsAnOutputFolderThatIsNotThere) {
    const TemporaryFolder folder;
    const ToolRun run =
        RunQmv40(LoadScenario("plain").GeometryArguments({"--output", folder.Name("nowhere/head.ini"), "--json"}));
    EXPECT_EQ(1, run.exitCode);
    EXPECT_EQ("0x8A000002", run.Document()["error"]["code"]);
    EXPECT_EQ("RoundThePole::WriteDoubleToIniFile", run.Document()["error"]["source"]);
    EXPECT_EQ("Failed To Write To File", run.Document()["error"]["description"]);
}

TEST(GeometryCommand, NamesTheFileAndTheLineOfAMalformedCapture) {
    const TemporaryFolder folder;
    const std::string aAxis = folder.Write("a.csv", std::string("# by hand\n") + captureHeader + "0,45,1,0,zero\n");
    const std::vector<std::string> arguments{"geometry", "--a-axis", aAxis, "--b-axis", LoadScenario("plain").bAxis};
    const ToolRun run = RunQmv40(arguments);
    EXPECT_EQ(3, run.exitCode);
    EXPECT_EQ("", run.out);
    EXPECT_EQ(aAxis + ":3: ZPosition 'zero' is not a number\n", run.err);
}

TEST(GeometryCommand, ReportsAMissingFileInJson) {
    const TemporaryFolder folder;
    const std::string missing = folder.Name("missing.csv");
    const ToolRun run = RunQmv40({"geometry", "--a-axis", missing, "--b-axis", LoadScenario("plain").bAxis, "--json"});
    EXPECT_EQ(3, run.exitCode);
    const Json expected{{"error", {{"file", missing}, {"line", nullptr}, {"description", "no such file"}}}};
    EXPECT_EQ(expected["error"].dump(), run.Document()["error"].dump());
}

} // namespace
