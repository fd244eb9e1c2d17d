// The time of a call in a host with 53 bits of x87 precision, the default of Windows programs, and in one with 64
// bits. This is a measurement, not a test: long times are no failure.

#include "hosts/Imports.h"
#include "hosts/Subjects.h"
#include "hosts/WholeJob.h"

namespace {

double Nanoseconds(long long ticks, int calls) {
    long long perSecond = 0;
    QueryPerformanceFrequency(&perSecond);
    return static_cast<double>(ticks) * 1e9 / static_cast<double>(perSecond) / calls;
}

/// The shortest mean of many short rounds. Other programs can only make a round longer, and many short rounds are not
/// interrupted.
template <class Call> void Print(const char* what, int rounds, int calls, Call&& call) {
    double shortest = 1e300;
    for (int round = 0; round < rounds; ++round) {
        long long begin = 0;
        long long end = 0;
        QueryPerformanceCounter(&begin);
        for (int i = 0; i < calls; ++i) call();
        QueryPerformanceCounter(&end);
        const double mean = Nanoseconds(end - begin, calls);
        if (mean < shortest) shortest = mean;
    }
    printf("  %-40s %8.0f ns\n", what, shortest);
}

/// Replaces the opening of a registry key: returns at once that there is none (ERROR_FILE_NOT_FOUND).
long __stdcall NoKey(void*, const char*, DWORD, DWORD, void**) { return 2; }

void PrintTable(const Server& server, IQMVCalculator2& calculator, int rounds) {
    constexpr int few = 20;
    constexpr int many = 500;
    double a = 0.0;
    double b = 0.0;
    XYZData position{};
    RequiredMoves moves{};
    const auto plan = [&] { ThrownByCalculateMove(calculator, 45.0, 90.0, &moves); };
    Print("AddRef and Release, nothing of ours", rounds, many, [&] {
        calculator.AddRef();
        calculator.Release();
    });
    Print("GetCurrentHeadPosition", rounds, many, [&] { calculator.GetCurrentHeadPosition(&a, &b); });
    Print("GetPoleSpherePosition", rounds, many, [&] { calculator.GetPoleSpherePosition(&position); });
    Print("SetCurrentHeadPosition", rounds, many, [&] { calculator.SetCurrentHeadPosition(15.0, 30.0); });
    Print("CalculateMove", rounds, few, plan);
    Print("CalculateMove, refused", rounds, few, [&] { ThrownByCalculateMove(calculator, 50.0, 90.0, &moves); });
    Print("GetStartPosition", rounds, few, [&] { calculator.GetStartPosition(&position); });
    const ReplacedImport withoutSettings(server.Module(), "RegOpenKeyExA", reinterpret_cast<void*>(NoKey));
    Expect(withoutSettings.IsDone(), "the component does not read settings");
    Print("CalculateMove, no settings to read", 4 * rounds, few, plan);
}

} // namespace

void CallTimes(int rounds) {
    const Server server;
    IQMVCalculator2* const calculator = server.Create();
    AlignmentPoints aPoints(AlignmentPoints::A);
    AlignmentPoints bPoints(AlignmentPoints::B);
    Expect(calculator->EnterHeadGeometry(aPoints.Address(), bPoints.Address()) == S_OK, "a geometry is entered");
    Expect(calculator->SetCurrentHeadPosition(0.0, 0.0) == S_OK, "a position is set");
    constexpr unsigned short words[] = {0x027F, 0x037F}; // 53 and 64 bits of precision
    for (const unsigned short& word : words) {
        printf("x87 control word 0x%04X\n", word);
        __asm__ volatile("fnclex\n\tfldcw %0" : : "m"(word));
        PrintTable(server, *calculator, rounds);
    }
    calculator->Release();
}
