#include "tools/settings/SettingsReading.h"

#include "tests/support/SettingsFixture.h"
#include "tools/settings/MachineSettings.h"
#include "tools/settings/SettingsFile.h"

#include <bit>
#include <cstdint>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <random>

using namespace qmv40;

namespace {

using testing::HasSubstr;

constexpr const char* settingsHeader = "Windows Registry Editor Version 5.00\n\n"
                                       "[HKEY_LOCAL_MACHINE\\Software\\Hollbeck\\VRX Software\\QMV40Calculator]\n";

settings::SettingsReading ReadLines(const std::string& lines) {
    return settings::ReadSettings(settings::SettingsInFile(settingsHeader + lines));
}

std::string FindingsText(const settings::SettingsReading& reading) {
    std::string text;
    for (const text::Finding& each : reading.findings) {
        text += each.place + ": " + each.sentence + " -> " + each.remedy + "\n";
    }
    return text;
}

double Value(const settings::SettingsReading& reading, const char* name) {
    return reading.settings[settings::FindHeadSetting(name).value()].value;
}

TEST(SettingsRules, GiveTheBuiltInValuesWhenNothingIsStored) {
    const settings::SettingsReading reading = ReadLines("");
    for (std::size_t i = 0; i < headSettingCount; ++i) {
        EXPECT_EQ(HeadSettings()[i].builtIn, reading.settings[i].value) << HeadSettings()[i].name;
        EXPECT_FALSE(reading.settings[i].isStoredValue);
    }
    EXPECT_EQ("", FindingsText(reading));
}

TEST(SettingsRules, FindWhatIsIgnoredOrReadDifferently) {
    const struct {
        const char* lines;
        const char* setting;
        double value;
        const char* finding; ///< null: none
        const char* why;
    } cases[] = {
        {"\"Head Centre To Drive Cup X Offset\"=\"-7.0\"\n", "drive-cup-x", -7.0, nullptr, "X alone is read"},
        {"\"Head Centre To Drive Cup Y Offset\"=\"25.0\"\n", "drive-cup-y", 24.0,
         "'Head Centre To Drive Cup X Offset', which comes before it, is missing", "Y alone is not read"},
        {"\"Locked To Unlocked Z Offset\"=\"-2\"\n", "unlocked-z", -1.5, "is not read", "Z alone is not read"},
        {"\"Head Centre To Drive Cup X Offset\"=\"1\"\n\"Head Centre To Drive Cup Y Offset\"=\"12.5\"\n", "drive-cup-y",
         24.0, "line 5: \"Head Centre To Drive Cup Y Offset\" is not read, because '12.5' is longer than '1'",
         "a longer text after a shorter one"},
        {"\"Head Centre To Drive Cup X Offset\"=\"12.5\"\n\"Head Centre To Drive Cup Y Offset\"=\"7\"\n"
         "\"Head Centre To Drive Cup Z Offset\"=\"1.5\"\n",
         "drive-cup-z", -11.5, "'1.5' is longer than '7'", "each text may be at most as long as the one before"},
        {"\"Head Centre To Drive Cup X Offset\"=\"12.5\"\n\"Head Centre To Drive Cup Y Offset\"=\"7.00\"\n"
         "\"Head Centre To Drive Cup Z Offset\"=\"1.50\"\n",
         "drive-cup-z", 1.5, nullptr, "equally long texts are all read"},
        {"\"Head Centre To Drive Cup X Offset\"=\"\"\n", "drive-cup-x", 0.0, "'' reads as 0", "an empty text is 0"},
        {"\"UnLocked To locked Lever Rotation\"=\"abc\"\n", "locking-rotation", 0.0,
         "'abc' reads as 0: it does not begin with a number", "a word is 0, not the built-in value"},
        {"\"UnLocked To locked Lever Rotation\"=\"7mm\"\n", "locking-rotation", 7.0,
         "'7mm' reads as 7: what follows the number is ignored", "a unit"},
        {"\"UnLocked To locked Lever Rotation\"=\"137,5\"\n", "locking-rotation", 137.0,
         "'137,5' reads as 137: the decimal mark is a point", "a decimal comma"},
        {"\"UnLocked To locked Lever Rotation\"=\"1,375\"\n", "locking-rotation", 1.0, "Store the text \"1.375\"",
         "the remedy contains the number with a point"},
        {"\"UnLocked To locked Lever Rotation\"=\"inf\"\n", "locking-rotation", HUGE_VAL, "is no length or angle",
         "not finite"},
        {"\"UnLocked To locked Lever Rotation\"=\"1e400\"\n", "locking-rotation", HUGE_VAL, "is no length or angle",
         "too large to be finite"},
        {"\"UnLocked To locked Lever Rotation\"=\" 137.5 \"\n", "locking-rotation", 137.5, nullptr,
         "blanks around the number"},
        {"\"UnLocked To locked Lever Rotation\"=\"+137.5\"\n", "locking-rotation", 137.5, nullptr, "a plus sign"},
        {"\"UnLocked To locked Lever Rotation\"=\"1.375e2\"\n", "locking-rotation", 137.5, nullptr, "an exponent"},
        {"\"UnLocked To locked Lever Rotation\"=\"0x10\"\n", "locking-rotation", 16.0, "'0x10' reads as 16",
         "hexadecimal digits are read"},
        {"\"UnLocked To locked Lever Rotation\"=dword:00000089\n", "locking-rotation", 138.0,
         "is a number (dword), and only texts are read", "only texts are read: a dword"},
        {"\"UnLocked To locked Lever Rotation\"=hex:31,33,37,00\n", "locking-rotation", 138.0, "is bytes (hex)",
         "only texts are read: bytes"},
        {"\"UnLocked To locked Lever Rotation\"=hex(2):31,00,33,00,37,00,00,00\n", "locking-rotation", 137.0, nullptr,
         "an expandable text is read"},
        {"\"UnLocked To locked Lever Rotation\"=hex(1):31,00,33,00,37,00\n", "locking-rotation", 138.0,
         "is a text without an end", "no terminator"},
        {"\"unlocked to locked lever rotation\"=\"137.5\"\n", "locking-rotation", 137.5, nullptr,
         "letter case does not matter"},
        {"\"UnLocked To Locked Lever Rotations\"=\"137.5\"\n", "locking-rotation", 138.0,
         "Remove it, or give it the name of the setting that is meant.", "a name misspelt"},
        {"\"Lever Rotation\"=\"137.5\"\n", "locking-rotation", 138.0, "is no setting of the head and is ignored",
         "an unknown name"},
        {"\"drive-cup-x\"=\"-7.0\"\n", "drive-cup-x", -6.95, "Did you mean \"Head Centre To Drive Cup X Offset\"?",
         "a short name of the tool"},
        {"@=\"137.5\"\n", "locking-rotation", 138.0, "(the key's default value)", "the key's default value"},
        {"\"UnLocked To locked Lever Rotation\"=137.5\n", "locking-rotation", 138.0, "makes no sense here",
         "a number without quotes"},
        {"\"UnLocked To locked Lever Rotation\"=\"137\"\n\"UnLocked To locked Lever Rotation\"=\"139\"\n",
         "locking-rotation", 139.0, "line 4: \"UnLocked To locked Lever Rotation\" is given again in line 5",
         "the later of two counts"},
        {"\"UnLocked To locked Lever Rotation\"=\"137\"\n\"UnLocked To locked Lever Rotation\"=-\n", "locking-rotation",
         138.0, nullptr, "a removal"},
        {"; \"UnLocked To locked Lever Rotation\"=\"137\"\n", "locking-rotation", 138.0, nullptr, "a comment"},
        {"\"UnLocked To locked Lever Rotation\"=\"137\" ; measured\n", "locking-rotation", 137.0, nullptr,
         "a comment after a value"},
        {"[HKEY_CURRENT_USER\\Software\\Hollbeck\\VRX Software\\QMV40Calculator]\n"
         "\"UnLocked To locked Lever Rotation\"=\"137\"\n",
         "locking-rotation", 138.0, "and the component does not look there", "another root"},
        {"[HKEY_LOCAL_MACHINE\\Software\\WOW6432Node\\Hollbeck\\VRX Software\\QMV40Calculator]\n"
         "\"UnLocked To locked Lever Rotation\"=\"137\"\n",
         "locking-rotation", 138.0, "and the component does not look there", "the 32-bit view"},
        {"[HKEY_LOCAL_MACHINE\\Software\\Somebody]\n\"Colour\"=\"7\"\n\"Nonsense\n", "locking-rotation", 138.0, nullptr,
         "other keys are not examined"},
        {"\"UnLocked To locked Lever Rotation\"=\"137\"\n[-HKEY_LOCAL_MACHINE\\Software\\Hollbeck]\n",
         "locking-rotation", 138.0, "The file has no key", "removed with a key above it"},
    };
    for (const auto& each : cases) {
        const settings::SettingsReading reading = ReadLines(each.lines);
        EXPECT_EQ(each.value, Value(reading, each.setting)) << each.why;
        if (each.finding == nullptr) {
            EXPECT_EQ("", FindingsText(reading)) << each.why;
        } else {
            EXPECT_THAT(FindingsText(reading), HasSubstr(each.finding)) << each.why;
        }
    }
}

TEST(SettingsRules, IgnoreAFileThatDoesNotNameItsFormat) {
    const char* const key = "\n[HKEY_LOCAL_MACHINE\\Software\\Hollbeck\\VRX Software\\QMV40Calculator]\n"
                            "\"UnLocked To locked Lever Rotation\"=\"137\"\n";
    for (const char* first : {"", "Windows Registry Editor Version 4.00", "regedit4", ";comment\nREGEDIT4"}) {
        const settings::SettingsReading reading =
            settings::ReadSettings(settings::SettingsInFile(std::string(first) + key));
        EXPECT_EQ(138.0, Value(reading, "locking-rotation")) << first;
        EXPECT_THAT(FindingsText(reading), HasSubstr("does not name the format")) << first;
    }
    EXPECT_EQ(137.0, Value(settings::ReadSettings(settings::SettingsInFile(std::string("REGEDIT4") + key)),
                           "locking-rotation"));
}

TEST(SettingsRules, ReadAFileInEachEncoding) {
    const std::string text = std::string(settingsHeader) + "\"UnLocked To locked Lever Rotation\"=\"137\"\r\n";
    std::string little = "\xFF\xFE";
    std::string big = "\xFE\xFF";
    for (const char c : text) {
        little += {c, '\0'};
        big += {'\0', c};
    }
    for (const std::string& content : {text, "\xEF\xBB\xBF" + text, little, big}) {
        EXPECT_EQ(137.0, Value(settings::ReadSettings(settings::SettingsInFile(content)), "locking-rotation"));
    }
}

TEST(SettingsRules, ReadAllValuesOnceTheRemedyIsFollowed) {
    // Stores the three texts that the remedy gives.
    const settings::SettingsReading reading = ReadLines("\"Head Centre To Drive Cup X Offset\"=\"-7\"\n"
                                                        "\"Head Centre To Drive Cup Y Offset\"=\"24,25\"\n");
    EXPECT_THAT(FindingsText(reading), HasSubstr("\"-7.00\", \"24.25\", \"-11.5\""));
    const settings::SettingsReading mended = ReadLines("\"Head Centre To Drive Cup X Offset\"=\"-7.00\"\n"
                                                       "\"Head Centre To Drive Cup Y Offset\"=\"24.25\"\n"
                                                       "\"Head Centre To Drive Cup Z Offset\"=\"-11.5\"\n");
    EXPECT_EQ("", FindingsText(mended));
    EXPECT_EQ(24.25, Value(mended, "drive-cup-y"));
}

/// A random text, valid or not.
std::string RandomText(std::mt19937_64& random) {
    const char* const texts[] = {"1",   "-7.5", "31.00", "0.000", "-32.0", "abc", "",    "7mm",  "12,5", " 3",
                                 "1e2", "inf",  "0x1F",  "-.5",   "+4.",   "--1", "nan", "1.5 ", "99999"};
    return texts[random() % std::size(texts)];
}

void StoreSomething(const char* name, std::mt19937_64& random, SettingsFixture& store) {
    // REG_SZ, REG_EXPAND_SZ, REG_BINARY, REG_DWORD, REG_MULTI_SZ
    constexpr unsigned long types[] = {1, 2, 3, 4, 7};
    switch (random() % 8) {
    case 0:
        return; // nothing
    case 1: {
        const std::string text = RandomText(random);
        std::vector<unsigned char> bytes(text.begin(), text.end());
        if (random() % 4 != 0) bytes.push_back(0);
        return store.SetRaw(name, types[random() % std::size(types)], bytes);
    }
    case 2:
        return store.SetText(name, std::string(random() % 300, '1').c_str());
    default:
        return store.SetText(name, RandomText(random).c_str());
    }
}

TEST(SettingsRules, AreThoseOfTheComponent) {
    constexpr std::uint64_t rounds = 100;
    for (std::uint64_t seed = 0; seed < rounds; ++seed) {
        SCOPED_TRACE(seed);
        std::mt19937_64 random(seed);
        SettingsFixture store;
        for (const HeadSetting& setting : HeadSettings()) StoreSomething(setting.name, random, store);
        const settings::SettingsReading reading = settings::ReadSettings(settings::ReadMachineSettings().stored);
        const std::array<double, headSettingCount> inForce = settings::SettingsInForce();
        for (std::size_t i = 0; i < headSettingCount; ++i) {
            EXPECT_EQ(std::bit_cast<std::uint64_t>(inForce[i]), std::bit_cast<std::uint64_t>(reading.settings[i].value))
                << HeadSettings()[i].name << ": " << inForce[i] << " in force, " << reading.settings[i].value;
        }
        if (HasFailure()) return;
    }
}

TEST(SettingsFile, HasTextsThatAreReadBackToTheSameBits) {
    std::mt19937_64 random(1);
    std::uniform_real_distribution<double> digits(-1.0, 1.0);
    std::uniform_int_distribution<int> exponent(-12, 9);
    for (int round = 0; round < 1000; ++round) {
        std::array<std::optional<double>, headSettingCount> values;
        for (auto& value : values) {
            if (random() % 2 == 0) value = std::ldexp(digits(random), 3 * exponent(random));
        }
        const settings::SettingsReading reading =
            settings::ReadSettings(settings::SettingsInFile(settings::SettingsFileText(values)));
        EXPECT_EQ("", FindingsText(reading));
        for (std::size_t i = 0; i < headSettingCount; ++i) {
            EXPECT_EQ(values[i].value_or(HeadSettings()[i].builtIn), reading.settings[i].value);
        }
        if (HasFailure()) return;
    }
}

TEST(SettingsFile, OmitsOffsetsWithoutAGivenValue) {
    std::array<std::optional<double>, headSettingCount> values;
    values[settings::FindHeadSetting("unlocked-z").value()] = -1.62;
    EXPECT_EQ("Windows Registry Editor Version 5.00\r\n\r\n"
              "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Hollbeck\\VRX Software\\QMV40Calculator]\r\n"
              "\"Locked To Unlocked X Offset\"=\"0.000\"\r\n"
              "\"Locked To Unlocked Y Offset\"=\"0.000\"\r\n"
              "\"Locked To Unlocked Z Offset\"=\"-1.62\"\r\n",
              settings::SettingsFileText(values));
}

} // namespace
