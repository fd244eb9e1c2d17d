#include "interface/ErrorCodes.h"
#include "tests/support/ErrorRecord.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/TwoGeometries.h"

#include <gtest/gtest.h>

#include <fstream>

using namespace qmv40;

/// Difficult places of this platform: attributes, and files that another program has open.

namespace {

namespace fs = std::filesystem;

/// A file that another program has open.
class OpenElsewhere {
public:
    OpenElsewhere(const fs::path& path, DWORD access, DWORD sharing)
        : handle(CreateFileW(path.c_str(), access, sharing, nullptr, OPEN_EXISTING, 0, nullptr)) {}
    OpenElsewhere(const OpenElsewhere&) = delete;
    OpenElsewhere& operator=(const OpenElsewhere&) = delete;
    ~OpenElsewhere() {
        if (IsOpen()) CloseHandle(handle);
    }

    bool IsOpen() const { return handle != INVALID_HANDLE_VALUE; }

private:
    HANDLE handle;
};

class AwkwardPlaces : public testing::Test {
protected:
    AwkwardPlaces() { TwoGeometries::Put(path, 1); }

    Raised Save() const {
        return ReturnedBy([&] { return second->SaveHeadGeometryToFile(Bstr(path).Address()); });
    }
    void ExpectOnlyTheFile() const {
        const fs::directory_iterator files(folder.Path());
        EXPECT_EQ(std::distance(begin(files), end(files)), 1);
    }

    TemporaryFolder folder;
    fs::path path = folder.Path("head.ini");
    ComPointer<IQMVCalculator2> second = TwoGeometries::Calculator(folder.Path(), 2);
};

// Under Wine the attribute is a permission of the host system, which root can ignore.
TEST_F(AwkwardPlaces, KeepAReadOnlyFile) {
    SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_READONLY);
    const bool anybodyMayWrite = OpenElsewhere(path, GENERIC_WRITE, FILE_SHARE_READ).IsOpen();
    const Raised raised = Save();
    SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
    EXPECT_EQ(raised.code, anybodyMayWrite ? S_OK : QMV_E_WRITE_TO_FILE);
    EXPECT_EQ(TwoGeometries::HeldByFile(path), anybodyMayWrite ? 2 : 1);
    ExpectOnlyTheFile();
}

TEST_F(AwkwardPlaces, KeepAFileThatAnotherProgramDoesNotShare) {
    {
        const OpenElsewhere open(path, GENERIC_READ | GENERIC_WRITE, 0);
        ASSERT_TRUE(open.IsOpen());
        EXPECT_EQ(Save().code, QMV_E_WRITE_TO_FILE);
        EXPECT_EQ(second->LoadHeadGeometryFromFile(Bstr(path).Address()), QMV_E_READ_FROM_FILE);
        EXPECT_EQ(TwoGeometries::HeldBy(*second.Get()), 2);
    }
    EXPECT_EQ(TwoGeometries::HeldByFile(path), 1);
    ExpectOnlyTheFile();
    EXPECT_EQ(Save().code, S_OK);
    EXPECT_EQ(TwoGeometries::HeldByFile(path), 2);
}

TEST_F(AwkwardPlaces, KeepAFileThatAnotherProgramSharesForReading) {
    const OpenElsewhere open(path, GENERIC_READ, FILE_SHARE_READ);
    ASSERT_TRUE(open.IsOpen());
    EXPECT_EQ(Save().code, QMV_E_WRITE_TO_FILE);
    EXPECT_EQ(TwoGeometries::HeldByFile(path), 1);
}

TEST_F(AwkwardPlaces, SaveIntoAFileThatAnotherProgramSharesForWriting) {
    const OpenElsewhere open(path, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE);
    ASSERT_TRUE(open.IsOpen());
    EXPECT_EQ(Save().code, S_OK);
    EXPECT_EQ(TwoGeometries::HeldByFile(path), 2);
    ExpectOnlyTheFile();
}

TEST_F(AwkwardPlaces, KeepTheFilesAttributes) {
    SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_HIDDEN);
    EXPECT_EQ(Save().code, S_OK);
    EXPECT_NE(GetFileAttributesW(path.c_str()) & FILE_ATTRIBUTE_HIDDEN, 0U);
    SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
}

