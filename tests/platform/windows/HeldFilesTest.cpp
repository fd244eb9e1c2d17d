#include "platform/windows/FileContent.h"
#include "platform/windows/ProfileCopy.h"
#include "tests/platform/ProfileOnDisk.h"

#include <gtest/gtest.h>

#include <sddl.h>

#include <algorithm>
#include <atomic>
#include <memory>
#include <set>
#include <string>
#include <thread>
#include <vector>

using namespace qmv40;

/// Another program holds the file open: how long a save waits, and what happens to the file.

namespace {

/// The clock of the code under test. It does not really sleep.
struct TestClock {
    ULONGLONG now = 1000;
    ULONGLONG asked = 0; ///< the sum of all waiting times, in milliseconds
    ULONGLONG late = 0;  ///< each wait ends later by this many milliseconds
} testClock;

ULONGLONG WINAPI Now() { return testClock.now; }
void WINAPI Wait(DWORD milliseconds) {
    testClock.asked += milliseconds;
    testClock.now += milliseconds + testClock.late;
}
const WaitingClock clock{Now, Wait};

constexpr ULONGLONG mostWaiting = 250;
constexpr const char* before = "[S]\r\na=1\r\nb=2\r\n";
constexpr const char* after = "[S]\r\na=10\r\nb=20\r\n";
const ProfileEntry entries[] = {{"S", "a", "10"}, {"S", "b", "20"}};

class HeldFiles : public testing::Test {
protected:
    HeldFiles() {
        testClock = {};
        profile.Put(before);
    }

