// hold.exe <component> <file to make> <file to wait for> [file to keep open]: a program that creates a calculator and
// uses it at the end. It prints the resulting position. No other program can open the file that it keeps open.
#include <initguid.h>

#include "CoQMV40Calculator.h"

#include <cstdio>

namespace {

using GetClassObject = HRESULT STDMETHODCALLTYPE(REFCLSID, REFIID, void**);

IQMVCalculator* Create(const wchar_t* component) {
    const HMODULE module = LoadLibraryW(component);
    if (module == nullptr) return nullptr;
    const auto entry = reinterpret_cast<void (*)()>(GetProcAddress(module, "DllGetClassObject"));
    IClassFactory* factory = nullptr;
    if (FAILED(reinterpret_cast<GetClassObject*>(entry)(CLSID_QMVCalculator, IID_IClassFactory,
                                                        reinterpret_cast<void**>(&factory))))
        return nullptr;
    IQMVCalculator* calculator = nullptr;
    factory->CreateInstance(nullptr, IID_IQMVCalculator, reinterpret_cast<void**>(&calculator));
    factory->Release();
    return calculator;
}

} // namespace

int wmain(int count, wchar_t** arguments) {
    if (count < 4) return 2;
    const HANDLE kept =
        count < 5 ? nullptr : CreateFileW(arguments[4], GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    if (kept == INVALID_HANDLE_VALUE) return 1;
    IQMVCalculator* const calculator = Create(arguments[1]);
    if (calculator == nullptr || FAILED(calculator->SetCurrentHeadPosition(15.0, 30.0))) return 1;
    CloseHandle(CreateFileW(arguments[2], GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr));
    while (GetFileAttributesW(arguments[3]) == INVALID_FILE_ATTRIBUTES) Sleep(100);
    double a = 0.0;
    double b = 0.0;
    if (FAILED(calculator->GetCurrentHeadPosition(&a, &b))) return 1;
    calculator->Release();
    std::printf("%g %g\n", a, b);
    return 0;
}
