#include "tests/platform/ProfileOnDisk.h"
#include "tests/support/portable/OtherProcess.h"
#include "tests/support/portable/OwnRoot.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <fcntl.h>
#include <iterator>
#include <string>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <sys/wait.h>
#include <sys/xattr.h>
#include <thread>
#include <unistd.h>
#include <vector>

using namespace qmv40;

/// A file is replaced in one step or not at all. Its attributes do not change.

namespace {

namespace fs = std::filesystem;

constexpr const char* oldContent = "[S]\r\nk=1\r\n";
constexpr const char* newContent = "[S]\r\nk=2\r\n";

struct stat StatusOf(const fs::path& path) {
    struct stat status {};
    EXPECT_EQ(::stat(path.c_str(), &status), 0);
    return status;
}

/// Limits the size of this process's files, which has the effect of a full disk.
void LimitFiles(rlim_t size) {
    const rlimit limit{size, size};
    ::setrlimit(RLIMIT_FSIZE, &limit);
    std::signal(SIGXFSZ, SIG_IGN);
}

/// A profile that every user can access.
ProfileOnDisk& Opened(ProfileOnDisk& profile) {
    fs::permissions(profile.Folder(), fs::perms::all);
    profile.Put(oldContent);
    fs::permissions(profile.Path(), static_cast<fs::perms>(0666));
    return profile;
}

TEST(ProfileReplacing, LeavesNothingElseInTheFolder) {
    const ProfileOnDisk profile;
    EXPECT_TRUE(profile.Write(L"S", L"k", "1"));
    EXPECT_TRUE(profile.Write(L"S", L"k", "2"));
    EXPECT_EQ(profile.FilesInFolder(), 1);
    EXPECT_EQ(profile.Content(), newContent);
}

TEST(ProfileReplacing, KeepsPermissions) {
    const ProfileOnDisk profile;
    for (const unsigned mode : {0600U, 0640U, 0664U, 0666U, 0777U}) {
        profile.Put(oldContent);
        ASSERT_EQ(::chmod(profile.Path().c_str(), mode), 0);
        EXPECT_TRUE(profile.Write(L"S", L"k", "2"));
        EXPECT_EQ(StatusOf(profile.Path()).st_mode & 07777U, mode);
    }
}

TEST(ProfileReplacing, KeepsTheOwner) {
    if (::geteuid() != 0) GTEST_SKIP() << "only root can change the owner of a file";
    const ProfileOnDisk profile;
    profile.Put(oldContent);
    ASSERT_EQ(::chown(profile.Path().c_str(), 1234, 5678), 0);
    EXPECT_TRUE(profile.Write(L"S", L"k", "2"));
    EXPECT_EQ(StatusOf(profile.Path()).st_uid, 1234U);
    EXPECT_EQ(StatusOf(profile.Path()).st_gid, 5678U);
}

TEST(ProfileReplacing, GivesANewFileTheDefaultPermissions) {
    const ProfileOnDisk profile;
    EXPECT_TRUE(InAnotherProcess([&] {
        ::umask(027);
        return profile.Write(L"S", L"k", "1");
    }));
    EXPECT_EQ(StatusOf(profile.Path()).st_mode & 07777U, 0640U);
}

TEST(ProfileReplacing, ShowsTheOldContentOrTheNewAtEveryMoment) {
    const ProfileOnDisk profile;
    const std::string filling(20000, 'x');
    profile.Put("[S]\nfilling=" + filling + "\nk=0\nend=1\n");
    std::atomic<bool> finished{false};
    std::thread writer([&] {
        for (int i = 1; i <= 40; ++i) EXPECT_TRUE(profile.Write(L"S", L"k", std::to_string(i).c_str()));
        finished = true;
    });
    while (!finished) {
        ASSERT_EQ(profile.Read(L"S", L"end"), "1");
        ASSERT_TRUE(profile.Content().ends_with("\nend=1\n"));
    }
    writer.join();
}

TEST(ProfileReplacing, KeepsTheOldContentWhenTheDiskIsFull) {
    const ProfileOnDisk profile;
    const std::string old = "[S]\nfilling=" + std::string(10000, 'x') + "\nk=1\n";
    profile.Put(old);
    EXPECT_TRUE(InAnotherProcess([&] {
        LimitFiles(5000);
        return !profile.Write(L"S", L"k", "2");
    }));
    EXPECT_EQ(profile.Content(), old);
    EXPECT_EQ(profile.FilesInFolder(), 1);
}

TEST(ProfileReplacing, WritesInPlaceWhenACopyDoesNotFit) {
    const ProfileOnDisk profile;
    const std::string rest = "[T]\nfilling=" + std::string(10000, 'x') + "\nm=1\n";
    profile.Put("[S]\nk=1\n" + rest);
    EXPECT_TRUE(InAnotherProcess([&] {
        LimitFiles(5000); // too small for a copy
        ProfileWriter writer(profile.Path().wstring().c_str());
        writer.Set(L"S", L"k", "2");
        writer.Set(L"T", L"m", "2");
        return !writer.Commit();
    }));
    EXPECT_EQ(profile.Content(), "[S]\nk=2\n" + rest) << "the entry before the failure must stay";
    EXPECT_EQ(profile.FilesInFolder(), 1);
}

TEST(ProfileReplacing, UndoesTheEntryThatDidNotFit) {
    for (rlim_t room = 0; room < 60; ++room) {
        SCOPED_TRACE(room);
        const ProfileOnDisk profile;
        EXPECT_TRUE(InAnotherProcess([&] {
            LimitFiles(room);
            ProfileWriter writer(profile.Path().wstring().c_str());
            writer.Set(L"S", L"k", "111");
            writer.Set(L"S", L"l", "222");
            writer.Set(L"T", L"m", "333");
            return writer.Commit() == (room >= 31);
        }));
        const std::string first = "[S]\r\nk=111\r\n", second = first + "l=222\r\n", third = second + "[T]\r\nm=333\r\n";
        EXPECT_EQ(profile.Content(), room < first.size()    ? ""
                                     : room < second.size() ? first
                                     : room < third.size()  ? second
                                                            : third);
        EXPECT_EQ(profile.Exists(), room >= first.size()) << "a new file must not stay without an entry";
    }
}

TEST(ProfileReplacing, CreatesNoFileWhenTheDiskIsFull) {
    const ProfileOnDisk profile;
    EXPECT_TRUE(InAnotherProcess([&] {
        LimitFiles(3);
        return !profile.Write(L"S", L"k", "2");
    }));
    EXPECT_EQ(profile.FilesInFolder(), 0);
}

TEST(ProfileReplacing, RefusesAFileWithoutWritePermission) {
    ProfileOnDisk profile;
    fs::permissions(Opened(profile).Path(), static_cast<fs::perms>(0444));
    EXPECT_TRUE(AsOrdinaryUser([&] { return profile.Read(L"S", L"k") == "1" && !profile.Write(L"S", L"k", "2"); }));
    EXPECT_EQ(profile.Content(), oldContent);
    EXPECT_EQ(profile.FilesInFolder(), 1);
}

TEST(ProfileReplacing, RefusesAFileWithoutReadPermission) {
    ProfileOnDisk profile;
    fs::permissions(Opened(profile).Path(), static_cast<fs::perms>(0222));
    EXPECT_TRUE(
        AsOrdinaryUser([&] { return profile.Read(L"S", L"k") == "default" && !profile.Write(L"S", L"k", "2"); }));
    fs::permissions(profile.Path(), static_cast<fs::perms>(0666));
    EXPECT_EQ(profile.Content(), oldContent);
}

TEST(ProfileReplacing, WritesInPlaceInAFolderWithoutWritePermission) {
    ProfileOnDisk profile;
    fs::permissions(Opened(profile).Folder(), static_cast<fs::perms>(0555));
    const std::wstring other = (profile.Folder() / "other.ini").wstring();
    EXPECT_TRUE(AsOrdinaryUser(
        [&] { return profile.Write(L"S", L"k", "2") && !WriteProfileText(L"S", L"k", "2", other.c_str()); }));
    fs::permissions(profile.Folder(), fs::perms::all);
    EXPECT_EQ(profile.Content(), newContent);
    EXPECT_EQ(profile.FilesInFolder(), 1);
}

TEST(ProfileReplacing, KeepsAnotherOwner) {
    if (::geteuid() != 0) GTEST_SKIP() << "only root can change the owner of a file";
    ProfileOnDisk profile;
    ASSERT_EQ(::chown(Opened(profile).Path().c_str(), 1234, 5678), 0);
    ASSERT_EQ(::chmod(profile.Path().c_str(), 0666), 0);
    EXPECT_TRUE(AsOrdinaryUser([&] { return profile.Write(L"S", L"k", "2"); }));
    EXPECT_EQ(profile.Content(), newContent);
    EXPECT_EQ(StatusOf(profile.Path()).st_uid, 1234U);
    EXPECT_EQ(StatusOf(profile.Path()).st_gid, 5678U) << "the group must not change";
}

/// An access control list in the kernel's format: the owner, a named user, the group, the mask and all others.
std::string AccessControlList() {
    const std::uint16_t entries[][2] = {{0x01, 6}, {0x02, 4}, {0x04, 0}, {0x10, 4}, {0x20, 0}};
    std::string list("\x02\0\0\0", 4);
    for (const auto& [tag, rights] : entries) {
        const std::uint32_t id = tag == 0x02 ? 4321 : 0xFFFFFFFFU;
        list.append(reinterpret_cast<const char*>(&tag), sizeof tag);
        list.append(reinterpret_cast<const char*>(&rights), sizeof rights);
        list.append(reinterpret_cast<const char*>(&id), sizeof id);
    }
    return list;
}

std::string Attribute(const fs::path& path, const char* name) {
    std::string value(1000, '\0');
    const ssize_t length = ::getxattr(path.c_str(), name, value.data(), value.size());
    return length < 0 ? "none" : value.substr(0, static_cast<std::size_t>(length));
}

bool SetAttribute(const fs::path& path, const char* name, const std::string& value) {
    return ::setxattr(path.c_str(), name, value.data(), value.size(), 0) == 0;
}

constexpr const char* accessList = "system.posix_acl_access";
constexpr const char* listOfNewFiles = "system.posix_acl_default";

TEST(ProfileReplacing, KeepsAccessControlListAndAttributes) {
    const ProfileOnDisk profile;
    profile.Put(oldContent);
    if (!SetAttribute(profile.Path(), accessList, AccessControlList()))
        GTEST_SKIP() << "this file system has no access control lists";
    ASSERT_TRUE(SetAttribute(profile.Path(), "user.note", "of the user"));
    const mode_t mode = StatusOf(profile.Path()).st_mode;
    const ino_t number = StatusOf(profile.Path()).st_ino;
    EXPECT_TRUE(profile.Write(L"S", L"k", "2"));
    EXPECT_EQ(profile.Content(), newContent);
    EXPECT_NE(StatusOf(profile.Path()).st_ino, number) << "the file must have been replaced";
    EXPECT_EQ(Attribute(profile.Path(), accessList), AccessControlList());
    EXPECT_EQ(Attribute(profile.Path(), "user.note"), "of the user");
    EXPECT_EQ(StatusOf(profile.Path()).st_mode, mode);
}

TEST(ProfileReplacing, IgnoresTheDefaultAccessControlListOfTheFolder) {
    const ProfileOnDisk profile;
    profile.Put(oldContent);
    ASSERT_EQ(::chmod(profile.Path().c_str(), 0640), 0);
    if (!SetAttribute(profile.Folder(), listOfNewFiles, AccessControlList()))
        GTEST_SKIP() << "this file system has no access control lists";
    EXPECT_TRUE(profile.Write(L"S", L"k", "2"));
    EXPECT_EQ(Attribute(profile.Path(), accessList), "none");
    EXPECT_EQ(StatusOf(profile.Path()).st_mode & 07777U, 0640U);
}

TEST(ProfileReplacing, WritesAFileThatIsMounted) {
    const ProfileOnDisk profile;
    profile.Put(oldContent);
    const fs::path real = profile.Folder() / "real.ini";
    std::ofstream(real) << oldContent;
    enum { asPromised, notPermitted, notWritten };
    const int outcome = CodeOfAnotherProcess([&]() -> int {
        if (!BecomeOwnRoot() || ::mount("none", "/", "none", MS_REC | MS_PRIVATE, nullptr) != 0 ||
            ::mount(real.c_str(), profile.Path().c_str(), "none", MS_BIND, nullptr) != 0)
            return notPermitted;
        return profile.Write(L"S", L"k", "2") && profile.Content() == newContent ? asPromised : notWritten;
    });
    if (outcome == notPermitted) GTEST_SKIP() << "no permission to mount";
    EXPECT_EQ(outcome, asPromised);
    std::ifstream written(real);
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(written), {}), newContent);
    EXPECT_EQ(profile.Content(), oldContent) << "the file below the mount must not change";
    EXPECT_EQ(profile.FilesInFolder(), 2);
}

