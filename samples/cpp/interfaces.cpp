// interfaces <geometry file>: plans an indexing through the component's own interfaces.
//
// CalculateMove throws its failure code. The catch below catches it if the program is built by mingw-w64 GCC for 64
// bits or by a compiler with the platform's own conventions. A 32-bit program built by mingw-w64 cannot catch it:
// there, call CalculateMove as dispatch.cpp does.

#include <initguid.h>

#include "Show.h"

#include <memory>

namespace {

struct Releaser {
    void operator()(IUnknown* object) const { object->Release(); }
};
template <typename Interface> using Owned = std::unique_ptr<Interface, Releaser>;

Owned<IQMVCalculator> CreateCalculator() {
    void* created = nullptr;
    const HRESULT result =
        CoCreateInstance(CLSID_QMVCalculator, nullptr, CLSCTX_INPROC_SERVER, IID_IQMVCalculator, &created);
    if (FAILED(result)) throw result;
    return Owned<IQMVCalculator>(static_cast<IQMVCalculator*>(created));
}

/// For methods that return their failure code: all except CalculateMove.
void Require(HRESULT result) {
    if (FAILED(result)) throw result;
}

/// Shows the description in the error record of the code.
void ShowErrorRecord(HRESULT code) {
    IErrorInfo* found = nullptr;
    if (GetErrorInfo(0, &found) != S_OK) return ShowFailure(code, L"is the component registered?");
    const Owned<IErrorInfo> record(found);
    Text description;
    record->GetDescription(&description.text); // GetSource names the operation that failed
    ShowFailure(code, description.text);
}

void ShowCurrentPosition(IQMVCalculator& calculator) {
    double a = 0.0;
    double b = 0.0;
    Require(calculator.GetCurrentHeadPosition(&a, &b));
    ShowPosition(a, b);
}

void Plan(const char* geometryFile) {
    const Owned<IQMVCalculator> calculator = CreateCalculator();
    Text name(AbsoluteName(geometryFile));
    Require(calculator->LoadHeadGeometryFromFile(&name.text));
    Require(calculator->SetCurrentHeadPosition(0.0, 0.0));

    RequiredMoves plan{};
    try {
        calculator->CalculateMove(50.0, 90.0, &plan); // 50 is not a multiple of 15
    } catch (const HRESULT code) {
        ShowErrorRecord(code);
    }
    ShowCurrentPosition(*calculator);
    calculator->CalculateMove(45.0, 90.0, &plan);
    ShowCurrentPosition(*calculator);
    ShowPlan(plan);
}

} // namespace

int main(int count, char** arguments) {
    if (count != 2) return 2;
    const Apartment apartment;
    try {
        Plan(arguments[1]);
        return 0;
    } catch (const HRESULT code) {
        ShowErrorRecord(code);
        return 1;
    }
}
