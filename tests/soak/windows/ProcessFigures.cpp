#include "tests/soak/ProcessFigures.h"

#include "tests/support/FailingAllocations.h"

#define WIN32_LEAN_AND_MEAN
#include <windows.h>

#include <psapi.h>

#include <array>

// The automation library keeps freed texts for later use unless this variable is set.
void MakeFiguresExact() { SetEnvironmentVariableA("OANOCACHE", "1"); }

ProcessFigures ProcessFigures::Now() {
    ProcessFigures figures{0, 0, FailingAllocations::LiveBlocks(), 0};
    std::array<HANDLE, 64> heaps{};
    const DWORD count = GetProcessHeaps(static_cast<DWORD>(heaps.size()), heaps.data());
    for (DWORD i = 0; i < count && i < heaps.size(); ++i) {
        PROCESS_HEAP_ENTRY entry{};
        HeapLock(heaps[i]);
        while (HeapWalk(heaps[i], &entry))
            if ((entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0) figures.heapBytes += entry.cbData;
        HeapUnlock(heaps[i]);
    }
    PROCESS_MEMORY_COUNTERS memory{};
    if (GetProcessMemoryInfo(GetCurrentProcess(), &memory, sizeof memory) != 0)
        figures.residentBytes = memory.WorkingSetSize;
    DWORD handles = 0;
    GetProcessHandleCount(GetCurrentProcess(), &handles);
    figures.openFiles = static_cast<long>(handles);
    return figures;
}
