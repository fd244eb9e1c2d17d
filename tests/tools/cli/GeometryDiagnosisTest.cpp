// What `qmv40 geometry` says of a capture, and what it does then: exit codes, files, names, places.

#include "tests/support/SimulatedHead.h"
#include "tests/tools/cli/ReferenceHead.h"
#include "tests/tools/cli/ToolRun.h"
#include "tools/text/Numbers.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace qmv40;

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;
using Items = std::vector<HeadAlignmentDataItem>;

std::string CsvOf(const Items& items) {
    std::string text = "# captured by hand\nAPosition,BPosition,XPosition,YPosition,ZPosition\n";
    for (const HeadAlignmentDataItem& item : items) {
        text += text::ExactText(item.APosition) + "," + text::ExactText(item.BPosition) + "," +
                text::ExactText(item.XPosition) + "," + text::ExactText(item.YPosition) + "," +
                text::ExactText(item.ZPosition) + "\n";
    }
    return text;
}

/// The line of a capture file (counted from 1) that holds the first point.
constexpr std::size_t firstLine = 3;

struct CapturedHead {
    SimulatedHead head = [] {
        SimulatedHead simulated;
        simulated.pole = {87.325, 640.9, -712.35};
        simulated.mountingAngle = -3.0;
        return simulated;
    }();
    Items aSet = WithNoise(head.ASet(45), 1e-3, 1);
    Items bSet = WithNoise(head.BSet(75, 13, -180, 180), 1e-3, 2);

    void CaptureASetAt(double b) { aSet = WithNoise(head.ASet(b), 1e-3, 1); }

    ToolRun Run(const TemporaryFolder& folder, std::vector<std::string> more = {}) const {
        std::vector<std::string> arguments{"geometry", "--a-axis", folder.Write("a.csv", CsvOf(aSet)), "--b-axis",
                                           folder.Write("b.csv", CsvOf(bSet))};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return RunQmv40(arguments);
    }
};

std::vector<std::string> NamesOf(const Json& diagnostics, const std::string& severity) {
    std::vector<std::string> names;
    for (const Json& finding : diagnostics["findings"]) {
        if (finding["severity"] == severity) names.push_back(finding["name"]);
    }
    return names;
}

TEST(GeometryDiagnosis, FindsNothingWrongWithTheScenarios) {
    for (const char* name : {"plain", "turned-30", "captured-at-b45"}) {
        const ToolRun run = RunQmv40(LoadScenario(name).GeometryArguments({"--json"}));
        EXPECT_EQ(0, run.exitCode) << name;
        const Json diagnostics = run.Document()["diagnostics"];
        EXPECT_EQ("good", diagnostics["verdict"]) << name;
        EXPECT_THAT(diagnostics["findings"], IsEmpty()) << name;
    }
    EXPECT_THAT(RunQmv40(LoadScenario("plain").GeometryArguments()).out,
                HasSubstr("Verdict: good\n  circles, axes and angles agree\n"));
}

TEST(GeometryDiagnosis, RefusesATurnedHeadOnlyIfCapturedAtBZero) {
    const TemporaryFolder folder;
    CapturedHead captured;
    const std::string output = folder.Name("head.ini");
    const ToolRun good = captured.Run(folder, {"--output", output});
    EXPECT_EQ(0, good.exitCode) << good.out;
    EXPECT_TRUE(std::filesystem::exists(output));
    std::filesystem::remove(output);

    captured.CaptureASetAt(0);
    const ToolRun refused = captured.Run(folder, {"--output", output});
    EXPECT_EQ(4, refused.exitCode);
    EXPECT_FALSE(std::filesystem::exists(output));
    EXPECT_EQ("The capture has a fault: no geometry was written (--force writes it all the same).\n", refused.err);
    EXPECT_THAT(refused.out, HasSubstr("  fault: rotation-on-wrong-side\n"));
    EXPECT_THAT(refused.out, HasSubstr("    -> Capture the A set at B = 45.\n"));

    const ToolRun forced = captured.Run(folder, {"--output", output, "--force"});
    EXPECT_EQ(0, forced.exitCode);
    EXPECT_TRUE(std::filesystem::exists(output));
    EXPECT_THAT(forced.out, HasSubstr("  fault: rotation-on-wrong-side\n")) << "the finding is shown with --force too";
    EXPECT_EQ("The geometry was written to " + output + "\n", forced.err);
}

