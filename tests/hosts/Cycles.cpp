// A host loads and frees the component many times: the numbers of handles, thread-local storage slots and bytes stay
// the same.

#include "hosts/Subjects.h"
#include "hosts/WholeJob.h"

namespace {

struct Figures {
    long slots = 0;   ///< used thread-local storage slots
    long handles = 0; ///< open handles of this process
    long long heapBytes = 0;
    long long privateBytes = 0;

    static Figures Now();
    void Print(int rounds) const {
        printf("after %d rounds: %ld thread slots and %ld handles, %lld bytes in heaps, %lld private\n", rounds, slots,
               handles, heapBytes, privateBytes);
    }
};

/// Allocates all free thread-local storage slots, counts them and frees them. There are 1088 in all.
long SlotsTaken() {
    constexpr long all = 1088;
    static DWORD taken[all];
    long count = 0;
    while (count < all) {
        const DWORD slot = TlsAlloc();
        if (slot == 0xFFFFFFFF) break;
        taken[count++] = slot;
    }
    for (long i = 0; i < count; ++i) TlsFree(taken[i]);
    return all - count;
}

/// An entry of the system's list of all handles of all processes.
struct HandleEntry {
    void* object;
    Size process, value;
    DWORD rest[4];
};

long OpenHandles() {
    constexpr int allHandles = 64;      // SystemExtendedHandleInformation
    static Size answer[2 + 7 * 100000]; // a count, and room for at least 100,000 entries
    if (NtQuerySystemInformation(allHandles, answer, sizeof answer, nullptr) != 0) return -1;
    const auto* const entries = reinterpret_cast<const HandleEntry*>(answer + 2);
    long count = 0;
    for (Size i = 0; i < answer[0]; ++i)
        if (entries[i].process == GetCurrentProcessId()) ++count;
    return count;
}

long long BusyHeapBytes() {
    constexpr unsigned short busy = 4; // PROCESS_HEAP_ENTRY_BUSY
    HANDLE heaps[64];
    const DWORD count = GetProcessHeaps(64, heaps);
    long long bytes = 0;
    for (DWORD i = 0; i < count; ++i) {
        HeapEntry entry{};
        HeapLock(heaps[i]);
        while (HeapWalk(heaps[i], &entry) != 0)
            if ((entry.flags & busy) != 0) bytes += entry.bytes;
        HeapUnlock(heaps[i]);
    }
    return bytes;
}

Figures Figures::Now() {
    Figures figures;
    ProcessMemory memory{};
    memory.size = sizeof memory;
    K32GetProcessMemoryInfo(GetCurrentProcess(), &memory, sizeof memory);
    figures.slots = SlotsTaken();
    figures.handles = OpenHandles();
    figures.heapBytes = BusyHeapBytes();
    figures.privateBytes = static_cast<long long>(memory.pagefile);
    return figures;
}

void OneCycle(FileName& fileName) {
    const Server server;
    IQMVCalculator2* const calculator = server.Create();
    RequiredMoves moves{};
    Expect(ThrownByCalculateMove(*calculator, 0.0, 0.0, &moves) != S_OK, "a call is refused");
    Expect(RecordSays(L"Head Geometry has not been supplied and/or loaded"), "the error record has the reason");
    Expect(calculator->SaveHeadGeometryToFile(fileName.Address()) == S_OK, "a geometry is saved");
    Expect(server.CanUnloadNow() == S_FALSE, "a calculator keeps the component loaded");
    calculator->Release();
    Expect(server.CanUnloadNow() == S_OK, "nothing else does");
}

} // namespace

void Cycles(int rounds) {
    // Allocations of the platform's other threads in a whole run: far below one block for each round.
    constexpr long long strayBytes = 1024;
    constexpr long long strayPrivateBytes = 1 << 20;
    constexpr int warmUp = 50;
    SetEnvironmentVariableW(L"OANOCACHE", L"1"); // without it the platform keeps freed texts
    FileName fileName(0);
    for (int i = 0; i < warmUp; ++i) OneCycle(fileName);
    const Figures before = Figures::Now();
    for (int i = 0; i < rounds; ++i) OneCycle(fileName);
    const Figures after = Figures::Now();
    before.Print(warmUp); // not earlier, because printing allocates memory
    after.Print(warmUp + rounds);
    Expect(before.slots > 0 && before.handles > 0 && before.heapBytes > 0, "there is something to count");
    Expect(after.slots == before.slots, "no thread-local storage slot is lost", after.slots - before.slots);
    Expect(after.handles == before.handles, "no handle is lost", after.handles - before.handles);
    const long long heapGrowth = after.heapBytes - before.heapBytes;
    Expect(heapGrowth <= strayBytes, "no memory is lost", static_cast<long>(heapGrowth));
    const long long privateGrowth = after.privateBytes - before.privateBytes;
    Expect(privateGrowth <= strayPrivateBytes, "the process does not grow", static_cast<long>(privateGrowth));
}
