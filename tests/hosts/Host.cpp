#include "hosts/Host.h"

namespace {

constexpr GUID classOfCalculators{0x5B2E9C41, 0x7A3D, 0x4F6E, {0x9B, 0x12, 0x3C, 0x8D, 0x4E, 0x7F, 0x1A, 0x26}};
constexpr GUID calculator2{0x6A3E5F82, 0x1D9B, 0x4C47, {0xB6, 0xE0, 0x58, 0xF2, 0xD7, 0xA1, 0xC9, 0x3E}};
constexpr GUID alignmentItem{0xB8D5F047, 0x2A69, 0x4C3E, {0x9F, 0x18, 0xE7, 0xC2, 0xA4, 0x5D, 0x0B, 0x93}};
constexpr GUID classFactory{0x00000001, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
constexpr unsigned short records = 36; // VT_RECORD

volatile long failures = 0;
volatile long destroyed = 0;

/// An object in a function of the host, which an exception must destroy.
struct Cleanup {
    ~Cleanup() { __atomic_add_fetch(&destroyed, 1, __ATOMIC_RELAXED); }
};

const wchar_t* ServerPath(wchar_t* path) {
    GetModuleFileNameW(nullptr, path, 500);
    wcscpy(wcsrchr(path, L'\\') + 1, L"CoQMV40Calculator.dll");
    return path;
}

/// The record information of an alignment point, from the component's type library.
IUnknown* AlignmentRecord() {
    wchar_t path[512];
    ITypeLib* library = nullptr;
    IUnknown* info = nullptr;
    IUnknown* record = nullptr;
    // 2: REGKIND_NONE, which loads without a registration.
    Expect(LoadTypeLibEx(ServerPath(path), 2, &library) == S_OK, "the type library loads");
    Expect(library->GetTypeInfoOfGuid(alignmentItem, &info) == S_OK, "the record is in it");
    Expect(GetRecordInfoFromTypeInfo(info, &record) == S_OK, "the record can be made");
    info->Release();
    library->Release();
    return record;
}

/// A point of the capture of an ideal head with its centre at (100, -200, 300), mounted turned by 10 degrees.
HeadAlignmentDataItem MeasuredPoint(double a, double b) {
    constexpr double degree = 3.14159265358979323846 / 180.0;
    constexpr double stylus = 180.0;
    constexpr double unlockingLowersBy = 1.5;
    const double tilt = -a * degree;
    const double turn = (10.0 + b) * degree;
    const double y = sin(tilt) * stylus;
    const double z = -cos(tilt) * stylus;
    return {a, b, 100.0 + sin(turn) * y, -200.0 - cos(turn) * y, 300.0 - z - unlockingLowersBy};
}

} // namespace

void Expect(bool holds, const char* what, long detail) {
    if (holds) return;
    __atomic_add_fetch(&failures, 1, __ATOMIC_RELAXED);
    printf("FAILED: %s (%ld = 0x%08lX)\n", what, detail, detail);
}

int Verdict() {
    printf(failures == 0 ? "passed\n" : "failed\n");
    return failures == 0 ? 0 : 1;
}

Server::Server() {
    wchar_t path[512];
    module = LoadLibraryW(ServerPath(path));
    Expect(module != nullptr, "the component loads");
}

Server::~Server() { FreeLibrary(module); }

IQMVCalculator2* Server::Create() const {
    using GetClassObject = HRESULT(__stdcall*)(const GUID&, const GUID&, void**);
    const auto entry = reinterpret_cast<GetClassObject>(GetProcAddress(module, "DllGetClassObject"));
    void* factory = nullptr;
    void* calculator = nullptr;
    Expect(entry(classOfCalculators, classFactory, &factory) == S_OK, "the class is there");
    Expect(static_cast<IClassFactory*>(factory)->CreateInstance(nullptr, calculator2, &calculator) == S_OK,
           "a calculator is created");
    static_cast<IClassFactory*>(factory)->Release();
    return static_cast<IQMVCalculator2*>(calculator);
}

HRESULT Server::CanUnloadNow() const {
    using CanUnload = HRESULT(__stdcall*)();
    return reinterpret_cast<CanUnload>(GetProcAddress(module, "DllCanUnloadNow"))();
}

AlignmentPoints::AlignmentPoints(Axis axis) {
    constexpr long count = 7;
    SafeArrayBound bound{count, 0};
    IUnknown* const record = AlignmentRecord();
    array = SafeArrayCreateEx(records, 1, &bound, record);
    record->Release();
    Expect(array != nullptr, "an array is made");
    for (long i = 0; i < count; ++i) {
        const auto step = static_cast<double>(i) / (count - 1);
        HeadAlignmentDataItem point =
            axis == A ? MeasuredPoint(90.0 * step, 45.0) : MeasuredPoint(60.0, -180.0 + 270.0 * step);
        Expect(SafeArrayPutElement(array, &i, &point) == S_OK, "an element is set");
    }
}

AlignmentPoints::~AlignmentPoints() { SafeArrayDestroy(array); }

FileName::FileName(int number) {
    wchar_t path[512];
    GetTempPathW(300, path);
    wcscat(path, L"qmv40-host-");
    wchar_t* end = wcsrchr(path, L'-');
    for (unsigned long rest = GetCurrentProcessId() * 100 + static_cast<unsigned long>(number); rest != 0; rest /= 10)
        *++end = static_cast<wchar_t>(L'0' + rest % 10);
    wcscpy(end + 1, L".ini");
    text = SysAllocString(path);
}

FileName::~FileName() {
    DeleteFileW(text);
    SysFreeString(text);
}

HRESULT ThrownByCalculateMove(IQMVCalculator2& calculator, double a, double b, RequiredMoves* moves) {
    try {
        const Cleanup cleanup;
        Expect(calculator.CalculateMove(a, b, moves) == S_OK, "what is not thrown is S_OK");
    } catch (const long code) {
        return code;
    }
    return S_OK;
}

long ObjectsDestroyed() { return destroyed; }

bool RecordSays(const wchar_t* description) {
    IErrorInfo* record = nullptr;
    if (GetErrorInfo(0, &record) != S_OK) return false;
    BSTR text = nullptr;
    record->GetDescription(&text);
    record->Release();
    const bool same = text != nullptr && wcscmp(text, description) == 0;
    SysFreeString(text);
    return same;
}
