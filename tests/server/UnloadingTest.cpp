#include "tests/server/LateCall.h"

#include "tests/server/Client.h"
#include "tests/support/AlignmentArray.h"
#include "tests/support/TemporaryFolder.h"

/// A client can load and free the component any number of times. After the first request of a class object the module
/// stays in the process. In both cases repeated use must not leak memory.

namespace {

struct BusyMemory {
    long long blocks = 0;
    long long bytes = 0;
};

/// The platform's own allocations in 1000 rounds, for example in its threads: far below one block for each round.
constexpr long long strayBlocks = 20;
constexpr long long strayBytes = 4096;

/// The allocated memory in all heaps of the process.
BusyMemory Busy() {
    HANDLE heaps[64];
    const DWORD count = GetProcessHeaps(64, heaps);
    BusyMemory busy;
    for (DWORD i = 0; i < count; ++i) {
        PROCESS_HEAP_ENTRY entry{};
        HeapLock(heaps[i]);
        while (HeapWalk(heaps[i], &entry) != 0) {
            if ((entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) == 0) continue;
            ++busy.blocks;
            busy.bytes += static_cast<long long>(entry.cbData);
        }
        HeapUnlock(heaps[i]);
    }
    return busy;
}

/// Uses the module through its interfaces and by late binding, without failures.
void Use(const LoadedServer& server) {
    const auto calculator = server.Create();
    ASSERT_TRUE(calculator);
    AlignmentArray aAxisPoints(SimulatedHead().ASet(45.0));
    AlignmentArray bAxisPoints(SimulatedHead().BSet(60.0));
    EXPECT_EQ(calculator->EnterHeadGeometry(aAxisPoints.Address(), bAxisPoints.Address()), S_OK);
    EXPECT_EQ(Call(*calculator.Get(), L"SetCurrentHeadPosition", 15.0, 30.0).code, S_OK);
    RequiredMoves moves{};
    EXPECT_EQ(calculator->CalculateMove(90.0, -45.0, &moves), S_OK);
}

/// Failures of the three kinds: returned, thrown, and reported by late binding.
void Fail(const LoadedServer& server) {
    const auto calculator = server.Create();
    ASSERT_TRUE(calculator);
    EXPECT_TRUE(FAILED(calculator->SetCurrentHeadPosition(7.0, 0.0)));
    RequiredMoves moves{};
    if (catchesWhatIsThrown) {
        EXPECT_THROW(calculator->CalculateMove(0.0, 0.0, &moves), HRESULT);
    }
    EXPECT_EQ(Call(*calculator.Get(), L"GetStartPosition").code, DISP_E_EXCEPTION);
    SetErrorInfo(0, nullptr);
}

class Unloading : public testing::Test {
protected:
    // Without this setting the platform keeps freed texts for reuse. It must be set before the platform is used.
    static void SetUpTestSuite() { SetEnvironmentVariableW(L"OANOCACHE", L"1"); }

    static constexpr int warmUp = 50;
    static constexpr int rounds = 1000;

    /// The difference of the allocated memory after and before the rounds.
    template <class Round> static BusyMemory GrowthOver(Round&& round) {
        for (int i = 0; i < warmUp; ++i) round();
        const BusyMemory before = Busy();
        EXPECT_GT(before.blocks, 0);
        for (int i = 0; i < rounds && !HasFailure(); ++i) round();
        const BusyMemory after = Busy();
        return {after.blocks - before.blocks, after.bytes - before.bytes};
    }

    const Apartment apartment;
    const SettingsFixture settings;
};

void ExpectNothingLeft(const BusyMemory& growth) {
    EXPECT_LE(growth.blocks, strayBlocks) << growth.bytes << " bytes";
    EXPECT_LE(growth.bytes, strayBytes);
}

TEST_F(Unloading, RemovesTheModuleIfNoClassWasRequested) {
    const TemporaryFolder folder;
    const auto copy = folder.Path("CoQMV40Calculator.dll");
    std::filesystem::copy_file(ServerPath(), copy);
    const BusyMemory growth = GrowthOver([&] {
        void* object = nullptr;
        EXPECT_EQ(LoadedServer(copy).GetClassObject(unknownIdentifier, IID_IUnknown, &object),
                  CLASS_E_CLASSNOTAVAILABLE);
        EXPECT_EQ(GetModuleHandleW(copy.c_str()), nullptr);
    });
    // The compiler's 32-bit runtime allocates locks of 356 bytes each time it is loaded, and never frees them.
    if (sizeof(void*) == 8) ExpectNothingLeft(growth);
}

TEST_F(Unloading, KeepsTheModuleAfterARequestOfTheClass) {
    EXPECT_TRUE(LoadedServer().Factory());
    EXPECT_NE(GetModuleHandleW(ServerPath().c_str()), nullptr);
    EXPECT_EQ(LoadedServer().CanUnloadNow(), S_OK) << "the pinned module must still report that it is unused";
}

TEST_F(Unloading, AThousandTimesLeaksNothing) {
    ExpectNothingLeft(GrowthOver([] {
        const LoadedServer server;
        Use(server);
        EXPECT_EQ(server.CanUnloadNow(), S_OK);
    }));
}

TEST_F(Unloading, AThousandTimesAfterFailuresLeaksNothing) {
    ExpectNothingLeft(GrowthOver([] {
        const LoadedServer server;
        Fail(server);
        EXPECT_EQ(server.CanUnloadNow(), S_OK);
    }));
}

TEST_F(Unloading, IsNotNeededToFreeTheMemoryOfFailures) {
    const LoadedServer server;
    ExpectNothingLeft(GrowthOver([&] { Fail(server); }));
}

} // namespace
