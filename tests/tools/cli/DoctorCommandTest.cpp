#include "tests/tools/cli/ToolRun.h"

#include "tests/support/SettingsFixture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using testing::HasSubstr;

/// One line per finding: name, sentence and remedy.
std::string FindingsOf(const Json& document) {
    std::string text;
    for (const Json& each : document["findings"]) {
        text += each["name"].get<std::string>() + ": " + each["sentence"].get<std::string>() + " -> " +
                each["remedy"].get<std::string>() + "\n";
    }
    return text;
}

TEST(Doctor, FindsNothingWrongWhenNoSettingIsStored) {
    SettingsFixture store;
    store.CreateEmptyKey();
    const ToolRun run = RunQmv40({"doctor"});
    EXPECT_EQ(0, run.exitCode) << run.out << run.err;
    EXPECT_THAT(run.out, HasSubstr("Nothing is wrong.\n"));
}

TEST(Doctor, PrintsVersionBitsAndTheFileOfTheComponent) {
    const Json document = RunQmv40({"doctor", "--json"}).Document();
    EXPECT_EQ(QMV40_VERSION, document["tool"]["version"]);
    EXPECT_EQ(64, document["tool"]["bits"]);
    const std::filesystem::path component(document["component"]["file"].get<std::string>());
    EXPECT_TRUE(std::filesystem::is_regular_file(component)) << component;
    EXPECT_EQ(14u, document["settings"]["values"].size());
    EXPECT_FALSE(document.contains("geometry"));
}

TEST(Doctor, FindsSettingsThatAreNotReadOrReadAsZero) {
    SettingsFixture store;
    store.SetText("Head Centre To Drive Cup X Offset", "7");
    store.SetText("Head Centre To Drive Cup Y Offset", "24.5");
    store.SetText("Lever Centre To Ball Centre X Offset", "zero");
    const ToolRun run = RunQmv40({"doctor", "--json"});
    EXPECT_EQ(4, run.exitCode);
    const Json document = run.Document();
    EXPECT_EQ("stored", document["settings"]["values"][0]["origin"]);
    EXPECT_EQ(7.0, document["settings"]["values"][0]["inForce"]);
    EXPECT_EQ("builtIn", document["settings"]["values"][1]["origin"]);
    EXPECT_EQ("24.5", document["settings"]["values"][1]["stored"]);
    EXPECT_THAT(FindingsOf(document),
                HasSubstr("setting-not-read: \"Head Centre To Drive Cup Y Offset\" is not read, because '24.5'"));
    EXPECT_THAT(FindingsOf(document), HasSubstr("\"7.000\", \"24.50\", \"-11.5\""));
    EXPECT_THAT(FindingsOf(document),
                HasSubstr("setting-misread: \"Lever Centre To Ball Centre X Offset\" 'zero' reads as 0"));
    const ToolRun shown = RunQmv40({"doctor"});
    EXPECT_EQ(4, shown.exitCode);
    EXPECT_THAT(shown.out, HasSubstr("\"Head Centre To Drive Cup Y Offset\" is not read, because '24.5' is longer"));
}

TEST(Doctor, FindsANameThatIsNoSetting) {
    SettingsFixture store;
    store.SetText("Head Center To Drive Cup X Offset", "-7.00");
    const ToolRun run = RunQmv40({"doctor", "--json"});
    EXPECT_EQ(4, run.exitCode);
    EXPECT_THAT(FindingsOf(run.Document()), HasSubstr("is no setting of the head and is ignored"));
}

class DoctorOfAGeometryFile : public testing::Test {
protected:
    DoctorOfAGeometryFile() { store.CreateEmptyKey(); }

    ToolRun Examine(const std::string& content) const {
        return RunQmv40({"doctor", "--geometry", folder.Write("head.ini", content), "--json"});
    }

    SettingsFixture store;
    const TemporaryFolder folder;
};

constexpr const char* validFile = "[HEADCENTRE]\nX=4.125000000e+02\nY=-1.782500000e+02\nZ=-6.550000000e+02\n"
                                  "[SAFEPOSITION]\nX=0.000000000e+00\nY=0.000000000e+00\nZ=-6.200000000e+02\n"
                                  "[AlignmentOffset]\nRequiredRotationAroundZ=0.000000000e+00\n";

/// The valid file with one text replaced.
std::string FileWith(const std::string& from, const std::string& to) {
    std::string content = validFile;
    content.replace(content.find(from), from.size(), to);
    return content;
}

TEST_F(DoctorOfAGeometryFile, FindsNothingWrongWithAFileOfTheTool) {
    const ToolRun run = RunQmv40({"doctor", "--geometry", PlainGeometryFile(folder), "--json"});
    EXPECT_EQ(0, run.exitCode) << run.out;
    const Json geometry = run.Document()["geometry"];
    EXPECT_EQ("loaded", geometry["state"]);
    EXPECT_EQ(Json::array(), geometry["ignored"]);
    const Json first{{"section", "HEADCENTRE"}, {"key", "X"}, {"text", "4.125000000e+02"}, {"value", 412.5}};
    EXPECT_EQ(first, geometry["values"][0]);
    EXPECT_EQ(7u, geometry["values"].size());
}