TEST(ProfileReplacing, KeepsAllNamesOfAFile) {
    const ProfileOnDisk profile;
    profile.Put(oldContent);
    const fs::path other = profile.Folder() / "other.ini";
    fs::create_hard_link(profile.Path(), other);
    EXPECT_TRUE(profile.Write(L"S", L"k", "2"));
    EXPECT_EQ(profile.Content(), newContent);
    EXPECT_TRUE(fs::equivalent(profile.Path(), other));
}

TEST(ProfileReplacing, WorksInAFolderThatCannotBeListed) {
    ProfileOnDisk profile;
    fs::permissions(Opened(profile).Folder(), static_cast<fs::perms>(0333));
    if (::geteuid() == 0) {
        ASSERT_EQ(::chown(profile.Path().c_str(), nobody, nobody), 0); // only the owner can give a copy the same owner
    }
    const ino_t number = StatusOf(profile.Path()).st_ino;
    EXPECT_TRUE(AsOrdinaryUser([&] { return profile.Write(L"S", L"k", "2"); }));
    fs::permissions(profile.Folder(), fs::perms::all);
    EXPECT_EQ(profile.Content(), newContent);
    EXPECT_NE(StatusOf(profile.Path()).st_ino, number) << "the file must have been replaced";
}

TEST(ProfileReplacing, WritesTheTargetOfALinkAndKeepsTheLink) {
    const ProfileOnDisk profile;
    const fs::path elsewhere = profile.Folder() / "elsewhere";
    fs::create_directory(elsewhere);
    std::ofstream(elsewhere / "real.ini") << oldContent;
    fs::create_symlink("elsewhere/middle.ini", profile.Path());
    fs::create_symlink("real.ini", elsewhere / "middle.ini");
    EXPECT_TRUE(profile.Write(L"S", L"k", "2"));
    EXPECT_TRUE(fs::is_symlink(profile.Path()));
    EXPECT_TRUE(fs::is_symlink(elsewhere / "middle.ini"));
    EXPECT_TRUE(fs::is_regular_file(fs::symlink_status(elsewhere / "real.ini")));
    EXPECT_EQ(profile.Content(), newContent);
}

