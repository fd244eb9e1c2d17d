#include "interface/ErrorCodes.h"
#include "support/ErrorRecord.h"
#include "support/TemporaryFolder.h"
#include "support/TwoGeometries.h"

#include <fstream>
#include <gtest/gtest.h>

/// Places that this platform alone can make awkward: attributes, and files that somebody has open.

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

// Under Wine the attribute is a permission of the host's, and root is above those.
TEST_F(AwkwardPlaces, KeepAFileThatMustNotBeWritten) {
    SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_READONLY);
    const bool anybodyMayWrite = OpenElsewhere(path, GENERIC_WRITE, FILE_SHARE_READ).IsOpen();
    const Raised raised = Save();
    SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
    EXPECT_EQ(raised.code, anybodyMayWrite ? S_OK : QMV_E_WRITE_TO_FILE);
    EXPECT_EQ(TwoGeometries::HeldByFile(path), anybodyMayWrite ? 2 : 1);
    ExpectOnlyTheFile();
}

TEST_F(AwkwardPlaces, KeepAFileThatAnotherGoesOnSaving) {
    const fs::path lock = path.native() + L".qmv40-lock";
    std::ofstream(lock).flush();
    {
        const OpenElsewhere another(lock, GENERIC_WRITE, 0);
        ASSERT_TRUE(another.IsOpen());
        EXPECT_EQ(Save().code, QMV_E_WRITE_TO_FILE) << "after ten seconds of waiting";
        EXPECT_EQ(TwoGeometries::HeldByFile(path), 1);
    }
    EXPECT_EQ(Save().code, S_OK);
    EXPECT_EQ(TwoGeometries::HeldByFile(path), 2);
    ExpectOnlyTheFile();
}

TEST_F(AwkwardPlaces, KeepAFileThatSomebodyHasForHimself) {
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

TEST_F(AwkwardPlaces, KeepAFileThatSomebodyReadsUntilHeHasDone) {
    const OpenElsewhere open(path, GENERIC_READ, FILE_SHARE_READ);
    ASSERT_TRUE(open.IsOpen());
    EXPECT_EQ(Save().code, QMV_E_WRITE_TO_FILE);
    EXPECT_EQ(TwoGeometries::HeldByFile(path), 1);
}

TEST_F(AwkwardPlaces, SaveIntoAFileThatSomebodyKeepsOpenForAll) {
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

} // namespace
