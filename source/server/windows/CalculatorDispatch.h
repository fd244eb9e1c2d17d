#pragma once

#include "interface/IQMVCalculator.h"
#include "platform/ComPointer.h"

namespace qmv40 {

/// Late binding for the calculator's dual interface. Names and type information come from the type library in the
/// module's own resources, which is loaded at the first use. ITypeInfo::Invoke cannot be used, for three reasons: it
/// does not marshal records on every platform, a thrown code must not pass through it, and it rejects a script's
/// variable (VT_BYREF | VT_VARIANT) for a text or a number.
class CalculatorDispatch {
public:
    HRESULT GetTypeInfo(UINT index, ITypeInfo** info);
    HRESULT GetIDsOfNames(REFIID reserved, LPOLESTR* names, UINT count, DISPID* ids);
    /// A failing method gives DISP_E_EXCEPTION, with its code as the scode and the texts of its error record.
    HRESULT Invoke(IQMVCalculator2& calculator, DISPID method, REFIID reserved, WORD flags, DISPPARAMS* arguments,
                   VARIANT* result, EXCEPINFO* exception, UINT* argumentError);

private:
    HRESULT Load();
    HRESULT ReturnRecord(REFGUID recordType, const void* record, VARIANT* result);

    ComPointer<ITypeLib> library;
    ComPointer<ITypeInfo> typeInfo;
};

} // namespace qmv40
