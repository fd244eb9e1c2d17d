#include "platform/ProfileOnDisk.h"
#include "support/portable/OtherProcess.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <iterator>
#include <string>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

/// A file is replaced whole or not at all, and stays the file that it was in everything but its content.

namespace {

namespace fs = std::filesystem;

constexpr const char* oldContent = "[S]\r\nk=1\r\n";
constexpr const char* newContent = "[S]\r\nk=2\r\n";

std::vector<std::string> NamesIn(const fs::path& folder) {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder)) names.push_back(entry.path().filename());
    return names;
}

struct stat StatusOf(const fs::path& path) {
    struct stat status {};
    EXPECT_EQ(::stat(path.c_str(), &status), 0);
    return status;
}

/// A profile that everybody may reach.
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
    EXPECT_EQ(NamesIn(profile.Folder()), std::vector<std::string>{"head.ini"});
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
    if (::geteuid() != 0) GTEST_SKIP() << "only root can give a file away";
    const ProfileOnDisk profile;
    profile.Put(oldContent);
    ASSERT_EQ(::chown(profile.Path().c_str(), 1234, 5678), 0);
    EXPECT_TRUE(profile.Write(L"S", L"k", "2"));
    EXPECT_EQ(StatusOf(profile.Path()).st_uid, 1234U);
    EXPECT_EQ(StatusOf(profile.Path()).st_gid, 5678U);
}

TEST(ProfileReplacing, GivesANewFileThePermissionsThatTheProcessGivesItsFiles) {
    const ProfileOnDisk profile;
    EXPECT_TRUE(InAnotherProcess([&] {
        ::umask(027);
        return profile.Write(L"S", L"k", "1");
    }));
    EXPECT_EQ(StatusOf(profile.Path()).st_mode & 07777U, 0640U);
}

