#include "settings/FixedHeadOffsets.h"
#include "tests/support/SettingsFixture.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

using namespace qmv40;

/// The readers with the platform's own settings store.

namespace {

void ExpectOffset(const FixedOffset& actual, const FixedOffset& expected) {
    EXPECT_EQ(actual.x, expected.x);
    EXPECT_EQ(actual.y, expected.y);
    EXPECT_EQ(actual.z, expected.z);
}

void ExpectDefaults() {
    ExpectOffset(ReadFixedOffset(HeadOffset::HeadCentreToDriveCup), {-6.95, 24.0, -11.5});
    ExpectOffset(ReadFixedOffset(HeadOffset::HeadCentreToLeverCentre, 0), {30.3, 0.0, -32.25});
    ExpectOffset(ReadFixedOffset(HeadOffset::HeadCentreToLeverCentre, 1), {-30.3, 0.0, -32.25});
    ExpectOffset(ReadFixedOffset(HeadOffset::LeverCentreToBallCentre, 0), {0.0, -19.3, -4.3});
    ExpectOffset(ReadFixedOffset(HeadOffset::LeverCentreToBallCentre, 1), {0.0, 19.3, -4.3});
    ExpectOffset(ReadFixedOffset(HeadOffset::LockedToUnlocked), {0.0, 0.0, -1.5});
    EXPECT_EQ(ReadFixedRotation(HeadOffset::UnlockingRotation), 135.0);
    EXPECT_EQ(ReadFixedRotation(HeadOffset::LockingRotation), 138.0);
}

std::vector<unsigned char> Bytes(const std::string& text) { return {text.begin(), text.end()}; }

// The types of stored values, as the registry numbers them.
constexpr unsigned long text = 1;
constexpr unsigned long expandableText = 2;
constexpr unsigned long bytes = 3;
constexpr unsigned long number = 4;

class SettingsStore : public testing::Test {
protected:
    SettingsFixture settings;
};

TEST_F(SettingsStore, WithoutTheKeyGivesAllBuiltInValues) { ExpectDefaults(); }

TEST_F(SettingsStore, WithAnEmptyKeyGivesAllBuiltInValues) {
    settings.CreateEmptyKey();
    ExpectDefaults();
}

TEST_F(SettingsStore, OverridesEachOfTheFourteenByItsName) {
    const std::pair<const char*, const char*> values[] = {
        {"Head Centre To Drive Cup X Offset", "1.01"},    {"Head Centre To Drive Cup Y Offset", "2.02"},
        {"Head Centre To Drive Cup Z Offset", "3.03"},    {"Head Centre To Lever Centre X Offset", "4.04"},
        {"Head Centre To Lever Centre Y Offset", "5.05"}, {"Head Centre To Lever Centre Z Offset", "6.06"},
        {"Lever Centre To Ball Centre X Offset", "7.07"}, {"Lever Centre To Ball Centre Y Offset", "8.08"},
        {"Lever Centre To Ball Centre Z Offset", "9.09"}, {"Locked To Unlocked X Offset", "10.1"},
        {"Locked To Unlocked Y Offset", "11.1"},          {"Locked To Unlocked Z Offset", "12.1"},
        {"Locked To Unlocked Lever Rotation", "13.1"},    {"UnLocked To locked Lever Rotation", "14.1"}};
    for (const auto& [name, value] : values) settings.SetText(name, value);
    ExpectOffset(ReadFixedOffset(HeadOffset::HeadCentreToDriveCup), {1.01, 2.02, 3.03});
    ExpectOffset(ReadFixedOffset(HeadOffset::HeadCentreToLeverCentre, 0), {4.04, 5.05, 6.06});
    ExpectOffset(ReadFixedOffset(HeadOffset::HeadCentreToLeverCentre, 1), {-4.04, 5.05, 6.06});
    ExpectOffset(ReadFixedOffset(HeadOffset::LeverCentreToBallCentre, 0), {7.07, 8.08, 9.09});
    ExpectOffset(ReadFixedOffset(HeadOffset::LeverCentreToBallCentre, 1), {7.07, -8.08, 9.09});
    ExpectOffset(ReadFixedOffset(HeadOffset::LockedToUnlocked), {10.1, 11.1, 12.1});
    EXPECT_EQ(ReadFixedRotation(HeadOffset::UnlockingRotation), 13.1);
    EXPECT_EQ(ReadFixedRotation(HeadOffset::LockingRotation), 14.1);
}

TEST_F(SettingsStore, IsReadAgainOnEveryUse) {
    EXPECT_EQ(ReadFixedRotation(HeadOffset::UnlockingRotation), 135.0);
    settings.SetText("Locked To Unlocked Lever Rotation", "120");
    EXPECT_EQ(ReadFixedRotation(HeadOffset::UnlockingRotation), 120.0);
    settings.SetText("Locked To Unlocked Lever Rotation", "121");
    EXPECT_EQ(ReadFixedRotation(HeadOffset::UnlockingRotation), 121.0);
    settings.RemoveKey();
    EXPECT_EQ(ReadFixedRotation(HeadOffset::UnlockingRotation), 135.0);
}

TEST_F(SettingsStore, IgnoresTheLetterCaseOfNames) {
    settings.SetText("UNLOCKED TO LOCKED LEVER ROTATION", "7");
    settings.SetText("locked to unlocked lever rotation", "8");
    EXPECT_EQ(ReadFixedRotation(HeadOffset::LockingRotation), 7.0);
    EXPECT_EQ(ReadFixedRotation(HeadOffset::UnlockingRotation), 8.0);
}

// The buffer of an offset never grows: required, see HeadSettings.h.
TEST_F(SettingsStore, WithOnlyZOfAnOffsetGivesItsBuiltInZ) {
    settings.SetText("Locked To Unlocked Z Offset", "-2");
    ExpectOffset(ReadFixedOffset(HeadOffset::LockedToUnlocked), {0.0, 0.0, -1.5});
}

TEST_F(SettingsStore, WithALongerTextForYThanForXGivesTheBuiltInY) {
    settings.SetText("Head Centre To Drive Cup X Offset", "1");
    settings.SetText("Head Centre To Drive Cup Y Offset", "12.5");
    settings.SetText("Head Centre To Drive Cup Z Offset", "3");
    ExpectOffset(ReadFixedOffset(HeadOffset::HeadCentreToDriveCup), {1.0, 24.0, -11.5});
}

TEST_F(SettingsStore, ReadsTextsByTheirBeginningAndIgnoresOtherTypes) {
    const std::string longest(254, '1');
    const struct {
        const char* why;
        unsigned long type;
        std::vector<unsigned char> stored;
        double read;
    } cases[] = {
        {"a word is zero", text, Bytes(std::string("abc\0", 4)), 0.0},
        {"a sign alone is zero", text, Bytes(std::string("-\0", 2)), 0.0},
        {"up to the unit", text, Bytes(std::string("7mm\0", 4)), 7.0},
        {"an empty text is zero", text, Bytes(std::string("\0", 1)), 0.0},
        {"expandable text is read without expansion", expandableText, Bytes(std::string("-3.5\0", 5)), -3.5},
        {"so the name of a variable is a word", expandableText, Bytes(std::string("%TEMP%\0", 7)), 0.0},
        {"a number is ignored", number, {7, 0, 0, 0}, 135.0},
        {"bytes are ignored, though they hold a text", bytes, Bytes(std::string("7\0", 2)), 135.0},
        {"too long", text, Bytes(longest + std::string("1\0", 2)), 135.0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.why);
        settings.RemoveKey();
        settings.SetRaw("Locked To Unlocked Lever Rotation", c.type, c.stored);
        EXPECT_EQ(ReadFixedRotation(HeadOffset::UnlockingRotation), c.read);
        EXPECT_EQ(ReadFixedRotation(HeadOffset::LockingRotation), 138.0) << "each rotation is read by its own name";
    }
}

TEST_F(SettingsStore, ReadsATextThatFillsTheBufferToItsLastByte) {
    settings.SetText("Locked To Unlocked Lever Rotation", (std::string(250, '0') + "12.5").c_str());
    EXPECT_EQ(ReadFixedRotation(HeadOffset::UnlockingRotation), 12.5);
}

// If a text was stored without a terminator, two results are allowed: the store returns it without one, and the
// built-in value is used; or the store adds the terminator, and the text is used.
TEST_F(SettingsStore, ReadsATextWithoutATerminatorWholeOrNotAtAll) {
    settings.SetRaw("Locked To Unlocked Lever Rotation", text, Bytes("120.5"));
    const double read = ReadFixedRotation(HeadOffset::UnlockingRotation);
    EXPECT_TRUE(read == 120.5 || read == 135.0) << read;
}

} // namespace
