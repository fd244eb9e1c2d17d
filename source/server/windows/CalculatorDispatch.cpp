#include "server/windows/CalculatorDispatch.h"

#include "errors/Guarded.h"
#include "server/windows/Application.h"
#include "server/windows/DispatchArguments.h"

#include <cstring>
#include <iterator>

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

/// The number of arguments of each method, in the order of the identifiers.
constexpr UINT argumentCounts[] = {1, 1, 2, 2, 2, 2, 0, 0};

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

HRESULT CallWithFileName(IQMVCalculator2& calculator, HRESULT (STDMETHODCALLTYPE IQMVCalculator::*method)(BSTR*),
                         DispatchArguments& arguments) {
    const OwnedText text = arguments.Text(0);
    BSTR fileName = text.get();
    return FAILED(arguments.Problem()) ? S_OK : (calculator.*method)(&fileName);
}

HRESULT CallGetCurrentHeadPosition(IQMVCalculator2& calculator, DispatchArguments& arguments) {
    // Both angles are written or neither. So both arguments are checked before the call.
    arguments.RequireRoomForNumber(0);
    arguments.RequireRoomForNumber(1);
    if (FAILED(arguments.Problem())) return S_OK;
    double a = 0.0;
    double b = 0.0;
    const HRESULT outcome = calculator.GetCurrentHeadPosition(&a, &b);
    if (SUCCEEDED(outcome)) arguments.Write(a, b);
    return outcome;
}

/// Calls one of the two methods that take angles.
HRESULT CallWithAngles(IQMVCalculator2& calculator, DISPID method, DispatchArguments& arguments, RequiredMoves& moves) {
    const double a = arguments.Number(0);
    const double b = arguments.Number(1);
    if (FAILED(arguments.Problem())) return S_OK;
    if (method == setCurrentHeadPosition) return calculator.SetCurrentHeadPosition(a, b);
    // CalculateMove throws its failure code. A late-bound caller could not catch it.
    return Guarded([&] { calculator.CalculateMove(a, b, &moves); });
}

HRESULT CallEnterHeadGeometry(IQMVCalculator2& calculator, DispatchArguments& arguments) {
    SAFEARRAY** const aAxisPoints = arguments.Records(0);
    SAFEARRAY** const bAxisPoints = arguments.Records(1);
    return FAILED(arguments.Problem()) ? S_OK : calculator.EnterHeadGeometry(aAxisPoints, bAxisPoints);
}

/// Calls the method and returns its code. If an argument is refused, it does not call the method and returns S_OK.
HRESULT Call(IQMVCalculator2& calculator, DISPID method, DispatchArguments& arguments, RequiredMoves& moves,
             XYZData& position) {
    switch (method) {
    case loadHeadGeometryFromFile:
        return CallWithFileName(calculator, &IQMVCalculator::LoadHeadGeometryFromFile, arguments);
    case saveHeadGeometryToFile:
        return CallWithFileName(calculator, &IQMVCalculator::SaveHeadGeometryToFile, arguments);
    case getCurrentHeadPosition:
        return CallGetCurrentHeadPosition(calculator, arguments);
    case enterHeadGeometry:
        return CallEnterHeadGeometry(calculator, arguments);
    case getStartPosition:
        return calculator.GetStartPosition(&position);
    case getPoleSpherePosition:
        return calculator.GetPoleSpherePosition(&position);
    default:
        return CallWithAngles(calculator, method, arguments, moves);
    }
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

    if (method < 1 || method > static_cast<DISPID>(std::size(argumentCounts))) return DISP_E_MEMBERNOTFOUND;
    DispatchArguments places(*arguments, argumentError);
    places.Require(argumentCounts[method - 1]);
    if (FAILED(places.Problem())) return places.Problem();
    RequiredMoves moves{};
    XYZData position{};
    const HRESULT outcome = Call(calculator, method, places, moves, position);
    if (FAILED(places.Problem())) return places.Problem();
    if (FAILED(outcome)) return ReportException(outcome, exception);
    if (method == calculateMove) return ReturnRecord(GUID_RequiredMoves, &moves, result);
    return method >= getStartPosition ? ReturnRecord(GUID_XYZData, &position, result) : S_OK;
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
