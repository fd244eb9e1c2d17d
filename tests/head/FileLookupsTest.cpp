/// The order of the lookups behind a load and a save. This program brings its own profile file, so that it sees each one.

#include "head/HeadChecks.h"
#include "platform/ProfileFile.h"
#include "support/Bstr.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cstring>
#include <functional>

namespace {

/// What the head asks of the file, "section/key", and how the file behaves.
struct WatchedFile {
    std::vector<std::wstring> reads;
    std::vector<std::wstring> writes;
    std::function<const char*(std::size_t)> valueOfRead = [](std::size_t) { return "1"; };
    std::function<bool(std::size_t)> takesWrite = [](std::size_t) { return true; };
};
WatchedFile file;

} // namespace

void ReadProfileText(const wchar_t* section, const wchar_t* key, const char* defaultText, std::span<char> buffer,
                     const wchar_t*) {
    file.reads.push_back(std::wstring(section) + L"/" + key);
    const char* const value = file.valueOfRead(file.reads.size());
    std::strncpy(buffer.data(), value == nullptr ? defaultText : value, buffer.size() - 1);
    buffer.back() = '\0';
}

bool WriteProfileText(const wchar_t* section, const wchar_t* key, const char*, const wchar_t*) {
    file.writes.push_back(std::wstring(section) + L"/" + key);
    return file.takesWrite(file.writes.size());
}

namespace {

using testing::ElementsAre;

class FileLookups : public testing::Test {
protected:
    void SetUp() override { file = WatchedFile(); }
    Raised Loading() {
        return RaisedBy([this] { head.LoadFromFile(name.Address()); });
    }
    Raised Saving() {
        return RaisedBy([this] { head.SaveToFile(name.Address()); });
    }

    Bstr name{std::wstring(L"head.ini")};
    RoundThePole head;
};

TEST_F(FileLookups, OfALoadReadTheHeadCentreTwice) {
    // The second reading goes nowhere. It is meant: every load makes these ten lookups.
    EXPECT_EQ(Loading().code, S_OK);
    EXPECT_THAT(file.reads, ElementsAre(L"HEADCENTRE/X", L"HEADCENTRE/Y", L"HEADCENTRE/Z", L"HEADCENTRE/X", L"HEADCENTRE/Y",
                                        L"HEADCENTRE/Z", L"SAFEPOSITION/X", L"SAFEPOSITION/Y", L"SAFEPOSITION/Z",
                                        L"AlignmentOffset/RequiredRotationAroundZ"));
}

TEST_F(FileLookups, OfTheSecondReadingDoNotReachTheHead) {
    file.valueOfRead = [](std::size_t read) { return read >= 4 && read <= 6 ? "77" : "5"; };
    EXPECT_EQ(Loading().code, S_OK);
    EXPECT_EQ(TripleOf(head.HeadCentre()), (Triple{5.0, 5.0, 5.0}));
}

TEST_F(FileLookups, OfTheSecondReadingFailTheLoadAllTheSame) {
    file.valueOfRead = [](std::size_t read) { return read == 5 ? nullptr : "5"; };
    EXPECT_TRUE(FailedWith(Loading(), QMV_E_READ_FROM_FILE, L"RoundThePole::ReadDoubleFromIniFile",
                           L"Failed To Read from File", L""));
    EXPECT_EQ(file.reads.size(), 5U);
    EXPECT_EQ(TripleOf(head.HeadCentre()), (Triple{5.0, 5.0, 5.0}));
}

TEST_F(FileLookups, OfALoadEndAtTheFirstThatFails) {
    for (std::size_t failing = 1; failing <= 10; ++failing) {
        file = WatchedFile();
        file.valueOfRead = [failing](std::size_t read) { return read == failing ? nullptr : "5"; };
        EXPECT_EQ(Loading().code, QMV_E_READ_FROM_FILE);
        EXPECT_EQ(file.reads.size(), failing);
    }
}

TEST_F(FileLookups, OfASaveWriteSevenNumbersInOrder) {
    EXPECT_EQ(Saving().code, S_OK);
    EXPECT_THAT(file.writes, ElementsAre(L"HEADCENTRE/X", L"HEADCENTRE/Y", L"HEADCENTRE/Z", L"SAFEPOSITION/X",
                                         L"SAFEPOSITION/Y", L"SAFEPOSITION/Z",
                                         L"AlignmentOffset/RequiredRotationAroundZ"));
    EXPECT_TRUE(file.reads.empty());
}

TEST_F(FileLookups, OfASaveEndAtTheFirstThatFails) {
    for (std::size_t failing = 1; failing <= 7; ++failing) {
        file = WatchedFile();
        file.takesWrite = [failing](std::size_t write) { return write != failing; };
        EXPECT_TRUE(FailedWith(Saving(), QMV_E_WRITE_TO_FILE, L"RoundThePole::WriteDoubleToIniFile",
                               L"Failed To Write To File", L""));
        EXPECT_EQ(file.writes.size(), failing);
    }
}

/// A failure of another kind than the two of the file itself.
constexpr HRESULT otherFailure = E_UNEXPECTED;

TEST_F(FileLookups, ThatFailOtherwiseKeepTheirCodeAndAreNamedAfterTheLoad) {
    file.valueOfRead = [](std::size_t read) -> const char* {
        if (read == 8) throw otherFailure;
        return "5";
    };
    const Raised raised = Loading();
    EXPECT_EQ(raised.code, otherFailure);
    ASSERT_TRUE(raised.record.has_value());
    EXPECT_EQ(raised.record->source, L"RoundThePole::LoadFromFile");
    EXPECT_EQ(raised.record->description, L"Failed To Load File");
}

TEST_F(FileLookups, ThatFailOtherwiseInASaveAreNamedAfterTheLoadToo) {
    // The save names the load as its source. That is meant: clients look for this text.
    file.takesWrite = [](std::size_t write) -> bool {
        if (write == 3) throw otherFailure;
        return true;
    };
    const Raised raised = Saving();
    EXPECT_EQ(raised.code, otherFailure);
    ASSERT_TRUE(raised.record.has_value());
    EXPECT_EQ(raised.record->source, L"RoundThePole::LoadFromFile");
    EXPECT_EQ(raised.record->description, L"Failed To Save File");
}

} // namespace
