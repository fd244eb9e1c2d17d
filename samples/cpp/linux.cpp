// plan <geometry file>: plans an indexing through the component's interface on Linux.
//
// Build: g++ -std=c++20 linux.cpp $(pkg-config --cflags --libs CoQMV40Calculator)

#include "interface/IQMVCalculator.h"

#include <cmath>
#include <cstdio>
#include <filesystem>
#include <initializer_list>
#include <memory>
#include <string>

namespace {

struct Releaser {
    void operator()(IUnknown* object) const { object->Release(); }
};
template <typename Interface> using Owned = std::unique_ptr<Interface, Releaser>;

struct TextReleaser {
    void operator()(OLECHAR* text) const { SysFreeString(text); }
};
using Text = std::unique_ptr<OLECHAR, TextReleaser>;

/// Throws a returned failure code, as CalculateMove does with its own.
void Require(HRESULT result) {
    if (FAILED(result)) throw result;
}

/// Rounded so that every language prints the same text, never a negative zero.
void ShowNumbers(std::initializer_list<double> numbers) {
    for (const double number : numbers) std::printf(" %.3f", std::floor(number * 1000.0 + 0.5) / 1000.0);
    std::printf("\n");
}

void Show(int number, const char* name, const XYZData& point) {
    std::printf("%d %s", number, name);
    ShowNumbers({point.XPosition, point.YPosition, point.ZPosition});
}

void Show(int number, const char* name, const ArcData& arc) {
    std::printf("%d %s", number, name);
    ShowNumbers({arc.XOrigin, arc.YOrigin, arc.ZOrigin, arc.iRotationVector, arc.jRotationVector, arc.kRotationVector,
                 arc.RotationAngle});
}

void Show(const RequiredMoves& plan) {
    Show(1, "ApproachUnLockLever", plan.ApproachUnLockLever);
    Show(2, "EngageWithUnLockLever", plan.EngageWithUnLockLever);
    Show(3, "UnLock", plan.UnLock);
    Show(4, "DisengageFromUnLockLever", plan.DisengageFromUnLockLever);
    Show(5, "RotateToPeg", plan.RotateToPeg);
    Show(6, "MoveToPegAtSafeZ", plan.MoveToPegAtSafeZ);
    Show(7, "ApproachPeg", plan.ApproachPeg);
    Show(8, "EngageWithPeg", plan.EngageWithPeg);
    Show(9, "IntermediateAPosition", plan.IntermediateAPosition);
    Show(10, "MoveToBPosition", plan.MoveToBPosition);
    Show(11, "MoveToAPosition", plan.MoveToAPosition);
    Show(12, "DisengageFromPeg", plan.DisengageFromPeg);
    Show(13, "DisengageFromPegToSafeZ", plan.DisengageFromPegToSafeZ);
    Show(14, "RotateToLockLever", plan.RotateToLockLever);
    Show(15, "MoveToLockLeverAtSafeZ", plan.MoveToLockLeverAtSafeZ);
    Show(16, "ApproachLockLever", plan.ApproachLockLever);
    Show(17, "EngageWithLockLever", plan.EngageWithLockLever);
    Show(18, "Lock", plan.Lock);
    Show(19, "DisengageFromLockLever", plan.DisengageFromLockLever);
}

/// Prints the reason from the thread's error record.
void ShowFailure(HRESULT code) {
    IErrorInfo* found = nullptr;
    BSTR description = nullptr;
    if (GetErrorInfo(0, &found) == S_OK) found->GetDescription(&description);
    const Owned<IErrorInfo> record(found);
    const Text text(description);
    std::printf("refused 0x%08X: %ls\n", static_cast<unsigned>(code), text ? text.get() : L"");
}

void ShowPosition(IQMVCalculator2& head) {
    double a = 0.0;
    double b = 0.0;
    Require(head.GetCurrentHeadPosition(&a, &b));
    std::printf("position");
    ShowNumbers({a, b});
}

void Plan(const char* geometryFile) {
    void* created = nullptr;
    Require(CoCreateInstance(CLSID_QMVCalculator, nullptr, CLSCTX_INPROC_SERVER, IID_IQMVCalculator2, &created));
    const Owned<IQMVCalculator2> head(static_cast<IQMVCalculator2*>(created));
    const Text file(SysAllocString(std::filesystem::absolute(geometryFile).wstring().c_str()));
    BSTR name = file.get();
    Require(head->LoadHeadGeometryFromFile(&name));
    Require(head->SetCurrentHeadPosition(0.0, 0.0));

    RequiredMoves plan{};
    try {
        head->CalculateMove(50.0, 90.0, &plan); // 50 is not a multiple of 15
    } catch (const HRESULT code) {
        ShowFailure(code);
    }
    ShowPosition(*head);
    head->CalculateMove(45.0, 90.0, &plan);
    ShowPosition(*head);
    Show(plan);
}

} // namespace

int main(int count, char** arguments) {
    if (count != 2) return 2;
    try {
        Plan(arguments[1]);
        return 0;
    } catch (const HRESULT code) {
        ShowFailure(code);
        return 1;
    }
}
