#pragma once

#include "platform/Automation.h"

namespace qmv40 {

/// The arguments of one late-bound call, by their place in the method's signature: positional or named, by value, by
/// reference, or inside a script's variable. Each operation that refuses an argument remembers which one it was.
class DispatchArguments {
public:
    DispatchArguments(DISPPARAMS& theArguments, UINT* theArgumentError) noexcept
        : arguments(theArguments), argumentError(theArgumentError) {}

    /// DISP_E_BADPARAMCOUNT unless there are exactly `count`; DISP_E_PARAMNOTFOUND when one of them is left out.
    HRESULT Require(UINT count) const noexcept;
    /// A number, converted as the platform converts it. A text must be wholly a decimal number with a point, in any
    /// locale: the platform would read "7,5" as 75, and the head would be turned to another angle.
    HRESULT Read(UINT place, double& number) const noexcept;
    /// A text, which the caller frees.
    HRESULT Read(UINT place, BSTR& text) const noexcept;
    /// An array of records. It is not copied: its owner is the program that made the call.
    HRESULT Read(UINT place, SAFEARRAY**& records) const noexcept;
    /// S_OK when Write can put a number there.
    HRESULT RequireRoomForNumber(UINT place) const noexcept;
    /// Puts two numbers where the first two arguments refer to, converted to what is there. Writes both or, when one
    /// does not fit (DISP_E_OVERFLOW), neither. An argument by value has no place for a result and is left alone.
    HRESULT Write(double first, double second) const noexcept;

private:
    VARIANT* At(UINT place) const noexcept;
    /// The argument; if it is a reference to a script's variable, that variable.
    VARIANT* Plain(UINT place) const noexcept;
    /// Where a result goes: the argument, or the reference inside a script's variable. A variable that holds a value
    /// takes any number and is a target itself.
    const VARIANT* Target(UINT place) const noexcept;
    /// A copy of what the argument stands for: of what it refers to, of an object its default property.
    HRESULT Value(UINT place, VARIANT& value) const noexcept;
    /// `number` in the type that the argument refers to.
    HRESULT Converted(UINT place, double number, VARIANT& converted) const noexcept;
    /// Puts what Converted made where the argument refers to.
    void Store(UINT place, VARIANT& converted) const noexcept;
    /// Returns `code` and reports the argument as its cause.
    HRESULT Blame(UINT place, HRESULT code) const noexcept;

    DISPPARAMS& arguments;
    UINT* argumentError;
};

} // namespace qmv40
