#include "tools/settings/MachineSettings.h"
#include "tests/tools/cli/ToolRun.h"

#include <bit>
#include <cstdint>
#include <cstdlib>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <random>

using namespace qmv40;

namespace {

using testing::HasSubstr;

/// Lets the component read its settings from a file while an object of this class exists.
class ChosenSettings {
public:
    explicit ChosenSettings(const std::string& file) { setenv("QMV40_SETTINGS", file.c_str(), 1); }
    ChosenSettings(const ChosenSettings&) = delete;
    ChosenSettings& operator=(const ChosenSettings&) = delete;
    ~ChosenSettings() { setenv("QMV40_SETTINGS", "/nonexistent/settings.reg", 1); }
};

TEST(Doctor, ReportsThatTheChosenSettingsFileIsMissing) {
    const TemporaryFolder folder;
    const ChosenSettings chosen(folder.Name("missing.reg"));
    const ToolRun run = RunQmv40({"doctor", "--json"});
    EXPECT_EQ(4, run.exitCode);
    EXPECT_EQ("missing", run.Document()["settings"]["state"]);
    EXPECT_THAT(run.out, HasSubstr("The file that QMV40_SETTINGS names is not there"));
}

TEST(Doctor, ReportsASettingsFileWithoutFormatOrKey) {
    const TemporaryFolder folder;
    const struct {
        std::string file;
        const char* state;
        const char* finding;
        const char* why;
    } cases[] = {
        {folder.Name("."), "unreadable", "is not an ordinary file", "a folder"},
        {folder.Write("empty.reg", ""), "there", "does not name the format", "an empty file"},
        {folder.Write("key.reg", "REGEDIT4\n[HKEY_LOCAL_MACHINE\\Software\\Other]\n"), "there", "The file has no key",
         "another key"},
    };
    for (const auto& each : cases) {
        const ChosenSettings chosen(each.file);
        const ToolRun run = RunQmv40({"doctor", "--json"});
        EXPECT_EQ(4, run.exitCode) << each.why;
        EXPECT_EQ(each.state, run.Document()["settings"]["state"]) << each.why;
        EXPECT_THAT(run.out, HasSubstr(each.finding)) << each.why;
    }
}

TEST(Doctor, ReadsTheSettingsFileOfTheOption) {
    const ToolRun run = RunQmv40({"doctor", "--settings", LoadScenario("settings-override").settings, "--json"});
    EXPECT_EQ(0, run.exitCode) << run.out;
    EXPECT_EQ(131.5, run.Document()["settings"]["values"][13]["inForce"]);
}

/// A random line of a settings file: a key, a comment or a value, valid or not.
std::string RandomLine(std::mt19937_64& random) {
    const auto pick = [&](const auto& choices) { return std::string(choices[random() % std::size(choices)]); };
    const char* const names[] = {"Head Centre To Drive Cup X Offset", "head centre to drive cup y offset",
                                 "Head Centre To Drive Cup Z Offset", "Locked To Unlocked Lever Rotation", "Other"};
    const char* const texts[] = {"\"7.5\"",
                                 "\"12\"",
                                 "\"1\\\"2\"",
                                 "\"a\\\\b\"",
                                 "\"unended",
                                 "-",
                                 "\"3\" ; words",
                                 "\"3\" words",
                                 "dword:00000005",
                                 "dword:xyz",
                                 "hex:31,00",
                                 "hex(1):37,00,2e,00,35,00,00,00",
                                 "hex(1):37,\\\n  00,00,00",
                                 "hex(2):38,00,00,00",
                                 "hex(2):38,00,00",
                                 "hex(7):38,00,00,00,00,00",
                                 "hex(1):31,00,zz",
                                 "hex(1):31,00,\\",
                                 "hex(1):",
                                 "hex(1):d8,3d,de,00,00,00",
                                 "9",
                                 ""};
    const char* const keys[] = {"[HKEY_LOCAL_MACHINE\\SOFTWARE\\Hollbeck\\VRX Software\\QMV40Calculator]",
                                "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Hollbeck\\VRX Software\\QMV40Calculator\\]",
                                "  [HKEY_LOCAL_MACHINE\\software\\hollbeck\\vrx software\\qmv40calculator\\Below]",
                                "[-HKEY_LOCAL_MACHINE\\SOFTWARE\\Hollbeck]",
                                "[HKEY_LOCAL_MACHINE\\Other]",
                                "[unended"};
    const char* const ends[] = {"\n", "\r\n", "\r"};
    switch (random() % 6) {
    case 0:
        return pick(keys) + pick(ends);
    case 1:
        return "; words" + pick(ends);
    default:
        return (random() % 8 == 0 ? " " : "") + ('"' + pick(names) + "\"" + (random() % 8 == 0 ? " = " : "=")) +
               pick(texts) + pick(ends);
    }
}

TEST(SettingsRules, ReadAnyFileAsTheComponentDoes) {
    constexpr std::uint64_t rounds = 800;
    const TemporaryFolder folder;
    for (std::uint64_t seed = 0; seed < rounds; ++seed) {
        SCOPED_TRACE(seed);
        std::mt19937_64 random(seed);
        std::string content = random() % 4 == 0 ? "REGEDIT4\n" : "Windows Registry Editor Version 5.00\r\n";
        content += "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Hollbeck\\VRX Software\\QMV40Calculator]\n";
        for (std::uint64_t lines = random() % 12; lines > 0; --lines) content += RandomLine(random);
        const ChosenSettings chosen(folder.Write("settings.reg", content));
        const settings::SettingsReading reading = settings::ReadSettings(settings::ReadMachineSettings().stored);
        const std::array<double, headSettingCount> inForce = settings::SettingsInForce();
        for (std::size_t i = 0; i < headSettingCount; ++i) {
            ASSERT_EQ(std::bit_cast<std::uint64_t>(inForce[i]), std::bit_cast<std::uint64_t>(reading.settings[i].value))
                << HeadSettings()[i].name << " in\n"
                << content;
        }
    }
}

} // namespace