TEST(ProfileReplacing, CreatesTheTargetOfALink) {
    const ProfileOnDisk profile;
    fs::create_symlink(profile.Folder() / "real.ini", profile.Path());
    EXPECT_TRUE(profile.Write(L"S", L"k", "1"));
    EXPECT_TRUE(fs::is_symlink(profile.Path()));
    EXPECT_TRUE(fs::is_regular_file(fs::symlink_status(profile.Folder() / "real.ini")));
    fs::remove(profile.Path());
    fs::create_symlink(profile.Folder() / "none" / "real.ini", profile.Path());
    EXPECT_FALSE(profile.Write(L"S", L"k", "1")) << "no folder is created";
}

TEST(ProfileReplacing, FailsForACircleOfLinks) {
    const ProfileOnDisk profile;
    fs::create_symlink("head.ini", profile.Path());
    EXPECT_FALSE(profile.Write(L"S", L"k", "1"));
    EXPECT_EQ(profile.Read(L"S", L"k"), "default");
}

TEST(ProfileReplacing, RefusesFilesThatAreNotRegular) {
    const ProfileOnDisk profile;
    ASSERT_EQ(::mkfifo(profile.Path().c_str(), 0666), 0);
    EXPECT_EQ(profile.Read(L"S", L"k"), "default") << "opening a pipe must not wait";
    EXPECT_FALSE(profile.Write(L"S", L"k", "1"));
    EXPECT_TRUE(fs::is_fifo(profile.Path()));
}