TEST(GeometryDiagnosis, ExitsWith4OnAContradictionWithoutOutput) {
    const TemporaryFolder folder;
    CapturedHead captured;
    captured.CaptureASetAt(0);
    const ToolRun run = captured.Run(folder);
    EXPECT_EQ(4, run.exitCode);
    EXPECT_EQ("The capture has a fault.\n", run.err);
    const ToolRun document = captured.Run(folder, {"--json"});
    EXPECT_EQ(4, document.exitCode);
    const Json finding = document.Document()["diagnostics"]["findings"][0];
    EXPECT_EQ("fault", document.Document()["diagnostics"]["verdict"]);
    EXPECT_EQ("rotation-on-wrong-side", finding["name"]);
    EXPECT_EQ(45.0, finding["captureAAxisAtB"]);
}

TEST(GeometryDiagnosis, NamesTheLineOfAMistypedAngle) {
    const TemporaryFolder folder;
    CapturedHead captured;
    captured.aSet[3].APosition = 60.0; // was captured at 45
    const ToolRun run = captured.Run(folder, {"--json"});
    EXPECT_EQ(4, run.exitCode);
    const Json diagnostics = run.Document()["diagnostics"];
    EXPECT_THAT(NamesOf(diagnostics, "fault"), ElementsAre("angle-mistyped"));
    const Json finding = diagnostics["findings"][0];
    const Json point{{"axis", "A"}, {"file", folder.Name("a.csv")}, {"line", firstLine + 3}};
    EXPECT_EQ(Json::array({point}), finding["points"]);
    EXPECT_EQ(folder.Name("a.csv") + ":6 was captured at A = 45, not at the 60 that is written down.",
              finding["sentence"]);
    EXPECT_NE("", finding["remedy"]);
}

