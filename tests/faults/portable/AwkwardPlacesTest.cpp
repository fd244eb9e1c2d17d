#include "interface/ErrorCodes.h"
#include "tests/support/ErrorRecord.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/TwoGeometries.h"
#include "tests/support/portable/OtherProcess.h"
#include "tests/support/portable/OwnRoot.h"

#include <gtest/gtest.h>

#include <climits>
#include <csignal>
#include <sys/mount.h>
#include <sys/resource.h>
#include <unistd.h>

using namespace qmv40;

/// Difficult places of this platform: a full disk, long names. (The tests of the profile files have permissions and
/// links.)

namespace {

namespace fs = std::filesystem;

class AwkwardPlaces : public testing::Test {
protected:
    /// Whether a save of the second geometry is refused with the right code and record.
    bool IsSaveRefused() const {
        const Raised raised = ReturnedBy([&] { return second->SaveHeadGeometryToFile(Bstr(path).Address()); });
        return raised.code == QMV_E_WRITE_TO_FILE && raised.record &&
               raised.record->source == L"RoundThePole::WriteDoubleToIniFile";
    }
    HRESULT Save() const { return second->SaveHeadGeometryToFile(Bstr(path).Address()); }
    bool IsLoaded(int which) const {
        const auto loader = CreateCalculator();
        return loader->LoadHeadGeometryFromFile(Bstr(path).Address()) == S_OK &&
               TwoGeometries::HeldBy(*loader.Get()) == which;
    }
    std::ptrdiff_t FilesInFolder() const {
        const fs::directory_iterator files(folder.Path());
        return std::distance(begin(files), end(files));
    }

    TemporaryFolder folder;
    fs::path path = folder.Path("head.ini");
    ComPointer<IQMVCalculator2> second = TwoGeometries::Calculator(folder.Path(), 2);
};

/// The file of the first geometry, with those entries of the second one that fit into `room` bytes.
std::string EntriesBefore(std::size_t room) {
    std::string text = TwoGeometries::FileText(1);
    const std::string other = TwoGeometries::FileText(2);
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t end = text.find('\n', begin) + 1;
        std::size_t last = end;
        while (last > begin && text[last - 1] == other[last - 1]) --last;
        if (last > begin && last > room) break;
        text.replace(begin, end - begin, other, begin, end - begin);
        begin = end;
    }
    return text;
}

TEST_F(AwkwardPlaces, KeepTheEntriesThatFitOnTheDisk) {
    const rlim_t whole = TwoGeometries::FileText(2).size();
    int mixtures = 0;
    for (rlim_t room = 0; room < whole; ++room) {
        SCOPED_TRACE(room);
        TwoGeometries::Put(path, 1);
        const std::string expected = EntriesBefore(room);
        const bool isComplete = expected == TwoGeometries::FileText(2);
        // A limit of this process's file sizes, because a test often has no permission to mount a disk of
        // a certain size.
        ASSERT_TRUE(InAnotherProcess([&] {
            const rlimit limit{room, room};
            std::signal(SIGXFSZ, SIG_IGN);
            return ::setrlimit(RLIMIT_FSIZE, &limit) == 0 && (isComplete ? Save() == S_OK : IsSaveRefused());
        }));
        ASSERT_EQ(TwoGeometries::ContentOf(path), expected);
        ASSERT_EQ(FilesInFolder(), 1);
        if (!isComplete && expected != TwoGeometries::FileText(1)) ++mixtures;
    }
    EXPECT_GT(mixtures, 50);
    EXPECT_EQ(Save(), S_OK);
    EXPECT_EQ(TwoGeometries::HeldByFile(path), 2);
}

TEST_F(AwkwardPlaces, KeepWholeEntriesOfANewFileThatDoesNotFit) {
    ASSERT_TRUE(InAnotherProcess([&] {
        const rlimit limit{100, 100};
        std::signal(SIGXFSZ, SIG_IGN);
        return ::setrlimit(RLIMIT_FSIZE, &limit) == 0 && IsSaveRefused();
    }));
    EXPECT_EQ(TwoGeometries::ContentOf(path), "[HEADCENTRE]\r\nX=2.222000000e+01\r\nY=2.222000000e+02\r\n"
                                              "Z=2.222000000e+03\r\n");
    EXPECT_EQ(FilesInFolder(), 1);
}

/// Mounts a disk of 16 blocks at `folder`, for this process only. False without the permission.
bool MountSmallDisk(const fs::path& folder) {
    return BecomeOwnRoot() && ::mount("none", "/", "none", MS_REC | MS_PRIVATE, nullptr) == 0 &&
           ::mount("tmpfs", folder.c_str(), "tmpfs", 0, "size=64k") == 0;
}

bool Write(const fs::path& file, std::size_t blocks) {
    std::ofstream content(file, std::ios::binary | std::ios::app);
    return static_cast<bool>((content << std::string(blocks * 4096, 'x')).flush());
}

TEST_F(AwkwardPlaces, AllowASaveThatFitsOnAFullDisk) {
    enum { asPromised, notPermitted, notFull, notRefused, notWritten, notAlone };
    const int outcome = CodeOfAnotherProcess([&]() -> int {
        if (!MountSmallDisk(folder.Path())) return notPermitted;
        TwoGeometries::Put(path, 1);
        for (int block = 0; Write(folder.Path("filler"), 1); ++block)
            if (block > 16) return notFull;
        if (Save() != S_OK || TwoGeometries::HeldByFile(path) != 2) return notWritten; // it fits into the file's block
        path = folder.Path("new.ini");
        if (!IsSaveRefused()) return notRefused;
        return FilesInFolder() == 2 ? asPromised : notAlone;
    });
    if (outcome == notPermitted)
        GTEST_SKIP() << "no permission to mount a disk; another test uses a limit of the file size";
    EXPECT_EQ(outcome, asPromised);
}

TEST_F(AwkwardPlaces, AllowNamesOfTheLargestLength) {
    fs::path place = folder.Path();
    while (place.native().size() + 101 < PATH_MAX - 120) place /= std::string(100, 'd');
    fs::create_directories(place);
    for (std::size_t length = 4000; length < PATH_MAX; length = length < 4080 ? length + 20 : length + 1) {
        SCOPED_TRACE(length);
        path = place / std::string(length - place.native().size() - 1, 'f');
        ASSERT_EQ(path.native().size(), length);
        ASSERT_EQ(Save(), S_OK);
        ASSERT_TRUE(IsLoaded(2));
    }
}

} // namespace
