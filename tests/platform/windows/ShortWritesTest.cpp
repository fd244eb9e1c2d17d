#include "platform/windows/FileHandle.h"
#include "platform/windows/ProfileCopy.h"
#include "tests/platform/ProfileOnDisk.h"

#include <gtest/gtest.h>

/// On a full disk a part of a text is written, and the platform's function reports a success. The linker directs the
/// component's writes to this program.

using namespace qmv40;

namespace {

std::uintmax_t largestFile = 0;
int writesInPart = 0; ///< this many of the next writes write a part only

} // namespace

extern "C" {
extern decltype(&WritePrivateProfileStringA) __real___imp_WritePrivateProfileStringA;

static BOOL WINAPI WriteInPart(LPCSTR section, LPCSTR key, LPCSTR text, LPCSTR file) {
    const BOOL written = __real___imp_WritePrivateProfileStringA(section, key, text, file);
    if (std::filesystem::file_size(file) > largestFile) std::filesystem::resize_file(file, largestFile);
    return written;
}

extern decltype(&WritePrivateProfileStringA) __wrap___imp_WritePrivateProfileStringA;
decltype(&WritePrivateProfileStringA) __wrap___imp_WritePrivateProfileStringA = WriteInPart;

extern decltype(&WriteFile) __real___imp_WriteFile;

static BOOL WINAPI WriteBytesInPart(HANDLE file, LPCVOID bytes, DWORD size, LPDWORD written, LPOVERLAPPED place) {
    if (writesInPart > 0) size /= 2;
    --writesInPart;
    return __real___imp_WriteFile(file, bytes, size, written, place);
}

extern decltype(&WriteFile) __wrap___imp_WriteFile;
decltype(&WriteFile) __wrap___imp_WriteFile = WriteBytesInPart;
}

namespace {

constexpr const char* bothWhole = "[S]\r\na=1.000000000e+02\r\nb=2.000000000e+02\r\n";

TEST(ShortWrites, LeaveTheWholeEntriesOnly) {
    const ProfileEntry entries[] = {{"S", "a", "1.000000000e+02"}, {"S", "b", "2.000000000e+02"}, {"S", "c", "3"}};
    const struct {
        std::uintmax_t size;
        const char* left;
    } cases[] = {{30, "[S]\r\na=1.000000000e+02\r\n"}, {24, "[S]\r\na=1.000000000e+02\r\n"}, {44, bothWhole}};
    for (const auto& [size, left] : cases) {
        const ProfileOnDisk profile;
        largestFile = size;
        WaitLimit waitLimit;
        EXPECT_FALSE(WriteEntries(profile.Path().wstring(), entries, waitLimit));
        EXPECT_EQ(profile.Content(), left) << size;
        EXPECT_EQ(profile.FilesInFolder(), 1);
    }
}

TEST(ShortWrites, OfTheFirstEntryLeaveNoFile) {
    const ProfileOnDisk profile;
    const ProfileEntry entries[] = {{"S", "a", "1.000000000e+02"}};
    largestFile = 15;
    WaitLimit waitLimit;
    EXPECT_FALSE(WriteEntries(profile.Path().wstring(), entries, waitLimit));
    EXPECT_FALSE(profile.Exists());
}

TEST(ShortWrites, IntoAHeldFileAreUndone) {
    const ProfileOnDisk profile;
    profile.Put(bothWhole);
    largestFile = 1000;
    const FileHandle held(profile.Path().wstring(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE);
    const ProfileEntry entries[] = {{"S", "a", "7"}, {"T", "c", "3"}};
    WaitLimit waitLimit;
    writesInPart = 1;
    EXPECT_FALSE(WriteEntries(profile.Path().wstring(), entries, waitLimit));
    EXPECT_EQ(profile.Content(), bothWhole);
    EXPECT_TRUE(WriteEntries(profile.Path().wstring(), entries, waitLimit));
}

TEST(ShortWrites, AreNotReportedForTextsWithBlanksOrQuotes) {
    const ProfileOnDisk profile;
    const ProfileEntry entries[] = {{"S", "a", " blanks "}, {"S", "b", "'quotes'"}, {"S", "c", ""}};
    largestFile = 1000;
    WaitLimit waitLimit;
    EXPECT_TRUE(WriteEntries(profile.Path().wstring(), entries, waitLimit));
}

} // namespace
