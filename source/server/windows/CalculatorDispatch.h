#pragma once

#include "interface/IQMVCalculator.h"
#include "platform/ComPointer.h"

/// Late binding for the calculator's dual interface. Names and type information come from the type library in the
/// module's own resources, loaded on the first use. The eight methods are called from here and not by the library's own
/// call: records do not pass through that one everywhere, a thrown code must not, and script variables would be
/// refused.
class CalculatorDispatch {
public:
    HRESULT GetTypeInfo(UINT index, ITypeInfo** info);
    HRESULT GetIDsOfNames(REFIID reserved, LPOLESTR* names, UINT count, DISPID* ids);
    /// A failing method gives DISP_E_EXCEPTION, with its code as the scode and the texts of its error record.
    HRESULT Invoke(IQMVCalculator2& calculator, DISPID method, REFIID reserved, WORD flags, DISPPARAMS* arguments,
                   VARIANT* result, EXCEPINFO* exception, UINT* argumentError);

private:
    HRESULT Load();
    HRESULT Call(IQMVCalculator2& calculator, DISPID method, class DispatchArguments& arguments, VARIANT* result,
                 HRESULT& outcome);
    HRESULT ReturnRecord(REFGUID recordType, const void* record, VARIANT* result);

    ComPointer<ITypeLib> library;
    ComPointer<ITypeInfo> typeInfo;
};
