#pragma once

/// The declarations of the platform and of the component's interface that this client needs. They are written by hand,
/// because the platform's headers are not available for this compiler. The layouts, and the names of functions and
/// methods, are those of the platform's documentation and of CoQMV40Calculator.idl; fields have other names.

using HRESULT = long;
using HANDLE = void*;
using HMODULE = void*;
using BSTR = wchar_t*;
using DWORD = unsigned long;
using Size = decltype(sizeof 0);

constexpr HRESULT S_OK = 0;
constexpr HRESULT S_FALSE = 1;

struct GUID {
    unsigned int first;
    unsigned short second, third;
    unsigned char rest[8];
};

// Records of the component.
struct XYZData {
    double x, y, z;
};
struct HeadAlignmentDataItem {
    double a, b, x, y, z;
};
struct RequiredMoves {
    double numbers[85];
};
static_assert(sizeof(RequiredMoves) == 680);

struct SAFEARRAY;
struct SafeArrayBound {
    DWORD count;
    long lowest;
};

struct IUnknown {
    virtual HRESULT __stdcall QueryInterface(const GUID& iid, void** object) = 0;
    virtual DWORD __stdcall AddRef() = 0;
    virtual DWORD __stdcall Release() = 0;
};

struct IErrorInfo : IUnknown {
    virtual HRESULT __stdcall GetGUID(GUID*) = 0;
    virtual HRESULT __stdcall GetSource(BSTR*) = 0;
    virtual HRESULT __stdcall GetDescription(BSTR*) = 0;
};

struct IClassFactory : IUnknown {
    virtual HRESULT __stdcall CreateInstance(IUnknown* outer, const GUID& iid, void** object) = 0;
    virtual HRESULT __stdcall LockServer(int lock) = 0;
};

struct ITypeLib : IUnknown {
    virtual DWORD __stdcall GetTypeInfoCount() = 0;
    virtual HRESULT __stdcall GetTypeInfo(DWORD index, IUnknown** info) = 0;
    virtual HRESULT __stdcall GetTypeInfoType(DWORD index, int* kind) = 0;
    virtual HRESULT __stdcall GetTypeInfoOfGuid(const GUID& guid, IUnknown** info) = 0;
};

struct IQMVCalculator2 : IUnknown {
    virtual HRESULT __stdcall GetTypeInfoCount(DWORD*) = 0;
    virtual HRESULT __stdcall GetTypeInfo(DWORD, DWORD, IUnknown**) = 0;
    virtual HRESULT __stdcall GetIDsOfNames(const GUID&, wchar_t**, DWORD, DWORD, long*) = 0;
    virtual HRESULT __stdcall Invoke(long, const GUID&, DWORD, unsigned short, void*, void*, void*, DWORD*) = 0;
    virtual HRESULT __stdcall LoadHeadGeometryFromFile(BSTR* fileName) = 0;
    virtual HRESULT __stdcall SaveHeadGeometryToFile(BSTR* fileName) = 0;
    virtual HRESULT __stdcall GetCurrentHeadPosition(double* a, double* b) = 0;
    virtual HRESULT __stdcall SetCurrentHeadPosition(double a, double b) = 0;
    virtual HRESULT __stdcall CalculateMove(double a, double b, RequiredMoves* moves) = 0;
    virtual HRESULT __stdcall EnterHeadGeometry(SAFEARRAY** aPoints, SAFEARRAY** bPoints) = 0;
    virtual HRESULT __stdcall GetStartPosition(XYZData* position) = 0;
    virtual HRESULT __stdcall GetPoleSpherePosition(XYZData* position) = 0;
};

struct ProcessMemory {
    DWORD size, pageFaults;
    Size peakWorkingSet, workingSet, quotas[4], pagefile, peakPagefile, privateBytes;
};

struct HeapEntry {
    void* data;
    DWORD bytes;
    unsigned char overhead, region;
    unsigned short flags;
    void* regionFigures[3];
};