    bool Save() const {
        WaitLimit waitLimit(clock);
        return WriteEntries(profile.Path().wstring(), entries, waitLimit);
    }
    ProfileOnDisk profile;
};

TEST_F(HeldFiles, CauseNoWaitAfterTheyAreReleased) {
    EXPECT_TRUE(Save());
    EXPECT_EQ(profile.Content(), after);
    EXPECT_EQ(testClock.asked, 0U);
}

std::vector<char> AccessControlListOf(const std::wstring& name) {
    DWORD size = 0;
    GetFileSecurityW(name.c_str(), DACL_SECURITY_INFORMATION, nullptr, 0, &size);
    std::vector<char> list(size);
    EXPECT_TRUE(GetFileSecurityW(name.c_str(), DACL_SECURITY_INFORMATION, list.data(), size, &size));
    return list;
}

TEST_F(HeldFiles, KeepTheirAccessControlListWhenTheyAreReplaced) {
    const std::wstring name = profile.Path().wstring();
    const std::vector<char> usual = AccessControlListOf(name);
    PSECURITY_DESCRIPTOR everybodyMayAll = nullptr;
    ASSERT_TRUE(ConvertStringSecurityDescriptorToSecurityDescriptorW(L"D:(A;;FA;;;WD)", SDDL_REVISION_1,
                                                                     &everybodyMayAll, nullptr));
    const std::unique_ptr<void, decltype(&LocalFree)> owner(everybodyMayAll, LocalFree);
    ASSERT_TRUE(SetFileSecurityW(name.c_str(), DACL_SECURITY_INFORMATION, everybodyMayAll));
    const std::vector<char> given = AccessControlListOf(name);
    ASSERT_NE(given, usual) << "with the default list the test could not fail";
    EXPECT_TRUE(Save());
    EXPECT_EQ(AccessControlListOf(name), given);
}

TEST_F(HeldFiles, CauseAWaitOf250MillisecondsAtMost) {
    for (const ULONGLONG late : {0U, 1U, 15U}) {
        for (const DWORD access : {DWORD{GENERIC_READ}, DWORD{GENERIC_WRITE}, DWORD{GENERIC_READ | GENERIC_WRITE}}) {
            for (DWORD sharing = 0; sharing <= shareAll; ++sharing) {
                SCOPED_TRACE(testing::Message() << std::hex << "access " << access << ", sharing " << sharing);
                testClock = {.late = late};
                profile.Put(before);
                bool isSaved = false;
                {
                    const FileHandle held(profile.Path().wstring(), access, sharing);
                    ASSERT_TRUE(held.IsOpen());
                    isSaved = Save();
                    EXPECT_LE(testClock.now - 1000, mostWaiting);
                }
                EXPECT_EQ(profile.Content(), isSaved ? after : before);
                EXPECT_EQ(profile.FilesInFolder(), 1);
                const bool mayWrite = (sharing & FILE_SHARE_READ) != 0 && (sharing & FILE_SHARE_WRITE) != 0;
                if (mayWrite && access == GENERIC_READ) {
                    EXPECT_TRUE(isSaved);
                }
                if (!mayWrite) {
                    EXPECT_FALSE(isSaved);
                }
            }
        }
    }
}

TEST_F(HeldFiles, CauseAWaitOf200MillisecondsAtLeast) {
    const FileHandle held(profile.Path().wstring(), GENERIC_READ, 0);
    EXPECT_FALSE(Save());
    EXPECT_GE(testClock.asked, 200U);
}

FileHandle heldForAWhile;
void WINAPI WaitUntilLetGo(DWORD milliseconds) {
    Wait(milliseconds);
    if (testClock.now > 1100) heldForAWhile = FileHandle();
}

TEST_F(HeldFiles, AreReplacedWhenTheyAreReleasedInTime) {
    for (const DWORD sharing : {DWORD{0}, DWORD{FILE_SHARE_READ}, DWORD{shareAll}}) {
        testClock = {};
        profile.Put(before);
        heldForAWhile = FileHandle(profile.Path().wstring(), GENERIC_READ, sharing);
        WaitLimit waitLimit({Now, WaitUntilLetGo});
        EXPECT_TRUE(WriteEntries(profile.Path().wstring(), entries, waitLimit));
        EXPECT_EQ(profile.Content(), after);
        EXPECT_LT(testClock.asked, 150U);
    }
}

// A load takes much less time than the limit; this one never ends. A write into the file would change the content while
// it is read.
TEST_F(HeldFiles, DoNotChangeDuringALoad) {
    {
        const ProfileReader reader(profile.Path().wstring().c_str());
        EXPECT_FALSE(Save());
        EXPECT_GE(testClock.asked, 200U) << "the save must wait for the end of the load";
        EXPECT_LE(testClock.asked, mostWaiting);
        EXPECT_EQ(profile.Content(), before);
        EXPECT_EQ(profile.FilesInFolder(), 1);
    }
    EXPECT_TRUE(Save());
    EXPECT_EQ(profile.Content(), after);
}

std::wstring heldPath;
void WINAPI WaitWhileOneLoadFollowsTheOther(DWORD milliseconds) {
    Wait(milliseconds);
    heldForAWhile = FileHandle();
    if (testClock.asked < 200) heldForAWhile = FileHandle(heldPath, GENERIC_READ, FILE_SHARE_READ);
}

// If the entries were written one by one, the second load would read a part of each geometry.
TEST_F(HeldFiles, CauseAWaitDuringSuccessiveLoads) {
    const std::wstring path = profile.Path().wstring();
    heldPath = path;
    heldForAWhile = FileHandle(path, GENERIC_READ, FILE_SHARE_READ);
    WaitLimit waitLimit({Now, WaitWhileOneLoadFollowsTheOther});
    EXPECT_TRUE(WriteEntries(path, entries, waitLimit));
    EXPECT_EQ(testClock.asked, 200U);
    EXPECT_EQ(profile.Content(), after);
}

std::ptrdiff_t mostFiles = 0;
void WINAPI WaitAndCountFiles(DWORD milliseconds) {
    Wait(milliseconds);
    const std::filesystem::directory_iterator files(std::filesystem::path(heldPath).parent_path());
    mostFiles = std::max(mostFiles, std::distance(begin(files), end(files)));
}
void WINAPI WaitWhileAnotherSaves(DWORD milliseconds) {
    Wait(milliseconds);
    if (testClock.asked > 1) return;
    std::thread([] {
        WaitLimit waitLimit({Now, WaitAndCountFiles});
        EXPECT_TRUE(WriteEntries(heldPath, entries, waitLimit));
    }).join();
}

TEST_F(HeldFiles, HaveASeparateCopyForEachWaitingSave) {
    heldPath = profile.Path().wstring();
    const FileHandle held(heldPath, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE);
    WaitLimit waitLimit({Now, WaitWhileAnotherSaves});
    EXPECT_TRUE(WriteEntries(heldPath, entries, waitLimit));
    EXPECT_EQ(mostFiles, 3) << "the file and two copies";
    EXPECT_EQ(profile.Content(), after);
    EXPECT_EQ(profile.FilesInFolder(), 1);
}

TEST_F(HeldFiles, CannotBeWrittenByOtherProgramsDuringALoad) {
    {
        const ProfileReader reader(profile.Path().wstring().c_str());
        EXPECT_FALSE(FileHandle(profile.Path().wstring(), GENERIC_WRITE, shareAll).IsOpen());
    }
    EXPECT_TRUE(FileHandle(profile.Path().wstring(), GENERIC_WRITE, shareAll).IsOpen());
}

TEST_F(HeldFiles, AreNotReadWhileASaveWrites) {
    {
        const FileHandle save(profile.Path().wstring(), GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ);
        ASSERT_TRUE(Claim(ContentRight::toWrite, save));
        EXPECT_EQ(profile.Read(L"S", L"a"), "default");
    }
    EXPECT_EQ(profile.Read(L"S", L"a"), "1");
}

TEST_F(HeldFiles, AreNotWrittenByASaveDuringALoad) {
    {
        FileHandle other(profile.Path().wstring(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE);
        ASSERT_TRUE(other.IsOpen());
        const ProfileReader reader(profile.Path().wstring().c_str());
        other = FileHandle();
        EXPECT_FALSE(Save());
        EXPECT_EQ(profile.Content(), before);
    }
    EXPECT_TRUE(Save());
}

/// Saves the two contents in turn. The file is held, so that each content is written into the file itself.
void SaveInTurn(const std::wstring& path, int saves) {
    const ProfileEntry others[] = {{"S", "a", "1"}, {"S", "b", "2"}};
    for (int i = 0; i < saves; ++i) {
        WaitLimit waitLimit(clock);
        WriteEntries(path, i % 2 == 0 ? std::span(entries) : std::span(others), waitLimit);
    }
}

TEST_F(HeldFiles, AreNeverReadInPartWhileSavesWrite) {
    const FileHandle held(profile.Path().wstring(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE);
    testClock.late = mostWaiting; // the first wait uses up the time of a save
    std::atomic<bool> ended = false;
    std::thread saves([&] {
        SaveInTurn(profile.Path().wstring(), 100);
        ended = true;
    });
    std::set<std::string> read;
    while (!ended) {
        const ProfileReader reader(profile.Path().wstring().c_str());
        char a[8], b[8];
        reader.Read(L"S", L"a", "none", a);
        reader.Read(L"S", L"b", "none", b);
        read.insert(std::string(a) + ' ' + b);
    }
    saves.join();
    for (const std::string& both : read) EXPECT_TRUE(both == "1 2" || both == "10 20" || both == "none none") << both;
}

// A copy of a partly written file would lose lines of other programs.
TEST_F(HeldFiles, AreNotCopiedWhileASaveWritesIntoThem) {
    {
        const FileHandle save(profile.Path().wstring(), GENERIC_READ, shareAll);
        ASSERT_TRUE(Claim(ContentRight::toWrite, save));
        heldPath = profile.Path().wstring();
        mostFiles = 0;
        WaitLimit waitLimit({Now, WaitAndCountFiles});
        EXPECT_FALSE(WriteEntries(heldPath, entries, waitLimit));
        EXPECT_GE(testClock.asked, 200U);
        EXPECT_EQ(mostFiles, 1) << "there must be no copy";
        EXPECT_EQ(profile.Content(), before);
        EXPECT_EQ(profile.FilesInFolder(), 1);
    }
    EXPECT_TRUE(Save());
}

// Another program lets others write but not delete: the content of the copy is written into the file in one step.
TEST_F(HeldFiles, ThatCannotBeReplacedGetTheWholeContent) {
    const FileHandle held(profile.Path().wstring(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE);
    const ProfileEntry unwritable[] = {{"S", "a", "10"}, {"S", std::nullopt, "20"}};
    EXPECT_TRUE(Save());
    EXPECT_GE(testClock.asked, 200U);
    EXPECT_EQ(profile.Content(), after);
    profile.Put("[Long]\r\nlong=" + std::string(1000, 'x') + "\r\n" + before);
    WaitLimit waitLimit(clock);
    EXPECT_FALSE(WriteEntries(profile.Path().wstring(), unwritable, waitLimit));
    EXPECT_EQ(profile.Read(L"S", L"a"), "10") << "the entries before the failure must stay";
    EXPECT_EQ(profile.FilesInFolder(), 1);
}

} // namespace
