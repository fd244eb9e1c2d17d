#include "server/LateCall.h"

#include "server/Client.h"

/// A client may load and unload the component for as long as it runs.

namespace {

struct BusyMemory {
    std::size_t blocks = 0;
    std::size_t bytes = 0;
};

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
            busy.bytes += entry.cbData;
        }
        HeapUnlock(heaps[i]);
    }
    return busy;
}

/// Loads the module, uses what it has, failures included, and unloads it.
void UseOnce(const Bstr& nowhere) {
    const LoadedServer server;
    {
        const auto calculator = server.Create();
        ASSERT_TRUE(calculator);
        EXPECT_EQ(calculator->SetCurrentHeadPosition(15.0, 30.0), S_OK);
        RequiredMoves moves{};
        EXPECT_THROW(calculator->CalculateMove(0.0, 0.0, &moves), HRESULT);
        BSTR name = const_cast<BSTR>(nowhere.Text());
        EXPECT_TRUE(FAILED(calculator->LoadHeadGeometryFromFile(&name)));
        EXPECT_EQ(Call(*calculator.Get(), L"GetPoleSpherePosition").code, S_OK);
        SetErrorInfo(0, nullptr);
    }
    EXPECT_EQ(server.CanUnloadNow(), S_OK);
}

TEST(Unloading, AThousandTimesLeavesNothingBehind) {
    // The platform keeps a few freed texts for reuse unless told not to.
    SetEnvironmentVariableW(L"OANOCACHE", L"1");
    const Apartment apartment;
    const SettingsFixture settings;
    const Bstr nowhere(std::wstring(L"C:\\no such folder\\head.ini"));
    constexpr int warmUp = 50;
    constexpr int rounds = 1000;
    for (int round = 0; round < warmUp; ++round) UseOnce(nowhere);
    const BusyMemory before = Busy();
    for (int round = 0; round < rounds && !HasFailure(); ++round) UseOnce(nowhere);
    const BusyMemory after = Busy();
    EXPECT_GT(before.blocks, 0U);
    EXPECT_LE(after.blocks, before.blocks) << before.bytes << " bytes before, " << after.bytes << " after";
    EXPECT_EQ(GetModuleHandleW(ServerPath().c_str()), nullptr) << "it is gone";
}

} // namespace