TEST_F(AwkwardPlaces, KeepAllNamesOfAFile) {
    const fs::path other = folder.Path("other.ini");
    ASSERT_NE(CreateHardLinkW(other.c_str(), path.c_str(), nullptr), 0);
    EXPECT_EQ(Save().code, S_OK);
    EXPECT_EQ(TwoGeometries::HeldByFile(path), 2);
    EXPECT_EQ(TwoGeometries::HeldByFile(other), 2);
}

// The mark is removed also when the entries are written one by one: Windows does not find a section in a first line
// that begins with a mark.
TEST_F(AwkwardPlaces, RemoveAByteOrderMarkFromAFileWithSeveralNames) {
    const std::string marked = "\xEF\xBB\xBF" + TwoGeometries::FileText(1);
    std::ofstream(path, std::ios::binary | std::ios::trunc) << marked;
    ASSERT_NE(CreateHardLinkW(folder.Path("other.ini").c_str(), path.c_str(), nullptr), 0);
    EXPECT_EQ(Save().code, S_OK);
    EXPECT_EQ(TwoGeometries::HeldByFile(path), 2);
}

// Some old hosts call SetFileApisToOEM. It does not affect the profile functions.
TEST_F(AwkwardPlaces, SaveInAHostWithOemFileFunctions) {
    path = folder.Path() / fs::path(u8"K\u00F6pfe.ini");
    SetFileApisToOEM();
    const HRESULT made = Save().code;
    const HRESULT replaced = Save().code;
    HRESULT savedInPlace = E_FAIL;
    {
        const OpenElsewhere open(path, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE);
        savedInPlace = Save().code;
    }
    SetFileApisToANSI();
    EXPECT_EQ(made, S_OK);
    EXPECT_EQ(replaced, S_OK);
    EXPECT_EQ(savedInPlace, S_OK) << "the content must be written into the file itself";
    EXPECT_TRUE(fs::exists(path));
    const fs::directory_iterator files(folder.Path());
    EXPECT_EQ(std::distance(begin(files), end(files)), 2) << "no copy may be left";
}

/// A thread whose language is not that of the system.
class ThreadLanguage {
public:
    explicit ThreadLanguage(WORD language) : before(GetThreadLocale()) {
        SetThreadLocale(MAKELCID(MAKELANGID(language, SUBLANG_DEFAULT), SORT_DEFAULT));
    }
    ThreadLanguage(const ThreadLanguage&) = delete;
    ThreadLanguage& operator=(const ThreadLanguage&) = delete;
    ~ThreadLanguage() { SetThreadLocale(before); }

private:
    LCID before;
};

TEST_F(AwkwardPlaces, AreFoundOrRefusedInEveryThreadLanguage) {
    for (const WORD language : {WORD{LANG_ENGLISH}, WORD{LANG_POLISH}, WORD{LANG_RUSSIAN}, WORD{LANG_JAPANESE}}) {
        const ThreadLanguage thread(language);
        for (const char8_t* const name :
             {u8"k\u00F6pf.ini", u8"g\u0142owa.ini", u8"\u0433\u043E\u043B\u043E\u0432\u0430.ini"}) {
            SCOPED_TRACE(testing::Message() << language << ' ' << reinterpret_cast<const char*>(name));
            const TemporaryFolder own;
            path = own.Path() / fs::path(name);
            const Raised saved = Save();
            const fs::directory_iterator files(own.Path());
            EXPECT_EQ(std::distance(begin(files), end(files)), saved.code == S_OK ? 1 : 0);
            EXPECT_TRUE(saved.code == S_OK || saved.code == QMV_E_WRITE_TO_FILE);
            EXPECT_EQ(fs::exists(path), saved.code == S_OK) << "another file must not be written";

            TwoGeometries::Put(path, 1);
            const HRESULT loaded = second->LoadHeadGeometryFromFile(Bstr(path).Address());
            EXPECT_TRUE(loaded == S_OK || loaded == QMV_E_READ_FROM_FILE);
            EXPECT_EQ(TwoGeometries::HeldBy(*second.Get()), loaded == S_OK ? 1 : 2)
                << "a refused load must not set the head centre to zeros";
            second = TwoGeometries::Calculator(folder.Path(), 2);
        }
    }
}

} // namespace
