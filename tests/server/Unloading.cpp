#include "server/LateCall.h"

#include "server/Client.h"
#include "support/AlignmentArray.h"

/// A client may load and unload the component for as long as it runs.

namespace {

struct BusyMemory {
    long long blocks = 0;
    long long bytes = 0;
};

/// What the platform may take for itself over a thousand rounds, in its other threads for one: far below one block a
/// round.
constexpr long long strayBlocks = 20;
constexpr long long strayBytes = 4096;

/// The compiler's runtime makes a record of each thread on which something is thrown, and frees it with the thread but
/// not with the module. It is made once for each loading, however much is thrown.
constexpr long long threadRecordBytes = 2048;

/// What is allocated in all of the process's heaps.
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

/// Uses what the module has, by its entries and by name. Nothing fails.
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

/// Failures of the three kinds: returned, thrown and reported by name.
void Fail(const LoadedServer& server) {
    const auto calculator = server.Create();
    ASSERT_TRUE(calculator);
    EXPECT_TRUE(FAILED(calculator->SetCurrentHeadPosition(7.0, 0.0)));
    RequiredMoves moves{};
    EXPECT_THROW(calculator->CalculateMove(0.0, 0.0, &moves), HRESULT);
    EXPECT_EQ(Call(*calculator.Get(), L"GetStartPosition").code, DISP_E_EXCEPTION);
    SetErrorInfo(0, nullptr);
}

class Unloading : public testing::Test {
protected:
    // The platform keeps a few freed texts for reuse unless told not to before it is first used.
    static void SetUpTestSuite() { SetEnvironmentVariableW(L"OANOCACHE", L"1"); }
    void TearDown() override { EXPECT_EQ(GetModuleHandleW(ServerPath().c_str()), nullptr) << "the module is gone"; }

    static constexpr int warmUp = 50;
    static constexpr int rounds = 1000;

    /// How much more is allocated after the rounds than before them.
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

TEST_F(Unloading, AThousandTimesLeavesNothingBehind) {
    const BusyMemory growth = GrowthOver([] {
        const LoadedServer server;
        Use(server);
        EXPECT_EQ(server.CanUnloadNow(), S_OK);
    });
    EXPECT_LE(growth.blocks, strayBlocks) << growth.bytes << " bytes";
    EXPECT_LE(growth.bytes, strayBytes);
}

TEST_F(Unloading, IsNotNeededToGetRidOfFailures) {
    BusyMemory growth;
    {
        const LoadedServer server;
        growth = GrowthOver([&] { Fail(server); });
    }
    EXPECT_LE(growth.blocks, strayBlocks) << growth.bytes << " bytes";
    EXPECT_LE(growth.bytes, strayBytes);
}

TEST_F(Unloading, AThousandTimesAfterFailuresLeavesTheRuntimesThreadRecordsAtMost) {
    const BusyMemory growth = GrowthOver([] {
        const LoadedServer server;
        Fail(server);
        EXPECT_EQ(server.CanUnloadNow(), S_OK);
    });
    EXPECT_LE(growth.bytes, rounds * threadRecordBytes);
}

} // namespace