TEST(ProfileReplacing, NeverShowsAnythingButTheOldContentOrTheNew) {
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

TEST(ProfileReplacing, LeavesTheOldContentWhenTheDiskIsFull) {
    const ProfileOnDisk profile;
    const std::string old = "[S]\nfilling=" + std::string(10000, 'x') + "\nk=1\n";
    profile.Put(old);
    EXPECT_TRUE(InAnotherProcess([&] {
        const rlimit limit{5000, 5000}; // no file may grow beyond it
        ::setrlimit(RLIMIT_FSIZE, &limit);
        std::signal(SIGXFSZ, SIG_IGN);
        return !profile.Write(L"S", L"k", "2");
    }));
    EXPECT_EQ(profile.Content(), old);
    EXPECT_EQ(NamesIn(profile.Folder()), std::vector<std::string>{"head.ini"});
}

TEST(ProfileReplacing, MakesNoFileWhenTheDiskIsFull) {
    const ProfileOnDisk profile;
    EXPECT_TRUE(InAnotherProcess([&] {
        const rlimit limit{3, 3};
        ::setrlimit(RLIMIT_FSIZE, &limit);
        std::signal(SIGXFSZ, SIG_IGN);
        return !profile.Write(L"S", L"k", "2");
    }));
    EXPECT_TRUE(NamesIn(profile.Folder()).empty());
}

TEST(ProfileReplacing, LeavesAFileThatMustNotBeWritten) {
    ProfileOnDisk profile;
    fs::permissions(Opened(profile).Path(), static_cast<fs::perms>(0444));
    EXPECT_TRUE(AsOrdinaryUser([&] { return !profile.Write(L"S", L"k", "2"); }));
    EXPECT_EQ(profile.Content(), oldContent);
    EXPECT_EQ(NamesIn(profile.Folder()), std::vector<std::string>{"head.ini"});
}

TEST(ProfileReplacing, LeavesAFileThatMustNotBeRead) {
    ProfileOnDisk profile;
    fs::permissions(Opened(profile).Path(), static_cast<fs::perms>(0222));
    EXPECT_TRUE(
        AsOrdinaryUser([&] { return profile.Read(L"S", L"k") == "default" && !profile.Write(L"S", L"k", "2"); }));
    fs::permissions(profile.Path(), static_cast<fs::perms>(0666));
    EXPECT_EQ(profile.Content(), oldContent);
}

TEST(ProfileReplacing, IsRefusedInAFolderThatMustNotBeWritten) {
    ProfileOnDisk profile;
    fs::permissions(Opened(profile).Folder(), static_cast<fs::perms>(0555));
    EXPECT_TRUE(AsOrdinaryUser([&] { return !profile.Write(L"S", L"k", "2"); }));
    fs::permissions(profile.Folder(), fs::perms::all);
    EXPECT_EQ(profile.Content(), oldContent);
}

TEST(ProfileReplacing, WorksInAFolderThatMayBeWrittenButNotListed) {
    ProfileOnDisk profile;
    fs::permissions(Opened(profile).Folder(), static_cast<fs::perms>(0333));
    EXPECT_TRUE(AsOrdinaryUser([&] { return profile.Write(L"S", L"k", "2"); }));
    fs::permissions(profile.Folder(), fs::perms::all);
    EXPECT_EQ(profile.Content(), newContent);
}

TEST(ProfileReplacing, ReplacesWhatALinkLeadsToAndKeepsTheLink) {
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

TEST(ProfileReplacing, MakesTheFileThatALinkLeadsTo) {
    const ProfileOnDisk profile;
    fs::create_symlink(profile.Folder() / "real.ini", profile.Path());
    EXPECT_TRUE(profile.Write(L"S", L"k", "1"));
    EXPECT_TRUE(fs::is_symlink(profile.Path()));
    EXPECT_TRUE(fs::is_regular_file(fs::symlink_status(profile.Folder() / "real.ini")));
}

TEST(ProfileReplacing, IsRefusedForLinksThatLeadInACircle) {
    const ProfileOnDisk profile;
    fs::create_symlink("head.ini", profile.Path());
    EXPECT_FALSE(profile.Write(L"S", L"k", "1"));
    EXPECT_EQ(profile.Read(L"S", L"k"), "default");
}

TEST(ProfileReplacing, NeitherReadsNorReplacesAnythingButAnOrdinaryFile) {
    const ProfileOnDisk profile;
    ASSERT_EQ(::mkfifo(profile.Path().c_str(), 0666), 0);
    EXPECT_EQ(profile.Read(L"S", L"k"), "default") << "and does not wait for a pipe's other end";
    EXPECT_FALSE(profile.Write(L"S", L"k", "1"));
    EXPECT_TRUE(fs::is_fifo(profile.Path()));
}

TEST(ProfileReplacing, NeitherReadsNorReplacesADevice) {
    const ProfileOnDisk profile;
    // One of the test's own, that swallows everything: the system's must not be at stake.
    if (::mknod(profile.Path().c_str(), S_IFCHR | 0666, makedev(1, 3)) != 0) GTEST_SKIP() << "only root can make one";
    EXPECT_EQ(profile.Read(L"S", L"k"), "default");
    EXPECT_FALSE(profile.Write(L"S", L"k", "1"));
    EXPECT_TRUE(fs::is_character_file(profile.Path()));
}

TEST(ProfileReplacing, DoesNotTouchFilesTooLargeToBeOurs) {
    const ProfileOnDisk profile;
    profile.Put(oldContent);
    fs::resize_file(profile.Path(), (16U << 20) + 1);
    EXPECT_EQ(profile.Read(L"S", L"k"), "default");
    EXPECT_FALSE(profile.Write(L"S", L"k", "2"));
    EXPECT_EQ(fs::file_size(profile.Path()), (16U << 20) + 1);
}

TEST(ProfileReplacing, IsRefusedForNamesThatNoFileCanHave) {
    const ProfileOnDisk profile;
    const std::wstring folder = profile.Folder().wstring();
    EXPECT_FALSE(WriteProfileText(L"S", L"k", "1", nullptr));
    EXPECT_FALSE(WriteProfileText(L"S", L"k", "1", (folder + L"/\xD800.ini").c_str())) << "half a character";
    EXPECT_FALSE(WriteProfileText(L"S", L"k", "1", (folder + L"/" + std::wstring(300, L'x')).c_str())) << "too long";
    EXPECT_FALSE(WriteProfileText(L"S", L"k", "1", (folder + L"/head.ini/").c_str())) << "a folder's";
    EXPECT_TRUE(NamesIn(profile.Folder()).empty());
}

TEST(ProfileReplacing, TakesAFileNameOfAnyCharacters) {
    const ProfileOnDisk profile;
    const std::wstring path = profile.Folder().wstring() + L"/K\x00F6pfe \x4E00 \x1F600.ini";
    EXPECT_TRUE(WriteProfileText(L"S", L"k", "1", path.c_str()));
    EXPECT_EQ(NamesIn(profile.Folder()), std::vector<std::string>{"K\xC3\xB6pfe \xE4\xB8\x80 \xF0\x9F\x98\x80.ini"});
}

TEST(ProfileReplacing, TakesAFileNameOfFullLength) {
    const ProfileOnDisk profile;
    const std::wstring path = profile.Folder().wstring() + L"/" + std::wstring(255, L'x');
    EXPECT_TRUE(WriteProfileText(L"S", L"k", "1", path.c_str()));
    EXPECT_TRUE(WriteProfileText(L"S", L"k", "2", path.c_str()));
}

TEST(ProfileReplacing, TakesANameWithoutAFolderAsOneInTheCurrentFolder) {
    const ProfileOnDisk profile;
    EXPECT_TRUE(InAnotherProcess([&] {
        fs::current_path(profile.Folder());
        return WriteProfileText(L"S", L"k", "1", L"head.ini") && WriteProfileText(L"S", L"k", "2", L"head.ini");
    }));
    EXPECT_EQ(profile.Content(), newContent);
}

TEST(ProfileReplacing, LosesNoKeyOfProgramsThatSaveAtTheSameTime) {
    const ProfileOnDisk profile;
    std::vector<pid_t> children;
    for (const wchar_t* const section : {L"A", L"B", L"C"}) {
        const pid_t child = ::fork();
        if (child == 0) {
            bool allWritten = true;
            for (int i = 0; i < 10; ++i)
                allWritten = allWritten && profile.Write(section, std::to_wstring(i).c_str(), "1");
            ::_exit(allWritten ? 0 : 1);
        }
        children.push_back(child);
    }
    for (const pid_t child : children) {
        int status = 1;
        ::waitpid(child, &status, 0);
        EXPECT_EQ(status, 0);
    }
    for (const wchar_t* const section : {L"A", L"B", L"C"})
        for (int i = 0; i < 10; ++i) EXPECT_EQ(profile.Read(section, std::to_wstring(i).c_str()), "1");
}

TEST(ProfileReplacing, DoesNotWaitForEverForAFolderThatIsLocked) {
    const ProfileOnDisk profile;
    const int folder = ::open(profile.Folder().c_str(), O_RDONLY | O_DIRECTORY);
    ASSERT_EQ(::flock(folder, LOCK_EX), 0);
    const auto start = std::chrono::steady_clock::now();
    EXPECT_TRUE(profile.Write(L"S", L"k", "1"));
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
    ::close(folder);
}

TEST(ProfileReplacing, TakesAwayWhatACrashedProgramLeftBehind) {
    const ProfileOnDisk profile;
    std::ofstream(profile.Folder() / ".qmv40.tmp") << "half a fi";
    EXPECT_TRUE(profile.Write(L"S", L"k", "1"));
    EXPECT_EQ(profile.Read(L"S", L"k"), "1");
    EXPECT_EQ(NamesIn(profile.Folder()), std::vector<std::string>{"head.ini"});
}

TEST(ProfileReplacing, PassesOverWhatItCannotTakeAway) {
    const ProfileOnDisk profile;
    fs::create_directory(profile.Folder() / ".qmv40.tmp");
    EXPECT_TRUE(profile.Write(L"S", L"k", "1"));
    EXPECT_EQ(profile.Read(L"S", L"k"), "1");
}

// Without the folder's lock, whose owner is not to be disturbed, there may be other writers at work.
TEST(ProfileReplacing, LeavesOtherWritersFilesAloneInAFolderThatIsLocked) {
    const ProfileOnDisk profile;
    const int folder = ::open(profile.Folder().c_str(), O_RDONLY | O_DIRECTORY);
    ASSERT_EQ(::flock(folder, LOCK_EX), 0);
    // The names that this process would try first.
    const auto taken = [&](int i) {
        return profile.Folder() / (".qmv40-" + std::to_string(::getpid()) + "-" + std::to_string(i) + ".tmp");
    };
    for (int i = 0; i < 90; ++i) std::ofstream(taken(i)) << "theirs";
    std::ofstream(profile.Folder() / ".qmv40.tmp") << "theirs";
    EXPECT_TRUE(profile.Write(L"S", L"k", "1"));
    EXPECT_EQ(profile.Read(L"S", L"k"), "1");
    EXPECT_EQ(NamesIn(profile.Folder()).size(), 92U);
    ::close(folder);
}

} // namespace
