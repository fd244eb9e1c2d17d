#include "tests/support/SourceFolders.h"
#include "tests/tools/cli/ToolRun.h"

#include "tests/support/SettingsFixture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using testing::HasSubstr;
using testing::Not;

constexpr const char* registryHeader = "Windows Registry Editor Version 5.00\r\n\r\n"
                                       "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Hollbeck\\VRX Software\\QMV40Calculator]\r\n";

Json SettingOf(const Json& document, const std::string& name) {
    for (const Json& setting : document["settings"]) {
        if (setting["name"] == name) return setting;
    }
    return nullptr;
}

TEST(SettingsShow, PrintsEachValueInForceAndItsOrigin) {
    SettingsFixture store;
    store.SetText("Head Centre To Lever Centre X Offset", "31.00");
    store.SetText("Head Centre To Lever Centre Y Offset", "-0.125");
    const ToolRun run = RunQmv40({"settings", "show", "--json"});
    EXPECT_EQ(0, run.exitCode) << run.err;
    const Json document = run.Document();
    EXPECT_EQ("there", document["state"]);
    EXPECT_EQ(14u, document["settings"].size());
    const Json read{{"name", "Head Centre To Lever Centre X Offset"},
                    {"unit", "mm"},
                    {"inForce", 31.0},
                    {"builtIn", 30.3},
                    {"origin", "stored"},
                    {"stored", "31.00"}};
    EXPECT_EQ(read, SettingOf(document, "Head Centre To Lever Centre X Offset"));
    const Json ignored{{"name", "Head Centre To Lever Centre Y Offset"},
                       {"unit", "mm"},
                       {"inForce", 0.0},
                       {"builtIn", 0.0},
                       {"origin", "builtIn"},
                       {"stored", "-0.125"}};
    EXPECT_EQ(ignored, SettingOf(document, "Head Centre To Lever Centre Y Offset"));
    ASSERT_EQ(1u, document["findings"].size());
    EXPECT_EQ("Head Centre To Lever Centre Y Offset", document["findings"][0]["about"]);
}

TEST(SettingsShow, FindsSettingsThatAreNotRead) {
    SettingsFixture store;
    store.SetText("Locked To Unlocked Z Offset", "-2");
    const ToolRun run = RunQmv40({"settings", "show"});
    EXPECT_EQ(0, run.exitCode) << "`settings show` always ends with 0";
    EXPECT_THAT(run.out,
                HasSubstr("Locked To Unlocked Z Offset               -1.5  mm        -1.5  \"-2\"    built in: "
                          "what is stored is not read"));
    EXPECT_THAT(run.out, HasSubstr("\nTo be looked at\n"));
    EXPECT_THAT(run.out, HasSubstr("\"Locked To Unlocked Z Offset\" is not read, because"));
}

TEST(SettingsShow, SaysThatNothingIsStored) {
    const SettingsFixture store;
    const ToolRun run = RunQmv40({"settings", "show"});
    EXPECT_THAT(run.out, HasSubstr("missing, so the built-in values count"));
}

TEST(SettingsValidate, FindsNothingWrongWithTheShippedSettings) {
    const std::string settings = ScenariosFolder() + "/settings-override/settings.reg";
    const ToolRun run = RunQmv40({"settings", "validate", settings});
    EXPECT_EQ(0, run.exitCode) << run.out;
    EXPECT_THAT(run.out, HasSubstr("Nothing is wrong with it."));
    const Json document = RunQmv40({"settings", "validate", settings, "--json"}).Document();
    EXPECT_EQ(Json::array(), document["findings"]);
    EXPECT_EQ(131.5, SettingOf(document, "UnLocked To locked Lever Rotation")["inForce"]);
}

TEST(SettingsValidate, EndsWithFourWhenTheComponentWouldNotReadAValue) {
    const TemporaryFolder folder;
    const std::string file =
        folder.Write("settings.reg", std::string(registryHeader) + "\"Head Centre To Drive Cup Y Offset\"=\"25\"\r\n");
    const ToolRun run = RunQmv40({"settings", "validate", file});
    EXPECT_EQ(4, run.exitCode);
    EXPECT_THAT(run.out,
                HasSubstr("  line 4: fault: setting-not-read\n    \"Head Centre To Drive Cup Y Offset\" is not"));
    EXPECT_THAT(run.out, HasSubstr("-> Set X, Y and Z of the offset to texts of one length: \"-6.95\", \"25.00\", "
                                   "\"-11.5\"."));
    const ToolRun document = RunQmv40({"settings", "validate", file, "--json"});
    EXPECT_EQ(4, document.exitCode);
    EXPECT_EQ(4, document.Document()["findings"][0]["line"]);
}

TEST(SettingsValidate, RefusesAMissingFile) {
    const TemporaryFolder folder;
    const ToolRun run = RunQmv40({"settings", "validate", folder.Name("missing.reg"), "--json"});
    EXPECT_EQ(3, run.exitCode);
    EXPECT_EQ("no such file", run.Document()["error"]["description"])
        << "commands of two words print their failures as documents too";
}

TEST(SettingsWrite, WritesXYAndZOfAnOffsetInTextsOfOneLength) {
    const ToolRun run = RunQmv40(
        {"settings", "write", "--set", "lever-centre-x=31", "--set", "unlocked to locked lever rotation=137.5"});
    EXPECT_EQ(0, run.exitCode) << run.err;
    EXPECT_EQ(std::string(registryHeader) + "\"Head Centre To Lever Centre X Offset\"=\"31.000\"\r\n"
                                            "\"Head Centre To Lever Centre Y Offset\"=\"0.0000\"\r\n"
                                            "\"Head Centre To Lever Centre Z Offset\"=\"-32.25\"\r\n"
                                            "\"UnLocked To locked Lever Rotation\"=\"137.5\"\r\n",
              run.out);
}

