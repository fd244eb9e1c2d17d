#include "persistence/HeadGeometryFile.h"
#include "head/RoundThePole.h"
#include "platform/SettingsStore.h"
#include "tests/support/Bstr.h"
#include "tests/support/Failures.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <map>
#include <string>
#include <vector>

using namespace qmv40;

/// The entries that a load reads and a save writes, their order, and the effects of a failing access. This program
/// replaces the profile file by its own, which records every access.

namespace {

using Entry = std::pair<std::string, std::string>; // section, key

struct Profile {
    std::map<Entry, std::string> texts;
    std::vector<Entry> read;
    std::vector<Entry> written;
    std::vector<std::wstring> opened; ///< the file name of each opening for reading or writing
    std::vector<std::string> defaults;
    std::vector<std::size_t> capacities;
    std::function<void(std::size_t)> beforeRead = [](std::size_t) {}; ///< may throw; the argument counts from 0
    std::function<bool(std::size_t)> write = [](std::size_t) { return true; }; ///< returns the success; may throw
} profile;

std::string Narrow(const wchar_t* ascii) {
    const std::wstring_view text(ascii);
    return {text.begin(), text.end()};
}

} // namespace

struct ProfileReader::State {};
ProfileReader::ProfileReader(const wchar_t* fileName) { profile.opened.emplace_back(fileName); }
ProfileReader::~ProfileReader() = default;

void ProfileReader::Read(const wchar_t* section, const wchar_t* key, const char* defaultText,
                         std::span<char> buffer) const {
    const Entry entry{Narrow(section), Narrow(key)};
    profile.read.push_back(entry);
    profile.defaults.emplace_back(defaultText);
    profile.capacities.push_back(buffer.size());
    profile.beforeRead(profile.read.size() - 1);
    const auto found = profile.texts.find(entry);
    const std::string text = found == profile.texts.end() ? defaultText : found->second;
    const std::size_t length = std::min(text.size(), buffer.size() - 1);
    std::copy_n(text.begin(), length, buffer.begin());
    buffer[length] = '\0';
}

void ProfileWriter::Set(const wchar_t* section, const wchar_t* key, std::string_view text) {
    entries.push_back({Narrow(section), Narrow(key), std::string(text)});
}

bool ProfileWriter::Commit() {
    profile.opened.push_back(file);
    for (const ProfileEntry& entry : entries) {
        profile.written.emplace_back(*entry.section, *entry.key);
        if (!profile.write(profile.written.size() - 1)) return false;
        profile.texts[profile.written.back()] = entry.text;
    }
    return true;
}

// No settings, so that every offset has its built-in value on every machine.
struct SettingsKey::State {};
SettingsKey::SettingsKey(const char*) {}
SettingsKey::~SettingsKey() = default;
bool SettingsKey::IsOpen() const noexcept { return false; }
LSTATUS SettingsKey::Query(const char*, std::span<char>, DWORD&, DWORD&) const { return ERROR_FILE_NOT_FOUND; }

namespace {

const std::vector<Entry> savedOrder{{"HEADCENTRE", "X"},
                                    {"HEADCENTRE", "Y"},
                                    {"HEADCENTRE", "Z"},
                                    {"SAFEPOSITION", "X"},
                                    {"SAFEPOSITION", "Y"},
                                    {"SAFEPOSITION", "Z"},
                                    {"AlignmentOffset", "RequiredRotationAroundZ"}};

/// The head centre is in it twice: a load reads it a second time and does not use it, as required.
const std::vector<Entry> loadedOrder{{"HEADCENTRE", "X"},   {"HEADCENTRE", "Y"},
                                     {"HEADCENTRE", "Z"},   {"HEADCENTRE", "X"},
                                     {"HEADCENTRE", "Y"},   {"HEADCENTRE", "Z"},
                                     {"SAFEPOSITION", "X"}, {"SAFEPOSITION", "Y"},
                                     {"SAFEPOSITION", "Z"}, {"AlignmentOffset", "RequiredRotationAroundZ"}};

std::vector<Entry> First(const std::vector<Entry>& all, std::size_t count) {
    return {all.begin(), all.begin() + static_cast<std::ptrdiff_t>(count)};
}

class HeadGeometryFile : public testing::Test {
protected:
    HeadGeometryFile() { profile = Profile{}; }

