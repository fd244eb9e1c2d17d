// The time of a call of CalculateMove beyond its work: the planner is called in this program and through the component
// in turn, both without settings to read. This is a measurement, not a test.

#include "calculator/CQMVCalculator.h"
#include "tests/hosts/Imports.h"
#include "tests/server/Client.h"
#include "tests/support/AlignmentArray.h"
#include "tests/support/SimulatedHead.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <vector>

namespace {

LSTATUS WINAPI NoKey(HKEY, LPCSTR, DWORD, REGSAM, PHKEY) { return ERROR_FILE_NOT_FOUND; }

class Planner final : public CQMVCalculator {
public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void**) override { return E_NOINTERFACE; }
    ULONG STDMETHODCALLTYPE AddRef() override { return 1; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) override {
        return E_NOTIMPL;
    }

    void Plan(double a, double b, RequiredMoves& moves) const { PlanMoves(a, b, moves); }
};

/// The mean time of a few calls. They take so little time that other programs seldom interrupt them.
template <class Call> double Nanoseconds(const Call& call) {
    using Clock = std::chrono::steady_clock;
    constexpr int calls = 20;
    const Clock::time_point begin = Clock::now();
    for (int i = 0; i < calls; ++i) call();
    return std::chrono::duration<double, std::nano>(Clock::now() - begin).count() / calls;
}

double MiddleOf(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

/// Gives the calculator a position and the geometry of a head with its centre at (100, -200, 300), mounted turned by
/// 10 degrees.
void Prepare(IQMVCalculator& calculator) {
    SimulatedHead head;
    head.pole = {100.0, -200.0, 300.0};
    head.mountingAngle = 10.0;
    AlignmentArray aPoints(head.ASet(45.0));
    AlignmentArray bPoints(head.BSet(60.0));
    if (FAILED(calculator.EnterHeadGeometry(aPoints.Address(), bPoints.Address())) ||
        FAILED(calculator.SetCurrentHeadPosition(45.0, 90.0)))
        throw std::runtime_error("the calculator does not take the head");
}

} // namespace

// The linker directs the opening of a registry key to this function.
extern "C" {
extern decltype(&RegOpenKeyExA) __wrap___imp_RegOpenKeyExA;
decltype(&RegOpenKeyExA) __wrap___imp_RegOpenKeyExA = NoKey;
}

int main() {
    const LoadedServer server;
    const auto calculator = server.Create();
    Planner planner;
    Prepare(planner);
    Prepare(*calculator.Get());
    const ReplacedImport withoutSettings(server.Module(), "RegOpenKeyExA", reinterpret_cast<void*>(NoKey));
    const unsigned short controlWord = 0x027F; // 53 bits of precision: the default of Windows programs
    asm volatile("fldcw %0" : : "m"(controlWord));
    RequiredMoves moves{};
    std::vector<double> inside, called, beyond;
    for (int round = 0; round < 4000; ++round) {
        inside.push_back(Nanoseconds([&] { planner.Plan(45.0, 90.0, moves); }));
        called.push_back(Nanoseconds([&] { calculator->CalculateMove(45.0, 90.0, &moves); }));
        beyond.push_back(called.back() - inside.back());
    }
    std::printf("  %-40s %8.0f ns\n", "the plan alone, no settings to read", *std::ranges::min_element(inside));
    std::printf("  %-40s %8.0f ns\n", "CalculateMove, no settings to read", *std::ranges::min_element(called));
    std::printf("  %-40s %8.0f ns\n", "the call beyond its work", MiddleOf(beyond));
    return withoutSettings.IsDone() ? 0 : 1;
}