TEST(GeometryDiagnosis, RefusesEveryMistakeByItsName) {
    const struct {
        void (*spoil)(CapturedHead&);
        const char* name;
        const char* words;
    } cases[] = {
        {[](CapturedHead& c) { c.bSet[2].BPosition = -105.0; }, "angle-mistyped",
         "not at the -105 that is written down"},
        {[](CapturedHead& c) { std::swap(c.aSet[2].APosition, c.aSet[3].APosition); }, "angles-swapped",
         "have each other's A"},
        {[](CapturedHead& c) {
             std::swap(c.aSet, c.bSet);
             for (Items* const set : {&c.aSet, &c.bSet}) {
                 for (HeadAlignmentDataItem& item : *set) std::swap(item.APosition, item.BPosition);
             }
         },
         "sets-exchanged", "The sets are exchanged"},
        {[](CapturedHead& c) {
             c.head.stylus = {-30.0, 40.0, -150.0};
             c.CaptureASetAt(45);
             c.bSet = WithNoise(c.head.BSet(75), 1e-3, 2);
         },
         "tip-off-axis", "the stylus tip stands 50.000 mm off the swivel axis"},
        {[](CapturedHead& c) {
             for (std::size_t i = 4; i < c.aSet.size(); ++i) {
                 c.aSet[i] = c.head.Point(c.aSet[i].APosition, 60.0);
                 c.aSet[i].BPosition = 45.0;
             }
         },
         "other-axis-moved", "were captured at B 15 more than is written down"},
        {[](CapturedHead& c) {
             for (HeadAlignmentDataItem& item : c.aSet) item.BPosition = -45.0;
         },
         "set-angle-wrong", "the A set was captured at B = 45, not at -45"},
        {[](CapturedHead& c) {
             for (HeadAlignmentDataItem& item : c.bSet) item.BPosition = -item.BPosition;
         },
         "swivel-reversed", "B counts the wrong way round in the B set"},
        {[](CapturedHead& c) {
             for (HeadAlignmentDataItem& item : c.aSet) item.APosition = -item.APosition;
             for (HeadAlignmentDataItem& item : c.bSet) item.APosition = -item.APosition;
         },
         "tilt-reversed", "A counts the wrong way round"},
        {[](CapturedHead& c) {
             for (HeadAlignmentDataItem& item : c.aSet) item.XPosition = -item.XPosition;
         },
         "axis-mirrored", "Machine X is mirrored: its values have the other sign in the A set"},
        {[](CapturedHead& c) {
             for (HeadAlignmentDataItem& item : c.bSet) std::swap(item.YPosition, item.ZPosition);
         },
         "axes-exchanged", "The columns Y and Z are exchanged in the B set"},
        {[](CapturedHead& c) { c.bSet[7].ZPosition += 0.5; }, "point-off", "0.5"},
        {[](CapturedHead& c) {
             for (HeadAlignmentDataItem& item : c.bSet) item.XPosition += 1.0;
         },
         "sets-apart", "the pole sphere, the stylus tip or the machine's zero moved by"},
    };
    const TemporaryFolder folder;
    for (const auto& each : cases) {
        SCOPED_TRACE(each.name);
        CapturedHead captured;
        each.spoil(captured);
        const std::string output = folder.Name("head.ini");
        const ToolRun run = captured.Run(folder, {"--json", "--output", output});
        EXPECT_EQ(4, run.exitCode);
        EXPECT_FALSE(std::filesystem::exists(output));
        const Json diagnostics = run.Document()["diagnostics"];
        EXPECT_THAT(NamesOf(diagnostics, "fault"), ElementsAre(each.name));
        EXPECT_THAT(diagnostics["findings"][0]["sentence"].get<std::string>(), HasSubstr(each.words));
        EXPECT_NE("", diagnostics["findings"][0]["remedy"]);
    }
}

TEST(GeometryDiagnosis, OnlyWarnsOfAShortTiltArc) {
    const TemporaryFolder folder;
    CapturedHead captured;
    captured.aSet = WithNoise(captured.head.ASet(45, 7, 0, 30), 1e-3, 1);
    const std::string output = folder.Name("head.ini");
    const ToolRun run = captured.Run(folder, {"--output", output});
    EXPECT_EQ(0, run.exitCode);
    EXPECT_TRUE(std::filesystem::exists(output));
    EXPECT_THAT(run.out, HasSubstr("  warning: tilt-arc-short\n"));
    const Json diagnostics = captured.Run(folder, {"--json"}).Document()["diagnostics"];
    EXPECT_EQ("warning", diagnostics["verdict"]);
    const ToolRun modest = captured.Run(folder, {"--json", "--centre-within", "0.5"});
    EXPECT_THAT(modest.Document()["diagnostics"]["findings"], IsEmpty());
}

TEST(GeometryDiagnosis, RefusesALengthThatIsNotPositive) {
    for (const char* length : {"0", "-1", "x", "nan", ""}) {
        const ToolRun run = RunQmv40(LoadScenario("plain").GeometryArguments({"--centre-within", length}));
        EXPECT_EQ(2, run.exitCode) << length;
        EXPECT_THAT(run.err, HasSubstr("--centre-within")) << length;
    }
}

TEST(GeometryDiagnosis, ExplainsTheRefusalOfExchangedFiles) {
    const TemporaryFolder folder;
    CapturedHead captured;
    std::swap(captured.aSet, captured.bSet);
    const ToolRun run = captured.Run(folder);
    EXPECT_EQ(1, run.exitCode);
    EXPECT_EQ("", run.out);
    EXPECT_THAT(run.err, StartsWith("qmv40: error 0x8A00000A from RoundThePole::ValidateSafeArrayData: "));
    EXPECT_THAT(run.err, HasSubstr("  fault: sets-exchanged\n"));
    const ToolRun document = captured.Run(folder, {"--json"});
    EXPECT_EQ(1, document.exitCode);
    EXPECT_EQ("0x8A00000A", document.Document()["error"]["code"]);
    EXPECT_THAT(NamesOf(document.Document()["diagnostics"], "fault"), ElementsAre("sets-exchanged"));
}

