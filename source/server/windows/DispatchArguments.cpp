#include "server/windows/DispatchArguments.h"

HRESULT DispatchArguments::Require(UINT count) {
    if (arguments.cArgs != count) return DISP_E_BADPARAMCOUNT;
    for (UINT place = 0; place < count; ++place) {
        if (At(place) == nullptr) return DISP_E_PARAMNOTFOUND;
    }
    return S_OK;
}

VARIANT* DispatchArguments::At(UINT place) const noexcept {
    // Named ones stand first, then the positional ones, last to first.
    for (UINT named = 0; named < arguments.cNamedArgs; ++named) {
        if (arguments.rgdispidNamedArgs[named] == static_cast<DISPID>(place)) return &arguments.rgvarg[named];
    }
    const UINT positional = arguments.cArgs - arguments.cNamedArgs;
    return place < positional ? &arguments.rgvarg[arguments.cArgs - 1 - place] : nullptr;
}

VARIANT* DispatchArguments::Plain(UINT place) const noexcept {
    VARIANT* argument = At(place);
    while (V_VT(argument) == (VT_VARIANT | VT_BYREF) && V_VARIANTREF(argument) != nullptr) {
        argument = V_VARIANTREF(argument);
    }
    return argument;
}

HRESULT DispatchArguments::Mismatch(UINT place) const noexcept {
    if (argumentError != nullptr) *argumentError = static_cast<UINT>(At(place) - arguments.rgvarg);
    return DISP_E_TYPEMISMATCH;
}

HRESULT DispatchArguments::Convert(UINT place, VARTYPE type, VARIANT& converted) const noexcept {
    VariantInit(&converted);
    const HRESULT result = VariantChangeTypeEx(&converted, Plain(place), LOCALE_INVARIANT, 0, type);
    return FAILED(result) ? Mismatch(place) : S_OK;
}

HRESULT DispatchArguments::Read(UINT place, double& number) {
    VARIANT converted;
    const HRESULT result = Convert(place, VT_R8, converted);
    if (SUCCEEDED(result)) number = V_R8(&converted);
    return result;
}

HRESULT DispatchArguments::Read(UINT place, BSTR& text) {
    VARIANT converted;
    const HRESULT result = Convert(place, VT_BSTR, converted);
    if (SUCCEEDED(result)) text = V_BSTR(&converted);
    return result;
}

HRESULT DispatchArguments::Read(UINT place, SAFEARRAY**& records) {
    VARIANT* const argument = Plain(place);
    if (V_VT(argument) == (VT_ARRAY | VT_RECORD)) {
        records = &V_ARRAY(argument);
    } else if (V_VT(argument) == (VT_ARRAY | VT_RECORD | VT_BYREF)) {
        records = V_ARRAYREF(argument);
    } else {
        return Mismatch(place);
    }
    return S_OK;
}

HRESULT DispatchArguments::RequireRoomForNumber(UINT place) const noexcept {
    const VARIANT* const argument = At(place);
    const bool byValue = (V_VT(argument) & VT_BYREF) == 0;
    const bool typed = V_VT(argument) == (VT_R8 | VT_BYREF) && V_R8REF(argument) != nullptr;
    const bool variable = V_VT(argument) == (VT_VARIANT | VT_BYREF) && V_VARIANTREF(argument) != nullptr;
    return byValue || typed || variable ? S_OK : Mismatch(place);
}

void DispatchArguments::Write(UINT place, double number) {
    VARIANT* const argument = At(place);
    if (V_VT(argument) == (VT_R8 | VT_BYREF)) {
        *V_R8REF(argument) = number;
    } else if (V_VT(argument) == (VT_VARIANT | VT_BYREF)) {
        VariantClear(V_VARIANTREF(argument));
        V_VT(V_VARIANTREF(argument)) = VT_R8;
        V_R8(V_VARIANTREF(argument)) = number;
    }
}
