// What a call costs in a host that runs with 53 bits of x87 precision, as programs of the platform start. A
// measurement, not a test: nothing fails by taking long.

#include "hosts/Subjects.h"
#include "hosts/WholeJob.h"

namespace {

double Nanoseconds(long long ticks, int calls) {
    long long perSecond = 0;
    QueryPerformanceFrequency(&perSecond);
    return static_cast<double>(ticks) * 1e9 / static_cast<double>(perSecond) / calls;
}

/// The shortest of eleven rounds: other programs can only make a round longer.
template <class Call> void Print(const char* what, int calls, Call&& call) {
    double shortest = 1e300;
    for (int round = 0; round < 11; ++round) {
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

void PrintTable(IQMVCalculator2& calculator, int calls) {
    double a = 0.0;
    double b = 0.0;
    XYZData position{};
    RequiredMoves moves{};
    Print("AddRef and Release, nothing of ours", calls, [&] {
        calculator.AddRef();
        calculator.Release();
    });
    Print("GetCurrentHeadPosition", calls, [&] { calculator.GetCurrentHeadPosition(&a, &b); });
    Print("SetCurrentHeadPosition", calls, [&] { calculator.SetCurrentHeadPosition(15.0, 30.0); });
    Print("GetPoleSpherePosition", calls, [&] { calculator.GetPoleSpherePosition(&position); });
    Print("CalculateMove", calls / 100, [&] { ThrownByCalculateMove(calculator, 45.0, 90.0, &moves); });
    Print("CalculateMove, refused", calls / 100, [&] { ThrownByCalculateMove(calculator, 50.0, 90.0, &moves); });
    Print("GetStartPosition", calls / 100, [&] { calculator.GetStartPosition(&position); });
}

} // namespace

void CallTimes(int rounds) {
    const Server server;
    IQMVCalculator2* const calculator = server.Create();
    AlignmentPoints aPoints(AlignmentPoints::A);
    AlignmentPoints bPoints(AlignmentPoints::B);
    Expect(calculator->EnterHeadGeometry(aPoints.Address(), bPoints.Address()) == S_OK, "a geometry is entered");
    Expect(calculator->SetCurrentHeadPosition(0.0, 0.0) == S_OK, "a position is set");
    constexpr unsigned short words[] = {0x027F, 0x037F};
    for (const unsigned short& word : words) {
        printf("x87 control word 0x%04X\n", word);
        __asm__ volatile("fnclex\n\tfldcw %0" : : "m"(word));
        PrintTable(*calculator, rounds);
    }
    calculator->Release();
}