TEST(SettingsWrite, ReplacesTheWholeFileAndSaysHowToInstallIt) {
    const TemporaryFolder folder;
    const std::string file =
        folder.Write("head settings.reg",
                     RunQmv40({"settings", "write", "--set", "unlocked-z=-2", "--set", "drive-cup-z=-12.00000"}).out);
    const ToolRun run = RunQmv40({"settings", "write", "--set", "drive-cup-z=-11.4", "--output", file});
    EXPECT_EQ(0, run.exitCode);
    EXPECT_EQ("", run.out);
    EXPECT_THAT(run.err, HasSubstr("The settings were written to " + file + "\nTo put it in place"));
    EXPECT_EQ(RunQmv40({"settings", "write", "--set", "drive-cup-z=-11.4"}).out, ReadFile(file));
    EXPECT_EQ(0, RunQmv40({"settings", "validate", file}).exitCode);
    std::size_t files = 0;
    for ([[maybe_unused]] const auto& each : std::filesystem::directory_iterator(folder.Path())) ++files;
    EXPECT_EQ(1u, files) << "no temporary file is left";
}

TEST(SettingsWrite, KeepsTheOtherDimensionsOfItsBase) {
    const TemporaryFolder folder;
    const std::string base = folder.Name("base.reg");
    RunQmv40({"settings", "write", "--set", "drive-cup-x=-7", "--set", "locking-rotation=137", "--output", base});
    const ToolRun run = RunQmv40({"settings", "write", "--base", base, "--set", "locking-rotation=139.5", "--json"});
    EXPECT_EQ(0, run.exitCode) << run.err;
    const Json document = run.Document();
    EXPECT_EQ(-7.0, SettingOf(document, "Head Centre To Drive Cup X Offset")["inForce"]);
    EXPECT_EQ(139.5, SettingOf(document, "UnLocked To locked Lever Rotation")["inForce"]);
    EXPECT_EQ(nullptr, SettingOf(document, "Locked To Unlocked Z Offset")["stored"]);
    EXPECT_EQ(nullptr, document["file"]);
    EXPECT_THAT(document["content"].get<std::string>(), testing::StartsWith(registryHeader));
}

TEST(SettingsWrite, OmitsValuesOfItsBaseThatAreNotRead) {
    const TemporaryFolder folder;
    const std::string base =
        folder.Write("base.reg", std::string(registryHeader) + "\"Locked To Unlocked Z Offset\"=\"-2\"\r\n");
    const ToolRun run = RunQmv40({"settings", "write", "--base", base, "--set", "locking-rotation=139.5"});
    EXPECT_EQ(0, run.exitCode);
    EXPECT_THAT(run.err, HasSubstr("\"Locked To Unlocked Z Offset\" is not read"));
    EXPECT_THAT(run.out, Not(HasSubstr("Locked To Unlocked Z Offset")));
}

TEST(SettingsWrite, RefusesUnknownNamesAndWrongNumbers) {
    const struct {
        std::vector<std::string> arguments;
        const char* message;
        const char* why;
    } cases[] = {
        {{"--set", "lever-center-x=31"}, "`qmv40 settings write --help` lists them", "a short name misspelt"},
        {{"--set", "Locked To Unlocked Lever Rotations=1"},
         "`qmv40 settings write --help` lists them",
         "a long name misspelt"},
        {{"--set", "colour=7"},
         "`qmv40 settings write --help` lists them",
         "a name without resemblance to any setting"},
        {{"--set", "drive-cup-x"}, "is not a name and a number such as", "a name without a value"},
        {{"--set", "drive-cup-x="}, "'' is empty", "an empty number"},
        {{"--set", "drive-cup-x=abc"}, "'abc' is not a number", "a word"},
        {{"--set", "drive-cup-x=7mm"}, "'7mm' goes on after the number", "a unit"},
        {{"--set", "drive-cup-x=-6,95"}, "the decimal mark is a point", "a decimal comma"},
        {{"--set", "drive-cup-x=inf"}, "is not a finite number", "infinity"},
        {{"--set", "drive-cup-x=nan"}, "is not a finite number", "not a number"},
        {{"--set", "drive-cup-x=1e999"}, "is too large or too small", "beyond a double"},
        {{"--set", "drive-cup-x=1e-300"}, "more than 254 letters", "a text longer than the component reads"},
        {{"--set", "drive-cup-x=1", "--set", "Head Centre To Drive Cup X Offset=2"},
         "is given twice",
         "one setting twice"},
        {{}, "--set is required", "nothing to write"},
    };
    const TemporaryFolder folder;
    const std::string output = folder.Name("settings.reg");
    for (const auto& each : cases) {
        std::vector<std::string> arguments{"settings", "write", "--output", output};
        arguments.insert(arguments.end(), each.arguments.begin(), each.arguments.end());
        const ToolRun run = RunQmv40(arguments);
        EXPECT_EQ(2, run.exitCode) << each.why;
        EXPECT_EQ("", run.out) << each.why;
        EXPECT_THAT(run.err, HasSubstr(each.message)) << each.why;
    }
    EXPECT_TRUE(folder.IsEmpty()) << "nothing was written";
}

TEST(SettingsWrite, FailsWhenTheFileCannotBeWritten) {
    const TemporaryFolder folder;
    const std::string missing = folder.Name("missing/settings.reg");
    EXPECT_EQ(3, RunQmv40({"settings", "write", "--set", "drive-cup-x=-7", "--output", missing}).exitCode);
    EXPECT_EQ(3, RunQmv40({"settings", "write", "--set", "drive-cup-x=-7", "--output", folder.Name(".")}).exitCode);
    EXPECT_TRUE(folder.IsEmpty());
}

} // namespace