    /// Stores the seven texts in the order of `savedOrder`.
    static void Fill(const std::vector<std::string>& texts) {
        for (std::size_t i = 0; i < savedOrder.size(); ++i) profile.texts[savedOrder[i]] = texts.at(i);
    }
    static void FillWithNumbers() { Fill({"10", "20", "30", "4", "5", "6", "0"}); }

    Raised Load() {
        return RaisedBy([this] { head.LoadFromFile(name.Address()); });
    }
    Raised Save() {
        return RaisedBy([this] { head.SaveToFile(name.Address()); });
    }

    RoundThePole head;
    Bstr name{std::wstring(L"a head.ini")};
};

TEST_F(HeadGeometryFile, IsSavedInItsOrderIntoTheOneFile) {
    EXPECT_EQ(Save().code, S_OK);
    EXPECT_EQ(profile.written, savedOrder);
    EXPECT_EQ(profile.opened, std::vector<std::wstring>{L"a head.ini"}) << "all entries must be written together";
    EXPECT_TRUE(profile.read.empty());
}

TEST_F(HeadGeometryFile, HasOneTableOfItsEntries) {
    std::vector<Entry> table;
    for (const HeadGeometryEntry& entry : headGeometryEntries)
        table.emplace_back(Narrow(entry.section), Narrow(entry.key));
    EXPECT_EQ(table, savedOrder);
    EXPECT_EQ(table[headCentreEntry], (Entry{"HEADCENTRE", "X"}));
    EXPECT_EQ(table[safePositionEntry], (Entry{"SAFEPOSITION", "X"}));
    EXPECT_EQ(table[rotationEntry], (Entry{"AlignmentOffset", "RequiredRotationAroundZ"}));
}

TEST_F(HeadGeometryFile, ReturnsTheTextOfAnEntryOrNothing) {
    const ProfileReader file(L"a head.ini");
    const HeadGeometryEntry& entry = headGeometryEntries.front();
    EXPECT_EQ(ReadHeadGeometryText(file, entry), std::nullopt);
    for (const char* const text : {"1.5", "", "word", "999999999"}) {
        profile.texts[savedOrder.front()] = text;
        EXPECT_EQ(ReadHeadGeometryText(file, entry), text);
    }
}

TEST_F(HeadGeometryFile, ContainsZerosWithoutAGeometry) {
    Save();
    for (const Entry& entry : savedOrder) EXPECT_EQ(profile.texts[entry], "0.000000000e+00");
}

TEST_F(HeadGeometryFile, IsLoadedInItsOrderWithTheHeadCentreReadTwice) {
    FillWithNumbers();
    EXPECT_EQ(Load().code, S_OK);
    EXPECT_EQ(profile.read, loadedOrder);
    EXPECT_EQ(profile.opened, std::vector<std::wstring>{L"a head.ini"}) << "all entries must be read at one moment";
    EXPECT_TRUE(profile.written.empty());
}

TEST_F(HeadGeometryFile, IsReadWithADefaultAndABufferFor348Characters) {
    FillWithNumbers();
    Load();
    EXPECT_EQ(profile.defaults, std::vector<std::string>(10, "999999999"));
    EXPECT_EQ(profile.capacities, std::vector<std::size_t>(10, 349));
}

TEST_F(HeadGeometryFile, FillsTheGeometry) {
    Fill({"10.5", "-20.25", "30.125", "4.5", "-5.5", "123456", "0"});
    ASSERT_EQ(Load().code, S_OK);
    EXPECT_EQ(head.HeadCentre()[0], 10.5);
    EXPECT_EQ(head.HeadCentre()[1], -20.25);
    EXPECT_EQ(head.HeadCentre()[2], 30.125);
    EXPECT_EQ(head.SafePositionX(), 4.5);
    EXPECT_EQ(head.SafePositionY(), -5.5);
    EXPECT_EQ(head.RequiredRotationAroundZ(), 0.0);
}

// The saved Z of the safe position must be in the file and is never used, as required.
TEST_F(HeadGeometryFile, HasASafeZThatIsNotUsed) {
    Fill({"10", "20", "30.125", "4", "5", "-777", "0"});
    ASSERT_EQ(Load().code, S_OK);
    EXPECT_EQ(head.SafePositionZ(), 65.125);
    Save();
    EXPECT_EQ(profile.texts[savedOrder[5]], "6.512500000e+01");
}

TEST_F(HeadGeometryFile, EndsASaveAtTheFirstValueThatCannotBeWritten) {
    for (std::size_t failing = 0; failing < savedOrder.size(); ++failing) {
        SCOPED_TRACE(failing);
        profile = Profile{};
        profile.write = [failing](std::size_t i) { return i != failing; };
        ExpectFailure(Save(), failures::notWritten);
        EXPECT_EQ(profile.written, First(savedOrder, failing + 1));
        EXPECT_EQ(profile.texts.size(), failing) << "the entries before it must stay";
    }
}

TEST_F(HeadGeometryFile, EndsALoadAtTheFirstValueThatIsMissing) {
    for (std::size_t missing = 0; missing < savedOrder.size(); ++missing) {
        SCOPED_TRACE(missing);
        profile = Profile{};
        FillWithNumbers();
        profile.texts.erase(savedOrder[missing]);
        ExpectFailure(Load(), failures::notRead);
        const std::size_t lastRead = missing < 3 ? missing : missing + 3;
        EXPECT_EQ(profile.read, First(loadedOrder, lastRead + 1));
    }
}

TEST_F(HeadGeometryFile, KeepsTheValuesReadBeforeAFailure) {
    Fill({"1", "2", "3", "4", "5", "6", "0"});
    ASSERT_EQ(Load().code, S_OK);
    Fill({"10", "20", "30", "40", "50", "60", "90"});
    profile.texts.erase(savedOrder[2]);
    EXPECT_EQ(Load().code, QMV_E_READ_FROM_FILE);
    EXPECT_EQ(head.HeadCentre()[0], 10.0);
    EXPECT_EQ(head.HeadCentre()[1], 20.0);
    EXPECT_EQ(head.HeadCentre()[2], 3.0) << "the second load must end before this value";
    EXPECT_EQ(head.SafePositionX(), 4.0);
    EXPECT_EQ(head.RequiredRotationAroundZ(), 0.0);

    FillWithNumbers();
    profile.texts[savedOrder[3]] = "40";
    profile.texts.erase(savedOrder[4]);
    EXPECT_EQ(Load().code, QMV_E_READ_FROM_FILE);
    EXPECT_EQ(head.HeadCentre()[2], 30.0);
    EXPECT_EQ(head.SafePositionX(), 40.0);
    EXPECT_EQ(head.SafePositionY(), 5.0) << "the second load must end before this value";
    EXPECT_EQ(head.SafePositionZ(), 38.0) << "the second load must end before this step";
}

TEST_F(HeadGeometryFile, WithoutARotationReplacesTheOtherNumbers) {
    Fill({"1", "2", "3", "4", "5", "6", "90"});
    ASSERT_EQ(Load().code, S_OK);
    Fill({"10", "20", "30", "40", "50", "60", "90"});
    profile.texts.erase(savedOrder[6]);
    EXPECT_EQ(Load().code, QMV_E_READ_FROM_FILE);
    EXPECT_EQ(head.HeadCentre()[0], 10.0);
    EXPECT_EQ(head.SafePositionX(), 40.0);
    EXPECT_EQ(head.SafePositionZ(), 65.0);
    EXPECT_EQ(head.RequiredRotationAroundZ(), 90.0) << "the rotation of the first load must stay";
    // Levers, axes and drive cup are those of the ideal head, not turned.
    CMaVector lever(0.0, 0.0, 0.0);
    head.LeverCentrePosition(0, lever);
    EXPECT_EQ(lever[0], 10.0 + 30.3);
    EXPECT_EQ(lever[1], 20.0);
    EXPECT_EQ(lever[2], 30.0 + -32.25);
    EXPECT_EQ(head.AAxis()[0], -1.0);
    EXPECT_EQ(head.AAxis()[1], 0.0);
    EXPECT_EQ(head.DriveCupOffset()[1], 24.0);
}

TEST_F(HeadGeometryFile, CannotContainTheNumberThatMarksAMissingOne) {
    for (const char* const text :
         {"999999999", "999999999.0", "+999999999", "9.99999999e8", "999999999mm", "0x3b9ac9ff", "000999999999.000"}) {
        for (std::size_t i = 0; i < savedOrder.size(); ++i) {
            SCOPED_TRACE(std::string(text) + " as value " + std::to_string(i));
            FillWithNumbers();
            profile.texts[savedOrder[i]] = text;
            ExpectFailure(Load(), failures::notRead);
        }
    }
}

TEST_F(HeadGeometryFile, CanContainTheNeighboursOfThatNumber) {
    const std::pair<const char*, double> neighbours[] = {{"-999999999", -999999999.0},
                                                         {"999999998", 999999998.0},
                                                         {"9999999990", 9999999990.0},
                                                         // The next doubles below and above it.
                                                         {"999999999.00000012", std::nextafter(999999999.0, 1e10)},
                                                         {"999999998.99999988", std::nextafter(999999999.0, 0.0)}};
    for (const auto& [text, number] : neighbours) {
        SCOPED_TRACE(text);
        FillWithNumbers();
        profile.texts[savedOrder[0]] = text;
        EXPECT_EQ(Load().code, S_OK);
        EXPECT_EQ(head.HeadCentre()[0], number);
    }
}

// A text that does not begin with a number is read as 0.0, as required: only a missing value is an error. (The tests of
// TextToDouble and DoubleToScientific have many more texts and numbers.)
TEST_F(HeadGeometryFile, ReadsWordsAsZeroAndNumbersToTheirEnds) {
    const std::pair<const char*, double> texts[] = {
        {"word", 0.0}, {"", 0.0}, {"7mm", 7.0}, {"1,5", 1.0}, {"1e2", 100.0}};
    for (const auto& [text, number] : texts) {
        SCOPED_TRACE(text);
        FillWithNumbers();
        profile.texts[savedOrder[1]] = text;
        EXPECT_EQ(Load().code, S_OK);
        EXPECT_EQ(head.HeadCentre()[1], number);
    }
}

TEST_F(HeadGeometryFile, ReadsNoMoreThan348CharactersOfAValue) {
    FillWithNumbers();
    profile.texts[savedOrder[0]] = std::string(347, '0') + "12";
    EXPECT_EQ(Load().code, S_OK);
    EXPECT_EQ(head.HeadCentre()[0], 1.0);
}

TEST_F(HeadGeometryFile, WritesOneDigitNineDecimalsAndTheExponent) {
    const std::pair<const char*, const char*> cases[] = {
        {"-6.95", "-6.950000000e+00"}, {"-0", "-0.000000000e+00"},          {"-214.1627580076114", "-2.141627580e+02"},
        {"1e100", "1.000000000e+100"}, {"1073741825.5", "1.073741826e+09"}, // a tie goes to the even digit
    };
    for (const auto& [loaded, saved] : cases) {
        SCOPED_TRACE(loaded);
        Fill({loaded, loaded, loaded, loaded, loaded, "0", "0"});
        ASSERT_EQ(Load().code, S_OK);
        for (int save = 0; save < 2; ++save) {
            ASSERT_EQ(Save().code, S_OK);
            for (std::size_t i = 0; i < 5; ++i) EXPECT_EQ(profile.texts[savedOrder[i]], saved) << i;
            ASSERT_EQ(Load().code, S_OK) << "the second save must give the same text";
        }
    }
}

TEST_F(HeadGeometryFile, NamesTheWholeLoadForAnyOtherCode) {
    FillWithNumbers();
    for (const HRESULT code : {E_OUTOFMEMORY, E_FAIL, QMV_E_WRITE_TO_FILE}) {
        for (const std::size_t at : {0U, 4U, 9U}) {
            SCOPED_TRACE(at);
            profile.read.clear();
            profile.beforeRead = [=](std::size_t i) {
                if (i == at) throw code;
            };
            ExpectFailure(Load(), {code, L"RoundThePole::LoadFromFile", L"Failed To Load File"});
        }
    }
}

// A save that fails with another code than QMV_E_WRITE_TO_FILE names the load as its source: the text is fixed.
TEST_F(HeadGeometryFile, NamesTheLoadAlsoForAnyOtherCodeOfASave) {
    for (const HRESULT code : {E_OUTOFMEMORY, E_FAIL, QMV_E_READ_FROM_FILE}) {
        for (const std::size_t at : {0U, 3U, 6U}) {
            SCOPED_TRACE(at);
            profile.written.clear();
            profile.write = [=](std::size_t i) {
                if (i == at) throw code;
                return true;
            };
            ExpectFailure(Save(), {code, L"RoundThePole::LoadFromFile", L"Failed To Save File"});
        }
    }
}

} // namespace
