#pragma once

#include "tests/support/Bstr.h"
#include "tests/support/Calculator.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

/// Late-bound calls as scripts make them. An argument refers to a value of the test and does not own it.

/// A variant of this type. Its value has the bytes of `value`.
template <class Value> VARIANT VariantOf(VARTYPE type, const Value& value) {
    static_assert(sizeof value <= sizeof(LONGLONG));
    VARIANT variant{};
    std::memcpy(&V_I8(&variant), &value, sizeof value);
    V_VT(&variant) = type;
    return variant;
}

inline VARIANT Argument(const VARIANT& variant) { return variant; }
inline VARIANT Argument(double number) { return VariantOf(VT_R8, number); }
inline VARIANT Argument(int number) { return VariantOf(VT_I4, number); }
inline VARIANT Argument(Bstr& text) { return VariantOf(VT_BSTR, *text.Address()); }
inline VARIANT Argument(BSTR* text) { return VariantOf(VT_BSTR | VT_BYREF, text); }
inline VARIANT Argument(double* number) { return VariantOf(VT_R8 | VT_BYREF, number); }
/// A script's variable.
inline VARIANT Argument(VARIANT* variable) { return VariantOf(VT_VARIANT | VT_BYREF, variable); }
inline VARIANT Argument(SAFEARRAY* records) { return VariantOf(VT_ARRAY | VT_RECORD, records); }
inline VARIANT Argument(SAFEARRAY** records) { return VariantOf(VT_ARRAY | VT_RECORD | VT_BYREF, records); }

/// The results of a call.
struct Outcome {
    static constexpr UINT noArgument = 99;

    HRESULT code = S_OK;
    std::shared_ptr<VARIANT> result;
    HRESULT scode = S_OK;
    std::wstring source;
    std::wstring description;
    std::wstring helpFile;
    UINT wrongArgument = noArgument; ///< the index of the refused argument, counted from the last one
};

/// The parameters of a call besides its arguments.
struct CallOptions {
    WORD flags = DISPATCH_METHOD;
    LCID locale = LOCALE_USER_DEFAULT;
    std::vector<DISPID> named{}; ///< the parameters of the first arguments, which are passed by name
};

inline Outcome InvokeWith(IDispatch& object, DISPID method, std::vector<VARIANT> arguments, CallOptions options = {}) {
    // The named arguments come first, then the others in reverse order.
    std::reverse(arguments.begin() + static_cast<std::ptrdiff_t>(options.named.size()), arguments.end());
    DISPPARAMS parameters{arguments.data(), options.named.data(), static_cast<UINT>(arguments.size()),
                          static_cast<UINT>(options.named.size())};
    Outcome outcome;
    outcome.result = {new VARIANT{}, [](VARIANT* owned) {
                          VariantClear(owned);
                          delete owned;
                      }};
    EXCEPINFO exception{};
    outcome.code = object.Invoke(method, IID_NULL, options.locale, options.flags, &parameters, outcome.result.get(),
                                 &exception, &outcome.wrongArgument);
    const auto taken = [](BSTR text) {
        const std::wstring copy(text == nullptr ? L"" : text, SysStringLen(text));
        SysFreeString(text);
        return copy;
    };
    outcome.scode = exception.scode;
    outcome.source = taken(exception.bstrSource);
    outcome.description = taken(exception.bstrDescription);
    outcome.helpFile = taken(exception.bstrHelpFile);
    return outcome;
}

inline DISPID IdOf(IDispatch& object, const wchar_t* name) {
    std::wstring text(name);
    LPOLESTR names[] = {text.data()};
    DISPID id = DISPID_UNKNOWN;
    EXPECT_EQ(object.GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &id), S_OK);
    return id;
}

/// Calls a method by its name.
template <class... Arguments> Outcome Call(IDispatch& object, const wchar_t* method, Arguments&&... arguments) {
    return InvokeWith(object, IdOf(object, method), {Argument(arguments)...});
}

/// The record in a result. Its type must have this identifier.
template <class Record> Record RecordIn(const Outcome& outcome, REFGUID type) {
    Record record{};
    EXPECT_EQ(outcome.code, S_OK);
    EXPECT_EQ(V_VT(outcome.result.get()), VT_RECORD);
    if (V_VT(outcome.result.get()) != VT_RECORD) return record;
    GUID found{};
    ULONG size = 0;
    V_RECORDINFO(outcome.result.get())->GetGuid(&found);
    V_RECORDINFO(outcome.result.get())->GetSize(&size);
    EXPECT_TRUE(IsEqualGUID(found, type));
    EXPECT_EQ(size, sizeof record);
    if (size == sizeof record) std::memcpy(&record, V_RECORD(outcome.result.get()), sizeof record);
    return record;
}