extern "C" {
// kernel32
__declspec(dllimport) HMODULE __stdcall LoadLibraryW(const wchar_t*);
__declspec(dllimport) int __stdcall FreeLibrary(HMODULE);
__declspec(dllimport) void* __stdcall GetProcAddress(HMODULE, const char*);
__declspec(dllimport) DWORD __stdcall GetModuleFileNameW(HMODULE, wchar_t*, DWORD);
__declspec(dllimport) DWORD __stdcall GetTempPathW(DWORD, wchar_t*);
__declspec(dllimport) DWORD __stdcall GetCurrentProcessId();
__declspec(dllimport) HANDLE __stdcall GetCurrentProcess();
__declspec(dllimport) int __stdcall DeleteFileW(const wchar_t*);
__declspec(dllimport) int __stdcall SetEnvironmentVariableW(const wchar_t*, const wchar_t*);
__declspec(dllimport) HANDLE __stdcall CreateThread(void*, Size, DWORD(__stdcall*)(void*), void*, DWORD, DWORD*);
__declspec(dllimport) DWORD __stdcall WaitForSingleObject(HANDLE, DWORD);
__declspec(dllimport) int __stdcall CloseHandle(HANDLE);
__declspec(dllimport) DWORD __stdcall TlsAlloc();
__declspec(dllimport) int __stdcall TlsFree(DWORD);
__declspec(dllimport) DWORD __stdcall GetProcessHeaps(DWORD, HANDLE*);
__declspec(dllimport) int __stdcall HeapLock(HANDLE);
__declspec(dllimport) int __stdcall HeapUnlock(HANDLE);
__declspec(dllimport) int __stdcall HeapWalk(HANDLE, HeapEntry*);
__declspec(dllimport) int __stdcall K32GetProcessMemoryInfo(HANDLE, ProcessMemory*, DWORD);
__declspec(dllimport) int __stdcall VirtualProtect(void*, Size, DWORD, DWORD*);
__declspec(dllimport) int __stdcall QueryPerformanceCounter(long long*);
__declspec(dllimport) int __stdcall QueryPerformanceFrequency(long long*);
// ntdll
__declspec(dllimport) long __stdcall NtQuerySystemInformation(int, void*, DWORD, DWORD*);
// ole32, oleaut32
__declspec(dllimport) HRESULT __stdcall CoInitializeEx(void*, DWORD);
__declspec(dllimport) void __stdcall CoUninitialize();
__declspec(dllimport) BSTR __stdcall SysAllocString(const wchar_t*);
__declspec(dllimport) void __stdcall SysFreeString(BSTR);
__declspec(dllimport) HRESULT __stdcall GetErrorInfo(DWORD, IErrorInfo**);
__declspec(dllimport) HRESULT __stdcall LoadTypeLibEx(const wchar_t*, int, ITypeLib**);
__declspec(dllimport) HRESULT __stdcall GetRecordInfoFromTypeInfo(IUnknown*, IUnknown**);
__declspec(dllimport) SAFEARRAY* __stdcall SafeArrayCreateEx(unsigned short, DWORD, SafeArrayBound*, void*);
__declspec(dllimport) HRESULT __stdcall SafeArrayPutElement(SAFEARRAY*, long*, void*);
__declspec(dllimport) HRESULT __stdcall SafeArrayDestroy(SAFEARRAY*);
// The C library of the platform.
int printf(const char*, ...);
int atoi(const char*);
int memcmp(const void*, const void*, Size);
int wcscmp(const wchar_t*, const wchar_t*);
int strcmp(const char*, const char*);
wchar_t* wcscpy(wchar_t*, const wchar_t*);
wchar_t* wcscat(wchar_t*, const wchar_t*);
wchar_t* wcsrchr(const wchar_t*, wchar_t);
double sin(double);
double cos(double);
}
