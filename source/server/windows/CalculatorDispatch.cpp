#include "server/windows/CalculatorDispatch.h"

#include "errors/Guarded.h"
#include "server/windows/Application.h"
#include "server/windows/DispatchArguments.h"

#include <cstring>

namespace qmv40 {

namespace {

/// The methods' identifiers in the type library.
enum Method : DISPID {
    loadHeadGeometryFromFile = 1,
    saveHeadGeometryToFile,
    getCurrentHeadPosition,
    setCurrentHeadPosition,
    calculateMove,
    enterHeadGeometry,
    getStartPosition,
    getPoleSpherePosition
};

/// A text that is freed at the end.
class OwnedText {
public:
    OwnedText() = default;
    OwnedText(const OwnedText&) = delete;
    OwnedText& operator=(const OwnedText&) = delete;
    ~OwnedText() { SysFreeString(text); }

    BSTR text = nullptr;
};

/// Copies the error record of a failed method into `exception` and removes it from the thread.
HRESULT ReportException(HRESULT code, EXCEPINFO* exception) {
    if (exception == nullptr) return DISP_E_EXCEPTION;
    *exception = EXCEPINFO{};
    exception->scode = code;
    ComPointer<IErrorInfo> record;
    if (GetErrorInfo(0, record.Receive()) == S_OK) {
        record->GetSource(&exception->bstrSource);
        record->GetDescription(&exception->bstrDescription);
        record->GetHelpFile(&exception->bstrHelpFile);
        record->GetHelpContext(&exception->dwHelpContext);
    }
    return DISP_E_EXCEPTION;
}

/// Calls one of the two methods that take a file name.
HRESULT CallWithFileName(IQMVCalculator2& calculator, HRESULT (STDMETHODCALLTYPE IQMVCalculator::*method)(BSTR*),
                         DispatchArguments& arguments, HRESULT& outcome) {
    OwnedText fileName;
    HRESULT read = arguments.Require(1);
    if (SUCCEEDED(read)) read = arguments.Read(0, fileName.text);
    if (SUCCEEDED(read)) outcome = (calculator.*method)(&fileName.text);
    return read;
}

HRESULT CallGetCurrentHeadPosition(IQMVCalculator2& calculator, DispatchArguments& arguments, HRESULT& outcome) {
    // Both angles are written or neither. So both arguments are checked before the call.
    HRESULT ready = arguments.Require(2);
    if (SUCCEEDED(ready)) ready = arguments.RequireRoomForNumber(0);
    if (SUCCEEDED(ready)) ready = arguments.RequireRoomForNumber(1);
    if (FAILED(ready)) return ready;
    double a = 0.0;
    double b = 0.0;
    outcome = calculator.GetCurrentHeadPosition(&a, &b);
    if (FAILED(outcome)) return S_OK;
    return arguments.Write(a, b);
}

HRESULT ReadAngles(DispatchArguments& arguments, double& a, double& b) {
    HRESULT read = arguments.Require(2);
    if (SUCCEEDED(read)) read = arguments.Read(0, a);
    if (SUCCEEDED(read)) read = arguments.Read(1, b);
    return read;
}

HRESULT CallSetCurrentHeadPosition(IQMVCalculator2& calculator, DispatchArguments& arguments, HRESULT& outcome) {
    double a = 0.0;
    double b = 0.0;
    const HRESULT read = ReadAngles(arguments, a, b);
    if (SUCCEEDED(read)) outcome = calculator.SetCurrentHeadPosition(a, b);
    return read;
}

HRESULT CallCalculateMove(IQMVCalculator2& calculator, DispatchArguments& arguments, RequiredMoves& moves,
                          HRESULT& outcome) {
    double a = 0.0;
    double b = 0.0;
    const HRESULT read = ReadAngles(arguments, a, b);
    // CalculateMove throws its failure code. A late-bound caller could not catch it.
    if (SUCCEEDED(read)) outcome = Guarded([&] { calculator.CalculateMove(a, b, &moves); });
    return read;
}

HRESULT CallEnterHeadGeometry(IQMVCalculator2& calculator, DispatchArguments& arguments, HRESULT& outcome) {
    SAFEARRAY** aAxisPoints = nullptr;
    SAFEARRAY** bAxisPoints = nullptr;
    HRESULT read = arguments.Require(2);
    if (SUCCEEDED(read)) read = arguments.Read(0, aAxisPoints);
    if (SUCCEEDED(read)) read = arguments.Read(1, bAxisPoints);
    if (SUCCEEDED(read)) outcome = calculator.EnterHeadGeometry(aAxisPoints, bAxisPoints);
    return read;
}

} // namespace

HRESULT CalculatorDispatch::Load() {
    if (typeInfo.Get() != nullptr) return S_OK;
    const HRESULT loaded = CQMVCalculatorApp::Instance().LoadTypeLibrary(library.Receive());
    return FAILED(loaded) ? loaded : library->GetTypeInfoOfGuid(IID_IQMVCalculator2, typeInfo.Receive());
}

HRESULT CalculatorDispatch::GetTypeInfo(UINT index, ITypeInfo** info) {
    if (info == nullptr) return E_POINTER;
    *info = nullptr;
    if (index != 0) return DISP_E_BADINDEX;
    const HRESULT loaded = Load();
    if (FAILED(loaded)) return loaded;
    typeInfo->AddRef();
    *info = typeInfo.Get();
    return S_OK;
}

HRESULT CalculatorDispatch::GetIDsOfNames(REFIID reserved, LPOLESTR* names, UINT count, DISPID* ids) {
    if (!IsEqualIID(reserved, IID_NULL)) return DISP_E_UNKNOWNINTERFACE;
    const HRESULT loaded = Load();
    return FAILED(loaded) ? loaded : typeInfo->GetIDsOfNames(names, count, ids);
}

HRESULT CalculatorDispatch::Invoke(IQMVCalculator2& calculator, DISPID method, REFIID reserved, WORD flags,
                                   DISPPARAMS* arguments, VARIANT* result, EXCEPINFO* exception, UINT* argumentError) {
    if (!IsEqualIID(reserved, IID_NULL)) return DISP_E_UNKNOWNINTERFACE;
    if (arguments == nullptr) return E_POINTER;
    if ((flags & DISPATCH_METHOD) == 0) return DISP_E_MEMBERNOTFOUND;
    const HRESULT loaded = Load();
    if (FAILED(loaded)) return loaded;
    if (result != nullptr) VariantInit(result);

    DispatchArguments places(*arguments, argumentError);
    HRESULT outcome = S_OK;
    const HRESULT called = Call(calculator, method, places, result, outcome);
    if (FAILED(called)) return called;
    return FAILED(outcome) ? ReportException(outcome, exception) : S_OK;
}

HRESULT CalculatorDispatch::Call(IQMVCalculator2& calculator, DISPID method, DispatchArguments& arguments,
                                 VARIANT* result, HRESULT& outcome) {
    RequiredMoves moves{};
    XYZData position{};
    HRESULT called = S_OK;
    switch (method) {
    case loadHeadGeometryFromFile:
        return CallWithFileName(calculator, &IQMVCalculator::LoadHeadGeometryFromFile, arguments, outcome);
    case saveHeadGeometryToFile:
        return CallWithFileName(calculator, &IQMVCalculator::SaveHeadGeometryToFile, arguments, outcome);
    case getCurrentHeadPosition:
        return CallGetCurrentHeadPosition(calculator, arguments, outcome);
    case setCurrentHeadPosition:
        return CallSetCurrentHeadPosition(calculator, arguments, outcome);
    case calculateMove:
        called = CallCalculateMove(calculator, arguments, moves, outcome);
        if (FAILED(called) || FAILED(outcome)) return called;
        return ReturnRecord(GUID_RequiredMoves, &moves, result);
    case enterHeadGeometry:
        return CallEnterHeadGeometry(calculator, arguments, outcome);
    case getStartPosition:
    case getPoleSpherePosition:
        called = arguments.Require(0);
        if (FAILED(called)) return called;
        outcome = method == getStartPosition ? calculator.GetStartPosition(&position)
                                             : calculator.GetPoleSpherePosition(&position);
        return FAILED(outcome) ? S_OK : ReturnRecord(GUID_XYZData, &position, result);
    default:
        return DISP_E_MEMBERNOTFOUND;
    }
}

HRESULT CalculatorDispatch::ReturnRecord(REFGUID recordType, const void* record, VARIANT* result) {
    if (result == nullptr) return S_OK;
    ComPointer<ITypeInfo> recordTypeInfo;
    HRESULT made = library->GetTypeInfoOfGuid(recordType, recordTypeInfo.Receive());
    IRecordInfo* recordInfo = nullptr; // the variant's reference once it is filled
    if (SUCCEEDED(made)) made = GetRecordInfoFromTypeInfo(recordTypeInfo.Get(), &recordInfo);
    if (FAILED(made)) return made;
    ULONG size = 0;
    void* const copy = recordInfo->RecordCreate();
    if (copy == nullptr || FAILED(recordInfo->GetSize(&size))) {
        recordInfo->Release();
        return E_OUTOFMEMORY;
    }
    std::memcpy(copy, record, size);
    V_VT(result) = VT_RECORD;
    V_RECORDINFO(result) = recordInfo;
    V_RECORD(result) = copy;
    return S_OK;
}

} // namespace qmv40