TEST(GeometryDiagnosis, NamesTheLineWhereTheFixedAxisMoved) {
    const TemporaryFolder folder;
    CapturedHead captured;
    captured.aSet[2].BPosition = 60.0;
    const ToolRun run = captured.Run(folder);
    EXPECT_EQ(1, run.exitCode);
    EXPECT_THAT(run.err, HasSubstr("  fault: other-axis-not-held\n"));
    EXPECT_THAT(run.err, HasSubstr("a.csv:5 is not the 45 of the others."));
}

TEST(GeometryDiagnosis, GivesEveryFigureOfTheDocumentedMembers) {
    const Json diagnostics =
        RunQmv40(LoadScenario("captured-at-b45").GeometryArguments({"--json"})).Document()["diagnostics"];
    const auto keys = [](const Json& object) {
        std::string all;
        for (const auto& item : object.items()) all += item.key() + " ";
        return all;
    };
    EXPECT_EQ("verdict findings standardDeviations axes secondOpinion aAxis bAxis ", keys(diagnostics));
    EXPECT_EQ("X Y Z rotationAroundZ ", keys(diagnostics["standardDeviations"]));
    EXPECT_EQ("axisOffset squareness offVerticalTowardsX offVerticalTowardsY ", keys(diagnostics["axes"]));
    EXPECT_EQ("value standardDeviation ", keys(diagnostics["axes"]["axisOffset"]));
    EXPECT_EQ("poleSphere mountingAngle stylusTip rotationDifference rms unknowns degreesOfFreedom ",
              keys(diagnostics["secondOpinion"]));
    EXPECT_EQ("file arcCovered degreesOfFreedom rms noise points ", keys(diagnostics["aAxis"]));
    EXPECT_EQ("line APosition BPosition radial outOfPlane offPlace leftOut ", keys(diagnostics["aAxis"]["points"][0]));
    EXPECT_EQ("centreShift rotationShift pValue ", keys(diagnostics["bAxis"]["points"][0]["leftOut"]));
    EXPECT_EQ(7u, diagnostics["aAxis"]["points"].size());
    EXPECT_EQ(13u, diagnostics["bAxis"]["points"].size());
    EXPECT_EQ(8, diagnostics["aAxis"]["degreesOfFreedom"]);
    EXPECT_EQ(3 * 20 - 7, diagnostics["secondOpinion"]["degreesOfFreedom"]);

    // The capture was made with 0.001 mm of noise, at -1.35 degrees, with a stylus of 180 mm.
    EXPECT_NEAR(0.001, diagnostics["aAxis"]["noise"].get<double>(), 0.0005);
    EXPECT_NEAR(-1.35, diagnostics["secondOpinion"]["mountingAngle"]["value"].get<double>(), 0.002);
    EXPECT_NEAR(-180.0, diagnostics["secondOpinion"]["stylusTip"]["Z"].get<double>(), 0.01);
    EXPECT_NEAR(0.0, diagnostics["secondOpinion"]["rotationDifference"].get<double>(), 0.003);
}

TEST(GeometryDiagnosis, PrintsEveryFigureWithItsUnit) {
    const std::string text = RunQmv40(LoadScenario("captured-at-b45").GeometryArguments()).out;
    for (const char* expected :
         {"How well they are known", "head centre Z  ", "A axis passes B axis at", "axes out of square by",
          "from 28 degrees of freedom: a point scatters by ", " um in each coordinate", "Second opinion",
          "component's rotation differs by", "stylus tip Z ", "7 unknowns, 53 degrees of freedom",
          "degrees of freedom            8         20", "out of plane", "off its place", "A set, line 3 "}) {
        EXPECT_THAT(text, HasSubstr(expected));
    }
}

