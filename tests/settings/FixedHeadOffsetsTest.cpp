#include "settings/FixedHeadOffsets.h"
#include "platform/SettingsStore.h"
#include "settings/HeadSettings.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

using namespace qmv40;

/// The rules of the readers. This program replaces the settings store by its own, which records every query.

namespace {

struct StoredValue {
    DWORD type;
    std::string bytes; ///< as stored: with a terminator only if it is written here
};

struct Question {
    std::string name;
    std::size_t capacity;
    bool operator==(const Question&) const = default;
};

struct Store {
    bool hasKey = true;
    std::map<std::string, StoredValue> values;
    std::vector<std::string> opened;
    std::vector<Question> asked;
    int openNow = 0;
} store;

} // namespace

struct SettingsKey::State {};

SettingsKey::SettingsKey(const char* path) {
    store.opened.push_back(path);
    ++store.openNow;
}
SettingsKey::~SettingsKey() { --store.openNow; }
bool SettingsKey::IsOpen() const noexcept { return store.hasKey; }

LSTATUS SettingsKey::Query(const char* name, std::span<char> buffer, DWORD& type, DWORD& length) const {
    store.asked.push_back({name, buffer.size()});
    const auto found = store.values.find(name);
    if (!store.hasKey || found == store.values.end()) return ERROR_FILE_NOT_FOUND;
    type = found->second.type;
    length = static_cast<DWORD>(found->second.bytes.size());
    if (length > buffer.size()) return ERROR_MORE_DATA;
    if (length != 0) std::memcpy(buffer.data(), found->second.bytes.data(), length);
    return ERROR_SUCCESS;
}

