#include "tests/faults/portable/TracedProcess.h"

#include "interface/ErrorCodes.h"
#include "platform/portable/FileReading.h"
#include "tests/support/ErrorRecord.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/TwoGeometries.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <fstream>
#include <iostream>
#include <iterator>
#include <sys/syscall.h>

using namespace qmv40;

/// A save is interrupted at each of its system calls in turn: the process is killed, or the call fails.

namespace {

namespace fs = std::filesystem;

/// The result of a save or a load, as the exit code of its process.
enum Verdict { succeeded = 0, refused = 1, wrong = 2 };

constexpr long mostCalls = 2000;

/// Only calls that concern a file system: not those for memory, signals and threads, and not those on pipes, with which
/// the sanitizers check memory.
bool ConcernsFiles(const SystemCall& call) {
#ifdef __x86_64__
    constexpr long excluded[] = {SYS_mmap,   SYS_munmap, SYS_mremap,         SYS_mprotect, SYS_madvise,
                                 SYS_brk,    SYS_futex,  SYS_rt_sigprocmask, SYS_gettid,   SYS_getpid,
                                 SYS_tgkill, SYS_pipe,   SYS_pipe2};
    if (std::ranges::find(excluded, call.number) != std::end(excluded)) return false;
#endif
    return !call.isOnPipe;
}

class EverySystemCall : public testing::Test {
protected:
    EverySystemCall() { TwoGeometries::Put(path, 1); }

    std::size_t FilesInFolder() const {
        const fs::directory_iterator files(folder.Path());
        return static_cast<std::size_t>(std::distance(begin(files), end(files)));
    }

    std::size_t RemoveOtherFiles() const {
        std::vector<fs::path> others;
        for (const auto& entry : fs::directory_iterator(folder.Path()))
            if (entry.path() != path) others.push_back(entry.path());
        for (const fs::path& other : others) fs::remove(other);
        return others.size();
    }
    /// With O_TMPFILE the copy has a name only from linkat to renameat. Without it, it has one from its creation on.
    bool MayLeaveACopy(Interruption::Kind kind, const SystemCall& call) const {
        const FileDescriptor nameless(::open(folder.Path().c_str(), O_WRONLY | O_TMPFILE, 0600));
        if (!nameless.IsOpen()) return true;
        return call.number == (kind == Interruption::Kind::KillAfter ? SYS_linkat : SYS_renameat);
    }

    void Save() {
        raised = ReturnedBy([&] { return second->SaveHeadGeometryToFile(name.Address()); });
    }
    /// After a success all entries are written. After a failure the code and the record are right, the file is
    /// unchanged, no copy is left, and the object can still save.
    int VerdictOnSave() {
        if (raised.code == S_OK) return TwoGeometries::HeldByFile(path) == 2 ? succeeded : wrong;
        const bool isRightCode = raised.code == QMV_E_WRITE_TO_FILE && raised.record &&
                                 raised.record->description == L"Failed To Write To File";
        if (!isRightCode || TwoGeometries::HeldByFile(path) != 1 || FilesInFolder() != 1) return wrong;
        const bool savesAgain = second->SaveHeadGeometryToFile(name.Address()) == S_OK;
        return savesAgain && TwoGeometries::HeldByFile(path) == 2 ? refused : wrong;
    }

    /// The entries before the failure must be whole in the file.
    int VerdictOnSaveInPlace() const {
        const std::string content = TwoGeometries::ContentOf(path);
        if (raised.code == S_OK) return content == TwoGeometries::FileText(2) ? succeeded : wrong;
        const bool isRightCode = raised.code == QMV_E_WRITE_TO_FILE && raised.record &&
                                 raised.record->description == L"Failed To Write To File";
        return isRightCode && FilesInFolder() == 2 && IsBeginOfSave(content) ? refused : wrong;
    }
    /// The first entries of the second geometry, and the rest of the first one.
    static bool IsBeginOfSave(const std::string& content) {
        const std::string first = TwoGeometries::FileText(1), second = TwoGeometries::FileText(2);
        for (std::size_t end = 0; end < first.size(); end = first.find('\n', end) + 1)
            if (content == second.substr(0, end) + first.substr(end)) return true;
        return false;
    }

    void Load() {
        raised = ReturnedBy([&] { return loader->LoadHeadGeometryFromFile(name.Address()); });
    }
    int VerdictOnLoad() {
        if (raised.code == S_OK) return TwoGeometries::HeldBy(*loader.Get()) == 1 ? succeeded : wrong;
        if (raised.code != QMV_E_READ_FROM_FILE || !raised.record) return wrong;
        const bool loadsAgain = loader->LoadHeadGeometryFromFile(name.Address()) == S_OK;
        return loadsAgain && TwoGeometries::HeldBy(*loader.Get()) == 1 ? refused : wrong;
    }