TEST(ProfileReplacing, RefusesADevice) {
    const ProfileOnDisk profile;
    // A null device created by this test, so that the system's cannot be damaged.
    if (::mknod(profile.Path().c_str(), S_IFCHR | 0666, makedev(1, 3)) != 0) GTEST_SKIP() << "only root can make one";
    EXPECT_EQ(profile.Read(L"S", L"k"), "default");
    EXPECT_FALSE(profile.Write(L"S", L"k", "1"));
    EXPECT_TRUE(fs::is_character_file(profile.Path()));
}

TEST(ProfileReplacing, RefusesFilesOfMoreThan16Megabytes) {
    const ProfileOnDisk profile;
    profile.Put(oldContent);
    fs::resize_file(profile.Path(), (16U << 20) + 1);
    EXPECT_EQ(profile.Read(L"S", L"k"), "default");
    EXPECT_FALSE(profile.Write(L"S", L"k", "2"));
    EXPECT_EQ(fs::file_size(profile.Path()), (16U << 20) + 1);
}

TEST(ProfileReplacing, FailsForNamesThatNoFileCanHave) {
    const ProfileOnDisk profile;
    const std::wstring folder = profile.Folder().wstring();
    EXPECT_FALSE(WriteProfileText(L"S", L"k", "1", (folder + L"/\xD800.ini").c_str())) << "half a character";
    EXPECT_FALSE(WriteProfileText(L"S", L"k", "1", (folder + L"/" + std::wstring(300, L'x')).c_str())) << "too long";
    EXPECT_FALSE(WriteProfileText(L"S", L"k", "1", (folder + L"/head.ini/").c_str())) << "the name of a folder";
    EXPECT_EQ(profile.FilesInFolder(), 0);
}