TEST_F(DoctorOfAGeometryFile, FindsMissingAndDoubtfulEntries) {
    const struct {
        std::string content;
        const char* state;
        const char* finding;
        const char* why;
    } cases[] = {
        {FileWith("Y=-1.782500000e+02\n", ""), "refused by the component", "\"[HEADCENTRE] Y\" is missing",
         "a missing key"},
        {FileWith("[AlignmentOffset]\n", ""), "refused by the component",
         "\"[AlignmentOffset] RequiredRotationAroundZ\" is missing", "a missing section"},
        {FileWith("Z=-6.200000000e+02", "Z=999999999"), "refused by the component", "\"[SAFEPOSITION] Z\" is 999999999",
         "999999999 stands for a missing value"},
        {FileWith("4.125000000e+02", "left"), "loaded",
         "\"[HEADCENTRE] X\" 'left' reads as 0: it does not begin with a number", "a word"},
        {FileWith("4.125000000e+02", "412,5"), "loaded", "'412,5' reads as 412: the decimal mark is a point",
         "a decimal comma"},
        {FileWith("4.125000000e+02", "412.5 mm"), "loaded", "'412.5 mm' reads as 412.5", "a unit"},
        {FileWith("4.125000000e+02", ""), "loaded", "\"[HEADCENTRE] X\" '' reads as 0", "an empty value"},
        {FileWith("-6.550000000e+02", "nan"), "loaded", "'nan' reads as nan, which is no length or angle",
         "not a number"},
        {"", "refused by the component", "\"[HEADCENTRE] X\" is missing", "an empty file"},
        {std::string("\xEF\xBB\xBF") + validFile, "loaded", "The file begins with a UTF-8 byte-order mark",
         "Windows reads the mark as part of the first line"},
    };
    for (const auto& each : cases) {
        const ToolRun run = Examine(each.content);
        EXPECT_EQ(4, run.exitCode) << each.why;
        const Json document = run.Document();
        EXPECT_EQ(each.state, document["geometry"]["state"]) << each.why;
        EXPECT_THAT(FindingsOf(document), HasSubstr(each.finding)) << each.why;
    }
}

TEST_F(DoctorOfAGeometryFile, ListsEntriesThatAreIgnored) {
    const struct {
        std::string content;
        const char* ignored;
        const char* why;
    } cases[] = {
        {FileWith("Z=-6.200000000e+02", "Z=-500"),
         "[SAFEPOSITION] Z -500: the safe height is always the head centre's Z + 35, -620", "another safe height"},
        {FileWith("[AlignmentOffset]\n", "[AlignmentOffset]\nOperator=7\n"), "line 10: 'Operator' in [AlignmentOffset]",
         "a key that the format does not have"},
        {std::string(validFile) + "[Notes]\nA=1\n", "line 11: section [Notes]",
         "a section that the format does not have"},
        {FileWith("X=4.125000000e+02\n", "X=4.125000000e+02\nX=1\n"), "line 3: a second [HEADCENTRE] X", "a key twice"},
        {std::string(validFile) + "[headcentre]\nX=1\n", "line 11: a second [headcentre]", "a section twice"},
    };
    for (const auto& each : cases) {
        const ToolRun run = Examine(each.content);
        EXPECT_EQ(0, run.exitCode) << each.why << run.out;
        const Json ignored = run.Document()["geometry"]["ignored"];
        ASSERT_EQ(1u, ignored.size()) << each.why << ignored.dump();
        EXPECT_EQ(each.ignored, ignored[0]) << each.why;
    }
}

TEST_F(DoctorOfAGeometryFile, ReportsThatItIsMissing) {
    const ToolRun run = RunQmv40({"doctor", "--geometry", folder.Name("missing.ini"), "--json"});
    EXPECT_EQ(4, run.exitCode);
    EXPECT_EQ("missing", run.Document()["geometry"]["state"]);
    const ToolRun onAFolder = RunQmv40({"doctor", "--geometry", folder.Name("."), "--json"});
    EXPECT_EQ(4, onAFolder.exitCode);
    EXPECT_EQ("unreadable", onAFolder.Document()["geometry"]["state"]);
}

TEST_F(DoctorOfAGeometryFile, PrintsTheNumbersAndTheDoubtfulTexts) {
    const std::string file = folder.Write("head.ini", FileWith("4.125000000e+02", "412,5"));
    const ToolRun run = RunQmv40({"doctor", "--geometry", file});
    EXPECT_EQ(4, run.exitCode);
    EXPECT_THAT(run.out, HasSubstr("Geometry file\n  " + file + ": loaded\n  [HEADCENTRE] X = 412  \"412,5\"\n"));
    EXPECT_THAT(run.out, HasSubstr("  line 2: fault: entry-doubtful\n"
                                   "    \"[HEADCENTRE] X\" '412,5' reads as 412: the decimal mark is a point.\n"));
}

} // namespace