    TemporaryFolder folder;
    fs::path path = folder.Path("head.ini");
    Bstr name{path};
    ComPointer<IQMVCalculator2> second = TwoGeometries::Calculator(folder.Path(), 2);
    ComPointer<IQMVCalculator2> loader = CreateCalculator();
    Raised raised;
};

TEST_F(EverySystemCall, CanBeTheLastOneOfAKilledSave) {
    long calls = 0;
    std::size_t left = 0;
    int found[] = {0, 0, 0};
    for (const auto kind : {Interruption::Kind::KillBefore, Interruption::Kind::KillAfter}) {
        bool wasReached = true;
        for (long call = 0; wasReached && call < mostCalls; ++call) {
            SCOPED_TRACE(testing::Message()
                         << (kind == Interruption::Kind::KillBefore ? "before" : "after") << " call " << call);
            TwoGeometries::Put(path, 1);
            const Traced traced = RunTraced(
                {.kind = kind, .call = call, .applies = ConcernsFiles}, [&] { Save(); }, [] { return 0; });
            wasReached = traced.wasReached;
            if (wasReached && !traced.wasInterrupted) continue;
            const int held = TwoGeometries::HeldByFile(path);
            ASSERT_NE(held, 0) << TwoGeometries::ContentOf(path);
            ++found[held];
            const std::size_t copies = RemoveOtherFiles();
            EXPECT_TRUE(copies == 0 || MayLeaveACopy(kind, traced.call)) << "system call " << traced.call.number;
            left += copies;
            calls = std::max(calls, call);
        }
        ASSERT_FALSE(wasReached) << "no end of system calls";
    }
    std::cout << "killed before and after each system call, the highest number " << calls << ": " << found[1]
              << " old files, " << found[2] << " new ones, " << left << " copies left behind" << std::endl;
    EXPECT_GT(found[1], 10) << "there are more calls before the file is replaced";
    EXPECT_GT(found[2], 2) << "there are calls after the file is replaced";
}

// A save that finds its file replaced meanwhile must not write entries into the new one: a load would find a mixture.
TEST_F(EverySystemCall, OfASaveCanComeAfterAnotherSave) {
    const auto first = TwoGeometries::Calculator(folder.Path(), 1);
    int found[] = {0, 0, 0};
    bool wasReached = true;
    for (long call = 0; wasReached && call < mostCalls; ++call) {
        SCOPED_TRACE(call);
        TwoGeometries::Put(path, 1);
        std::ifstream replaced;
        const auto saveTwice = [&] {
            EXPECT_EQ(second->SaveHeadGeometryToFile(name.Address()), S_OK);
            EXPECT_EQ(first->SaveHeadGeometryToFile(name.Address()), S_OK);
            replaced.open(path);
        };
        wasReached = RunTraced(
                         {.kind = Interruption::Kind::Meanwhile, .call = call, .meanwhile = saveTwice}, [&] { Save(); },
                         [] { return 0; })
                         .wasReached;
        const int held = TwoGeometries::HeldByFile(path);
        ASSERT_NE(held, 0) << TwoGeometries::ContentOf(path);
        ++found[held];
        if (!wasReached) break;
        const std::string left{std::istreambuf_iterator<char>(replaced), {}};
        EXPECT_EQ(left, TwoGeometries::FileText(1)) << "the entries were written into the file of another save";
    }
    ASSERT_FALSE(wasReached) << "no end of system calls";
    EXPECT_GT(found[1], 0) << "in some runs the other save must be the last";
    EXPECT_GT(found[2], 10) << "in most runs this save must be the last";
}

#ifdef __x86_64__

/// Calls that a signal can interrupt. The component repeats an interrupted call: this is not a failure.
bool MayBeInterrupted(long number) {
    constexpr long calls[] = {SYS_openat, SYS_pread64, SYS_write, SYS_fsync, SYS_close, SYS_flock};
    return std::ranges::find(calls, number) != std::end(calls);
}

struct ErrorNumber {
    int error;
    const char* name;
};
constexpr ErrorNumber errorNumbers[] = {{EINTR, "EINTR"},   {EIO, "EIO"},       {ENOSPC, "ENOSPC"}, {EDQUOT, "EDQUOT"},
                                        {EACCES, "EACCES"}, {EMFILE, "EMFILE"}, {ENOMEM, "ENOMEM"}, {EROFS, "EROFS"}};

/// Makes each system call of `action` fail in turn, with each error number.
void FailEveryCall(const std::function<void()>& before, const std::function<void()>& action,
                   const std::function<int()>& verdict, int leastRefused) {
    int counts[] = {0, 0, 0};
    for (const auto& [error, errorName] : errorNumbers) {
        bool wasReached = true;
        for (long call = 0; wasReached && call < mostCalls; ++call) {
            before();
            const Traced traced = RunTraced({Interruption::Kind::Fail, call, error, ConcernsFiles}, action, verdict);
            wasReached = traced.wasReached;
            if (!traced.wasInterrupted) continue;
            SCOPED_TRACE(testing::Message()
                         << "call " << call << ", number " << traced.call.number << ": " << errorName);
            const int outcome = traced.exitCode;
            ASSERT_TRUE(outcome == succeeded || outcome == refused) << outcome;
            if (error == EINTR && MayBeInterrupted(traced.call.number)) {
                EXPECT_EQ(outcome, succeeded);
            }
            ++counts[outcome];
        }
        ASSERT_FALSE(wasReached) << "no end of system calls";
    }
    std::cout << "failed " << counts[succeeded] + counts[refused] << " system calls: " << counts[refused]
              << " refused, " << counts[succeeded] << " succeeded" << std::endl;
    EXPECT_GE(counts[refused], leastRefused);
}

// If a call fails that the replacement by a copy needs, the entries are written in place. So one failing call need not
// end the save.
TEST_F(EverySystemCall, OfASaveCanFail) {
    FailEveryCall([&] { TwoGeometries::Put(path, 1); }, [&] { Save(); }, [&] { return VerdictOnSave(); }, 0);
}

// If no copy can be made, the first failing call ends the save.
TEST_F(EverySystemCall, OfASaveInPlaceCanFail) {
    const fs::path other = folder.Path("other.ini");
    const auto putWithTwoNames = [&] {
        TwoGeometries::Put(path, 1);
        if (!fs::exists(other)) fs::create_hard_link(path, other);
    };
    FailEveryCall(
        putWithTwoNames, [&] { Save(); }, [&] { return VerdictOnSaveInPlace(); }, 11);
}

TEST_F(EverySystemCall, OfALoadCanFail) {
    FailEveryCall([] {}, [&] { Load(); }, [&] { return VerdictOnLoad(); }, 11);
}

#endif

} // namespace