TEST(ProfileReplacing, AcceptsAFileNameOfAnyCharacters) {
    const ProfileOnDisk profile;
    const std::wstring path = profile.Folder().wstring() + L"/K\x00F6pfe \x4E00 \x1F600.ini";
    EXPECT_TRUE(WriteProfileText(L"S", L"k", "1", path.c_str()));
    EXPECT_TRUE(fs::exists(profile.Folder() / "K\xC3\xB6pfe \xE4\xB8\x80 \xF0\x9F\x98\x80.ini"));
}

TEST(ProfileReplacing, AcceptsAFileNameOfTheLargestLength) {
    const ProfileOnDisk profile;
    const std::wstring path = profile.Folder().wstring() + L"/" + std::wstring(255, L'x');
    EXPECT_TRUE(WriteProfileText(L"S", L"k", "1", path.c_str()));
    EXPECT_TRUE(WriteProfileText(L"S", L"k", "2", path.c_str()));
}

TEST(ProfileReplacing, LooksForANameWithoutAFolderInTheCurrentOne) {
    const ProfileOnDisk profile;
    EXPECT_TRUE(InAnotherProcess([&] {
        fs::current_path(profile.Folder());
        return WriteProfileText(L"S", L"k", "1", L"head.ini") && WriteProfileText(L"S", L"k", "2", L"head.ini");
    }));
    EXPECT_EQ(profile.Content(), newContent);
}

TEST(ProfileReplacing, DoesNotUseTheCopiesOfOtherSaves) {
    const ProfileOnDisk profile;
    // The names that this process would try first. A killed process with the same number can have left them.
    for (int i = 0; i < 90; ++i)
        std::ofstream(profile.Folder() / (".qmv40-" + std::to_string(::getpid()) + "-" + std::to_string(i) + ".tmp"))
            << "theirs";
    EXPECT_TRUE(profile.Write(L"S", L"k", "1"));
    EXPECT_EQ(profile.Read(L"S", L"k"), "1");
    EXPECT_EQ(profile.FilesInFolder(), 91);
}

} // namespace
