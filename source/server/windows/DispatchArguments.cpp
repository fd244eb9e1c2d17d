#include "server/windows/DispatchArguments.h"

#include "server/windows/NumberInText.h"

#include <cstring>
#include <utility>

namespace qmv40 {

namespace {

/// A variant that is cleared at the end.
struct OwnedVariant : VARIANT {
    OwnedVariant() noexcept : VARIANT{} {}
    OwnedVariant(const OwnedVariant&) = delete;
    OwnedVariant& operator=(const OwnedVariant&) = delete;
    ~OwnedVariant() { VariantClear(this); }
};

bool IsLeftOut(const VARIANT& argument) noexcept {
    return V_VT(&argument) == VT_ERROR && V_ERROR(&argument) == DISP_E_PARAMNOTFOUND;
}

/// The size of a number of this type in bytes; 0 for other types.
std::size_t SizeOfNumber(VARTYPE type) noexcept {
    switch (type) {
    case VT_I1:
    case VT_UI1:
        return 1;
    case VT_I2:
    case VT_UI2:
        return 2;
    case VT_I4:
    case VT_UI4:
    case VT_INT:
    case VT_UINT:
    case VT_R4:
        return 4;
    case VT_I8:
    case VT_UI8:
    case VT_R8:
    case VT_CY:
    case VT_DATE:
        return 8;
    default:
        return 0;
    }
}

bool HoldsNumber(VARTYPE type) noexcept {
    return SizeOfNumber(type) != 0 || type == VT_DECIMAL || type == VT_BSTR || type == VT_VARIANT;
}

/// The value of an object's default property.
HRESULT DefaultProperty(IDispatch* object, VARIANT& value) noexcept {
    if (object == nullptr) return DISP_E_TYPEMISMATCH;
    DISPPARAMS none{};
    const HRESULT got = object->Invoke(DISPID_VALUE, IID_NULL, LOCALE_INVARIANT, DISPATCH_PROPERTYGET | DISPATCH_METHOD,
                                       &none, &value, nullptr, nullptr);
    return FAILED(got) ? DISP_E_TYPEMISMATCH : S_OK;
}

} // namespace

HRESULT DispatchArguments::Require(UINT count) const noexcept {
    if (arguments.cArgs != count || arguments.cNamedArgs > count) return DISP_E_BADPARAMCOUNT;
    for (UINT place = 0; place < count; ++place) {
        if (At(place) == nullptr) return DISP_E_PARAMNOTFOUND;
        if (IsLeftOut(*At(place))) return Blame(place, DISP_E_PARAMNOTFOUND);
    }
    return S_OK;
}

VARIANT* DispatchArguments::At(UINT place) const noexcept {
    // The array holds the named arguments first, then the positional ones in reverse order.
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

HRESULT DispatchArguments::Blame(UINT place, HRESULT code) const noexcept {
    if (argumentError != nullptr) *argumentError = static_cast<UINT>(At(place) - arguments.rgvarg);
    return code;
}

HRESULT DispatchArguments::Value(UINT place, VARIANT& value) const noexcept {
    VARIANT* const argument = Plain(place);
    if ((V_VT(argument) & VT_BYREF) != 0 && V_BYREF(argument) == nullptr) return DISP_E_TYPEMISMATCH;
    OwnedVariant copy;
    const HRESULT copied = VariantCopyInd(&copy, argument);
    if (FAILED(copied)) return copied;
    if (V_VT(&copy) == VT_DISPATCH) return DefaultProperty(V_DISPATCH(&copy), value);
    std::swap(static_cast<VARIANT&>(copy), value);
    return S_OK;
}

HRESULT DispatchArguments::Read(UINT place, double& number) const noexcept {
    OwnedVariant value;
    HRESULT read = Value(place, value);
    if (SUCCEEDED(read) && V_VT(&value) == VT_BSTR) {
        read = NumberInText(V_BSTR(&value), SysStringLen(V_BSTR(&value)), number);
    } else if (SUCCEEDED(read)) {
        read = VariantChangeTypeEx(&value, &value, LOCALE_INVARIANT, VARIANT_NOVALUEPROP, VT_R8);
        if (SUCCEEDED(read)) number = V_R8(&value);
    }
    return FAILED(read) ? Blame(place, read) : S_OK;
}

HRESULT DispatchArguments::Read(UINT place, BSTR& text) const noexcept {
    OwnedVariant value;
    HRESULT read = Value(place, value);
    if (SUCCEEDED(read)) read = VariantChangeTypeEx(&value, &value, LOCALE_INVARIANT, VARIANT_NOVALUEPROP, VT_BSTR);
    if (FAILED(read)) return Blame(place, read);
    text = std::exchange(V_BSTR(&value), nullptr);
    return S_OK;
}

HRESULT DispatchArguments::Read(UINT place, SAFEARRAY**& records) const noexcept {
    VARIANT* const argument = Plain(place);
    if (V_VT(argument) == (VT_ARRAY | VT_RECORD)) {
        records = &V_ARRAY(argument);
    } else if (V_VT(argument) == (VT_ARRAY | VT_RECORD | VT_BYREF)) {
        records = V_ARRAYREF(argument);
    } else {
        return Blame(place, DISP_E_TYPEMISMATCH);
    }
    return S_OK;
}

HRESULT DispatchArguments::RequireRoomForNumber(UINT place) const noexcept {
    const VARIANT* const argument = Target(place);
    if ((V_VT(argument) & VT_BYREF) == 0) return S_OK;
    const bool room = HoldsNumber(static_cast<VARTYPE>(V_VT(argument) & ~VT_BYREF)) && V_BYREF(argument) != nullptr;
    return room ? S_OK : Blame(place, DISP_E_TYPEMISMATCH);
}

const VARIANT* DispatchArguments::Target(UINT place) const noexcept {
    const VARIANT* argument = At(place);
    while (V_VT(argument) == (VT_VARIANT | VT_BYREF) && V_VARIANTREF(argument) != nullptr &&
           (V_VT(V_VARIANTREF(argument)) & VT_BYREF) != 0) {
        argument = V_VARIANTREF(argument);
    }
    return argument;
}

HRESULT DispatchArguments::Converted(UINT place, double number, VARIANT& converted) const noexcept {
    V_VT(&converted) = VT_R8;
    V_R8(&converted) = number;
    const VARTYPE reference = V_VT(Target(place));
    if ((reference & VT_BYREF) == 0 || reference == (VT_VARIANT | VT_BYREF)) return S_OK;
    const HRESULT result =
        VariantChangeTypeEx(&converted, &converted, LOCALE_INVARIANT, 0, static_cast<VARTYPE>(reference & ~VT_BYREF));
    return FAILED(result) ? Blame(place, result) : S_OK;
}

void DispatchArguments::Store(UINT place, VARIANT& converted) const noexcept {
    const VARIANT* const target = Target(place);
    const auto type = static_cast<VARTYPE>(V_VT(target) & ~VT_BYREF);
    if ((V_VT(target) & VT_BYREF) == 0) return;
    if (type == VT_VARIANT) {
        VariantClear(V_VARIANTREF(target));
        *V_VARIANTREF(target) = std::exchange(converted, VARIANT{});
    } else if (type == VT_BSTR) {
        SysFreeString(std::exchange(*V_BSTRREF(target), std::exchange(V_BSTR(&converted), nullptr)));
    } else if (type == VT_DECIMAL) {
        *V_DECIMALREF(target) = V_DECIMAL(&converted);
        V_DECIMALREF(target)->wReserved = 0; // these bytes hold the type of the variant
    } else {
        std::memcpy(V_BYREF(target), &V_UI1(&converted), SizeOfNumber(type));
    }
}

HRESULT DispatchArguments::Write(double first, double second) const noexcept {
    OwnedVariant convertedFirst;
    OwnedVariant convertedSecond;
    HRESULT written = Converted(0, first, convertedFirst);
    if (SUCCEEDED(written)) written = Converted(1, second, convertedSecond);
    if (FAILED(written)) return written;
    Store(0, convertedFirst);
    Store(1, convertedSecond);
    return S_OK;
}

} // namespace qmv40