TEST(GeometryDiagnosis, DrawsTheResidualsOfARefusedCaptureToo) {
    const TemporaryFolder folder;
    CapturedHead captured;
    captured.aSet[2].XPosition += 1.0;
    const std::string picture = folder.Name("residuals.svg");
    EXPECT_EQ(4, captured.Run(folder, {"--svg", picture}).exitCode);
    EXPECT_THAT(ReadFile(picture), HasSubstr("a.csv:5"));
    captured.aSet[2].XPosition -= 1.0;
    EXPECT_EQ(0, captured.Run(folder, {"--svg", picture}).exitCode) << "a picture is replaced by a picture";
    EXPECT_THAT(ReadFile(picture), testing::Not(HasSubstr("a.csv:5")));
}

TEST(GeometryDiagnosis, RecordsWhatWasComputedFromWhat) {
    const TemporaryFolder folder;
    const std::string page = folder.Name("record.html"), geometry = folder.Name("head.ini");
    const ToolRun run =
        CapturedHead{}.Run(folder, {"--record", page, "--head", "HX <7>", "--output", geometry, "--stylus", "180"});
    EXPECT_EQ(0, run.exitCode) << run.err;
    const std::string written = ReadFile(page);
    for (const char* const part : {"Geometry of head HX &lt;7&gt;", "Verdict: good", "<svg", "87.3245 mm",
                                   "640.8999 mm", "-712.3473 mm", "-2.9997 deg", "a.csv", "b.csv", "head.ini",
                                   "unlocked-z", "-1.5 mm", "180.000 mm", "standard deviation", "not given"}) {
        EXPECT_NE(std::string::npos, written.find(part)) << part;
    }
}

TEST(GeometryDiagnosis, DoesNotOverwriteOtherFiles) {
    const TemporaryFolder folder;
    for (const char* const option : {"--svg", "--record"}) {
        const std::string precious = folder.Write("precious.txt", "not ours\n");
        const ToolRun run = CapturedHead{}.Run(folder, {option, precious});
        EXPECT_EQ(3, run.exitCode) << option;
        EXPECT_EQ("not ours\n", ReadFile(precious)) << option;
    }
}

TEST(GeometryDiagnosis, AcceptsAHeadNumberOnlyWithARecord) {
    const TemporaryFolder folder;
    EXPECT_EQ(2, CapturedHead{}.Run(folder, {"--head", "4711"}).exitCode);
}

TEST(GeometryDiagnosis, RefusesTheReferenceHeadsWithAWrongResult) {
    const TemporaryFolder folder;
    int refused = 0;
    for (const Json& head : LoadReferenceDocuments()) {
        // The heads that need settings are judged without them: settings move all points of a set together and do
        // not change how the points follow their angles.
        SCOPED_TRACE(head["name"].get<std::string>());
        CapturedHead captured;
        const auto read = [](const Json& rows, Items& items) {
            items.clear();
            for (const Json& row : rows) items.push_back({row[0], row[1], row[2], row[3], row[4]});
        };
        read(head["aAxisPoints"], captured.aSet);
        read(head["bAxisPoints"], captured.bSet);
        const ToolRun run = captured.Run(folder, {"--json"});
        const double computed = run.Document()["requiredRotationAroundZ"];
        const double error = std::remainder(computed - head["truth"]["theta"].get<double>(), 360.0);
        // In degrees. The noise of these captures, at most 5 um, turns the result by far less.
        const bool isWrong = std::abs(error) > 0.1;
        EXPECT_EQ(isWrong ? 4 : 0, run.exitCode) << run.Document()["diagnostics"]["findings"].dump(1);
        EXPECT_EQ(isWrong ? 1u : 0u, NamesOf(run.Document()["diagnostics"], "fault").size());
        EXPECT_THAT(NamesOf(run.Document()["diagnostics"], "warning"), IsEmpty());
        refused += isWrong ? 1 : 0;
    }
    EXPECT_EQ(3, refused);
}

} // namespace
