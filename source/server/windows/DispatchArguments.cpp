#include "server/windows/DispatchArguments.h"

#include "server/windows/NumberInText.h"

#include <algorithm>
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
    const auto isOneOf = [&](std::initializer_list<VARTYPE> types) {
        return std::ranges::find(types, type) != types.end();
    };
    if (isOneOf({VT_I1, VT_UI1})) return 1;
    if (isOneOf({VT_I2, VT_UI2})) return 2;
    if (isOneOf({VT_I4, VT_UI4, VT_INT, VT_UINT, VT_R4})) return 4;
    return isOneOf({VT_I8, VT_UI8, VT_R8, VT_CY, VT_DATE}) ? 8 : 0;
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

void DispatchArguments::Require(UINT count) noexcept {
    if (arguments.cArgs != count || arguments.cNamedArgs > count) problem = DISP_E_BADPARAMCOUNT;
    for (UINT place = 0; place < count && SUCCEEDED(problem); ++place) {
        if (At(place) == nullptr)
            problem = DISP_E_PARAMNOTFOUND;
        else
            Accept(place, IsLeftOut(*At(place)) ? DISP_E_PARAMNOTFOUND : S_OK);
    }
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

bool DispatchArguments::Accept(UINT place, HRESULT result) noexcept {
    if (SUCCEEDED(result)) return true;
    problem = result;
    if (argumentError != nullptr) *argumentError = static_cast<UINT>(At(place) - arguments.rgvarg);
    return false;
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

double DispatchArguments::Number(UINT place) noexcept {
    OwnedVariant value;
    if (FAILED(problem) || !Accept(place, Value(place, value))) return 0.0;
    if (V_VT(&value) == VT_BSTR) {
        double number = 0.0;
        Accept(place, NumberInText(V_BSTR(&value), SysStringLen(V_BSTR(&value)), number));
        return number;
    }
    const HRESULT changed = VariantChangeTypeEx(&value, &value, LOCALE_INVARIANT, VARIANT_NOVALUEPROP, VT_R8);
    return Accept(place, changed) ? V_R8(&value) : 0.0;
}

OwnedText DispatchArguments::Text(UINT place) noexcept {
    OwnedVariant value;
    if (FAILED(problem) || !Accept(place, Value(place, value))) return nullptr;
    const HRESULT changed = VariantChangeTypeEx(&value, &value, LOCALE_INVARIANT, VARIANT_NOVALUEPROP, VT_BSTR);
    return OwnedText(Accept(place, changed) ? std::exchange(V_BSTR(&value), nullptr) : nullptr);
}

SAFEARRAY** DispatchArguments::Records(UINT place) noexcept {
    if (FAILED(problem)) return nullptr;
    VARIANT* const argument = Plain(place);
    if (V_VT(argument) == (VT_ARRAY | VT_RECORD)) return &V_ARRAY(argument);
    if (V_VT(argument) == (VT_ARRAY | VT_RECORD | VT_BYREF)) return V_ARRAYREF(argument);
    Accept(place, DISP_E_TYPEMISMATCH);
    return nullptr;
}

void DispatchArguments::RequireRoomForNumber(UINT place) noexcept {
    if (FAILED(problem)) return;
    const VARIANT* const target = Target(place);
    const bool isReference = (V_VT(target) & VT_BYREF) != 0;
    const bool room = HoldsNumber(static_cast<VARTYPE>(V_VT(target) & ~VT_BYREF)) && V_BYREF(target) != nullptr;
    Accept(place, isReference && !room ? DISP_E_TYPEMISMATCH : S_OK);
}

const VARIANT* DispatchArguments::Target(UINT place) const noexcept {
    const VARIANT* argument = At(place);
    while (V_VT(argument) == (VT_VARIANT | VT_BYREF) && V_VARIANTREF(argument) != nullptr &&
           (V_VT(V_VARIANTREF(argument)) & VT_BYREF) != 0) {
        argument = V_VARIANTREF(argument);
    }
    return argument;
}

void DispatchArguments::Convert(UINT place, double number, VARIANT& converted) noexcept {
    V_VT(&converted) = VT_R8;
    V_R8(&converted) = number;
    const VARTYPE reference = V_VT(Target(place));
    if (FAILED(problem) || (reference & VT_BYREF) == 0 || reference == (VT_VARIANT | VT_BYREF)) return;
    const auto type = static_cast<VARTYPE>(reference & ~VT_BYREF);
    Accept(place, VariantChangeTypeEx(&converted, &converted, LOCALE_INVARIANT, 0, type));
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
        V_DECIMALREF(target)->wReserved = 0; // in `converted` these bytes held the variant's type
    } else {
        std::memcpy(V_BYREF(target), &V_UI1(&converted), SizeOfNumber(type));
    }
}

void DispatchArguments::Write(double first, double second) noexcept {
    OwnedVariant convertedFirst;
    OwnedVariant convertedSecond;
    Convert(0, first, convertedFirst);
    Convert(1, second, convertedSecond);
    if (FAILED(problem)) return;
    Store(0, convertedFirst);
    Store(1, convertedSecond);
}

} // namespace qmv40