namespace {

/// One call of a reader of three values: their names in the order of reading, their built-in values, and the signs with
/// which stored values are multiplied.
struct Group {
    const char* what;
    std::function<FixedOffset()> read;
    const char* names[3];
    double defaults[3];
    double sign[3];
};

const std::vector<Group>& Groups() {
    static const char* const cup[] = {"Head Centre To Drive Cup X Offset", "Head Centre To Drive Cup Y Offset",
                                      "Head Centre To Drive Cup Z Offset"};
    static const char* const lever[] = {"Head Centre To Lever Centre X Offset", "Head Centre To Lever Centre Y Offset",
                                        "Head Centre To Lever Centre Z Offset"};
    static const char* const ball[] = {"Lever Centre To Ball Centre X Offset", "Lever Centre To Ball Centre Y Offset",
                                       "Lever Centre To Ball Centre Z Offset"};
    static const char* const shift[] = {"Locked To Unlocked X Offset", "Locked To Unlocked Y Offset",
                                        "Locked To Unlocked Z Offset"};
    const auto group = [](const char* what, HeadOffset offset, int selector, const char* const(&names)[3],
                          FixedOffset defaults, FixedOffset sign) {
        return Group{what,
                     [=] { return ReadFixedOffset(offset, selector); },
                     {names[0], names[1], names[2]},
                     {defaults.x, defaults.y, defaults.z},
                     {sign.x, sign.y, sign.z}};
    };
    static const std::vector<Group> groups{
        group("drive cup", HeadOffset::HeadCentreToDriveCup, 0, cup, {-6.95, 24.0, -11.5}, {1, 1, 1}),
        group("lever centre, positive side", HeadOffset::HeadCentreToLeverCentre, 0, lever, {30.3, 0.0, -32.25},
              {1, 1, 1}),
        group("lever centre, negative side", HeadOffset::HeadCentreToLeverCentre, 1, lever, {-30.3, 0.0, -32.25},
              {-1, 1, 1}),
        group("lever centre, side 5", HeadOffset::HeadCentreToLeverCentre, 5, lever, {-30.3, 0.0, -32.25}, {-1, 1, 1}),
        group("lever centre, side -1", HeadOffset::HeadCentreToLeverCentre, -1, lever, {-30.3, 0.0, -32.25},
              {-1, 1, 1}),
        group("ball, locked", HeadOffset::LeverCentreToBallCentre, 0, ball, {0.0, -19.3, -4.3}, {1, 1, 1}),
        group("ball, unlocked", HeadOffset::LeverCentreToBallCentre, 1, ball, {0.0, 19.3, -4.3}, {1, -1, 1}),
        group("ball, state 7", HeadOffset::LeverCentreToBallCentre, 7, ball, {0.0, 19.3, -4.3}, {1, -1, 1}),
        group("shift", HeadOffset::LockedToUnlocked, 0, shift, {0.0, 0.0, -1.5}, {1, 1, 1}),
    };
    return groups;
}

StoredValue Text(const std::string& text) { return {REG_SZ, text + '\0'}; }

struct Case {
    const char* why;
    std::optional<StoredValue> stored[3];
    std::optional<double> read[3]; ///< none: the built-in value
};

constexpr std::nullopt_t none = std::nullopt;

const std::vector<Case>& Cases() {
    static const StoredValue expanding{REG_EXPAND_SZ, std::string("-3.5\0", 5)};
    static const StoredValue unterminated{REG_SZ, "12.5"};
    static const StoredValue number{REG_DWORD, std::string("1\0\0\0", 4)};
    static const StoredValue binary{REG_BINARY, std::string("9\0", 2)};
    static const StoredValue zeroBytes{REG_SZ, ""};
    static const StoredValue spacious{REG_SZ, std::string("8\0\0\0\0\0\0\0", 8)};
    static const std::string longest(254, '0');
    static const std::vector<Case> cases{
        {"nothing stored", {none, none, none}, {none, none, none}},
        {"three texts of equal length", {Text("1.5"), Text("2.5"), Text("3.5")}, {1.5, 2.5, 3.5}},
        {"each text shorter than the one before", {Text("1.25"), Text("2.5"), Text("3")}, {1.25, 2.5, 3.0}},
        {"only Z stored: X fails, the capacity drops to 0 and stays there",
         {none, none, Text("-2")},
         {none, none, none}},
        {"only Y stored", {none, Text("7"), none}, {none, none, none}},
        {"Y and Z stored without X", {none, Text("7"), Text("8")}, {none, none, none}},
        {"only X stored", {Text("7"), none, none}, {7.0, none, none}},
        {"X and Z stored: Y fails, so Z is not read", {Text("7"), none, Text("8")}, {7.0, none, none}},
        {"Y takes 5 bytes and X took 2", {Text("1"), Text("12.5"), Text("3")}, {1.0, none, none}},
        {"Y takes one byte more than X did", {Text("1.5"), Text("2.25"), Text("3")}, {1.5, none, none}},
        {"Z takes one byte more than Y did, though less than X",
         {Text("1.125"), Text("2"), Text("33")},
         {1.125, 2.0, none}},
        {"blanks in X make the buffer for Y larger", {Text("1    "), Text("12.5"), Text("3")}, {1.0, 12.5, 3.0}},
        {"bytes behind the terminator make the buffer larger too",
         {spacious, Text("12.5"), Text("3")},
         {8.0, 12.5, 3.0}},
        {"text of 254 characters fills the buffer of 255 bytes",
         {Text(longest), Text("12.5"), Text("3")},
         {0.0, 12.5, 3.0}},
        {"text of 255 characters does not fit", {Text(longest + '5'), Text("2"), Text("3")}, {none, none, none}},
        {"an expanding text counts as text", {expanding, Text("4.25"), none}, {-3.5, 4.25, none}},
        {"REG_DWORD is no text", {number, Text("2"), Text("3")}, {none, none, none}},
        {"REG_BINARY is no text", {Text("1.5"), binary, Text("3")}, {1.5, none, none}},
        {"text without a terminator is not read", {unterminated, Text("2"), Text("3")}, {none, none, none}},
        {"text without a terminator in Y", {Text("123456"), unterminated, Text("3")}, {123456.0, none, none}},
        {"an empty text is 0.0, and then the buffer holds empty texts only",
         {Text(""), Text(""), Text("3")},
         {0.0, 0.0, none}},
        {"a value of no bytes is an empty text, and then the buffer is empty",
         {zeroBytes, Text("2"), Text("3")},
         {0.0, none, none}},
        {"values of no bytes fit into an empty buffer", {zeroBytes, zeroBytes, zeroBytes}, {0.0, 0.0, 0.0}},
        {"after a missing value nothing is read, not even a value of no bytes",
         {none, zeroBytes, zeroBytes},
         {none, none, none}},
        {"after a value that is too long nothing is read", {Text("1"), Text("12.5"), zeroBytes}, {1.0, none, none}},
        {"after a value of another type nothing is read", {Text("1"), binary, zeroBytes}, {1.0, none, none}},
        {"after a text without a terminator nothing is read",
         {Text("123456"), unterminated, zeroBytes},
         {123456.0, none, none}},
        {"a word is 0.0 and not the built-in value, as required",
         {Text("abc"), Text("x"), Text("mm")},
         {0.0, 0.0, none}},
        {"conversion stops where the number ends", {Text("7mm"), Text("8 9"), Text("1,5")}, {7.0, 8.0, 1.0}},
        {"leading blanks are skipped", {Text("   4.5"), Text("\t-6"), Text(" +7")}, {4.5, -6.0, 7.0}},
        {"exponents", {Text("-2.4826e+01"), Text("6.0000e+00"), Text("1E-3")}, {-24.826, 6.0, 0.001}},
    };
    return cases;
}

void Store3(const Group& group, const Case& testCase) {
    store = Store{};
    for (int i = 0; i < 3; ++i)
        if (testCase.stored[i]) store.values.emplace(group.names[i], *testCase.stored[i]);
}

double Expected(const Group& group, const Case& testCase, int i) {
    return testCase.read[i] ? group.sign[i] * *testCase.read[i] : group.defaults[i];
}

/// The value of the table of all settings.
double ValueInForce(const std::string& name) {
    const auto table = qmv40::HeadSettings();
    const auto row = std::ranges::find(table, name, [](const auto& setting) { return setting.name; });
    return qmv40::ReadHeadSettings()[static_cast<std::size_t>(row - table.begin())].value;
}

TEST(FixedHeadOffsets, AreReadWithABufferThatNeverGrows) {
    for (const Group& group : Groups()) {
        for (const Case& testCase : Cases()) {
            SCOPED_TRACE(std::string(group.what) + ": " + testCase.why);
            Store3(group, testCase);
            const FixedOffset read = group.read();
            EXPECT_EQ(read.x, Expected(group, testCase, 0));
            EXPECT_EQ(read.y, Expected(group, testCase, 1));
            EXPECT_EQ(read.z, Expected(group, testCase, 2));
            if (group.sign[0] < 0 || group.sign[1] < 0) continue; // the table has the figures of selector 0
            for (int i = 0; i < 3; ++i) EXPECT_EQ(ValueInForce(group.names[i]), Expected(group, testCase, i));
            EXPECT_EQ(store.openNow, 0);
        }
    }
}

TEST(FixedHeadOffsets, OpenTheKeyOnceForEachOffsetAndCloseIt) {
    for (const Group& group : Groups()) {
        SCOPED_TRACE(group.what);
        Store3(group, Cases().front());
        group.read();
        EXPECT_EQ(store.opened, std::vector<std::string>{"Software\\Hollbeck\\VRX Software\\QMV40Calculator"});
        EXPECT_EQ(store.openNow, 0);
    }
}

TEST(FixedHeadOffsets, QueryWithTheLengthOfTheTextBefore) {
    for (const Group& group : Groups()) {
        SCOPED_TRACE(group.what);
        Store3(group, {"", {Text("1.25"), Text("2.5"), Text("3")}, {}});
        group.read();
        EXPECT_EQ(store.asked,
                  (std::vector<Question>{{group.names[0], 255}, {group.names[1], 5}, {group.names[2], 4}}));
    }
}

TEST(FixedHeadOffsets, BeginEachOffsetWithTheWholeBuffer) {
    const Group& group = Groups().front();
    Store3(group, {"", {Text("1.25"), Text("2"), Text("3")}, {}});
    group.read();
    EXPECT_EQ(group.read().x, 1.25) << "one call must not affect the buffer of the next";
    ASSERT_EQ(store.asked.size(), 6U);
    EXPECT_EQ(store.asked[3].capacity, 255U);
}

TEST(FixedHeadOffsets, AreBuiltInWithoutAKey) {
    for (const Group& group : Groups()) {
        SCOPED_TRACE(group.what);
        Store3(group, {"", {Text("1"), Text("2"), Text("3")}, {}});
        store.hasKey = false;
        const FixedOffset read = group.read();
        EXPECT_EQ(read.x, group.defaults[0]);
        EXPECT_EQ(read.y, group.defaults[1]);
        EXPECT_EQ(read.z, group.defaults[2]);
        EXPECT_EQ(store.openNow, 0);
    }
}

struct Rotation {
    const char* name;
    double (*read)();
    double defaultValue;
};

constexpr Rotation rotations[] = {
    {"Locked To Unlocked Lever Rotation", [] { return ReadFixedRotation(HeadOffset::UnlockingRotation); }, 135.0},
    // The capitals of this name are required. They differ from those of the name before.
    {"UnLocked To locked Lever Rotation", [] { return ReadFixedRotation(HeadOffset::LockingRotation); }, 138.0},
};

TEST(LeverRotations, AreReadSeparatelyWithTheWholeBuffer) {
    for (const Rotation& rotation : rotations) {
        SCOPED_TRACE(rotation.name);
        store = Store{};
        store.values.emplace(rotation.name, Text("120.5"));
        EXPECT_EQ(rotation.read(), 120.5);
        store.values[rotation.name] = {REG_SZ, "120.5"}; // without its terminator
        EXPECT_EQ(rotation.read(), rotation.defaultValue);
        EXPECT_EQ(store.asked, (std::vector<Question>(2, {rotation.name, 255})));
        EXPECT_EQ(store.openNow, 0);
    }
}

/// The reasons for the values of the locked-to-unlocked offset.
std::vector<qmv40::SettingSource> SourcesOfTheShift() {
    std::vector<qmv40::SettingSource> sources;
    const auto readings = qmv40::ReadHeadSettings();
    for (std::size_t i = 0; i < readings.size(); ++i)
        if (qmv40::HeadSettings()[i].offset == qmv40::HeadOffset::LockedToUnlocked)
            sources.push_back(readings[i].source);
    return sources;
}

TEST(HeadSettings, TellTheReasonForABuiltInValue) {
    using enum qmv40::SettingSource;
    const Group& shift = Groups().back();
    const struct {
        Case stored;
        std::vector<qmv40::SettingSource> sources;
    } cases[] = {
        {{"all read", {Text("1"), Text("2"), Text("3")}, {}}, {Stored, Stored, Stored}},
        {{"X missing", {none, Text("2"), Text("3")}, {}}, {Missing, EarlierUnreadable, EarlierUnreadable}},
        {{"Y too long", {Text("1"), Text("12.5"), none}, {}}, {Stored, TooLong, EarlierUnreadable}},
        {{"Z of another type", {Text("12"), Text("2"), StoredValue{REG_BINARY, "3"}}, {}}, {Stored, Stored, WrongType}},
        {{"Z without its end", {Text("12"), Text("2"), StoredValue{REG_SZ, "3"}}, {}}, {Stored, Stored, NotTerminated}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.stored.why);
        Store3(shift, c.stored);
        EXPECT_EQ(SourcesOfTheShift(), c.sources);
    }
    store.hasKey = false;
    EXPECT_EQ(SourcesOfTheShift(), (std::vector{NoKey, NoKey, NoKey}));
}

} // namespace
