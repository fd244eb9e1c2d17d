#pragma once

#include "platform/Automation.h"

/// The arguments of one late-bound call, by their place in the method's signature: positional or named, plain, by
/// reference, or inside a script's variable. Each operation gives DISP_E_TYPEMISMATCH for what cannot be converted and
/// remembers which argument that was.
class DispatchArguments {
public:
    DispatchArguments(DISPPARAMS& theArguments, UINT* theArgumentError) noexcept
        : arguments(theArguments), argumentError(theArgumentError) {}

    /// DISP_E_BADPARAMCOUNT unless there are exactly `count`; DISP_E_PARAMNOTFOUND when one of them is missing by name.
    HRESULT Require(UINT count);
    /// A number, converted when need be; texts by the invariant locale, whatever the caller's, so that 7.5 is never 75.
    HRESULT Read(UINT place, double& number);
    /// A text that the caller of this frees.
    HRESULT Read(UINT place, BSTR& text);
    /// An array of records, which stays the caller's.
    HRESULT Read(UINT place, SAFEARRAY**& records);
    /// S_OK when Write would find room for a number there.
    HRESULT RequireRoomForNumber(UINT place) const noexcept;
    /// Puts a number where the argument refers to. An argument by value has nowhere to put it and is left alone.
    void Write(UINT place, double number);

private:
    VARIANT* At(UINT place) const noexcept;
    /// The same with a script's variable looked through.
    VARIANT* Plain(UINT place) const noexcept;
    /// The argument as `type`; the caller frees what that owns.
    HRESULT Convert(UINT place, VARTYPE type, VARIANT& converted) const noexcept;
    HRESULT Mismatch(UINT place) const noexcept;

    DISPPARAMS& arguments;
    UINT* argumentError;
};
