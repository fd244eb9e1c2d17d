#pragma once

#include "platform/Automation.h"

namespace qmv40 {

/// The arguments of one late-bound call, by their place in the method's signature, from 0. An argument can be
/// positional or named, and passed by value, by reference or in a script's variable. An operation that refuses an
/// argument stores its index in `argumentError`.
class DispatchArguments {
public:
    DispatchArguments(DISPPARAMS& theArguments, UINT* theArgumentError) noexcept
        : arguments(theArguments), argumentError(theArgumentError) {}

    /// DISP_E_BADPARAMCOUNT unless there are exactly `count` arguments; DISP_E_PARAMNOTFOUND when one is omitted.
    HRESULT Require(UINT count) const noexcept;
    /// Reads a number, converted as the platform converts it. A text must be a decimal number with a point, in any
    /// locale: the platform can read "7,5" as 75, and the head would be turned to a wrong angle.
    HRESULT Read(UINT place, double& number) const noexcept;
    /// Reads a text, which the caller frees.
    HRESULT Read(UINT place, BSTR& text) const noexcept;
    /// Reads an array of records. It is not copied; it still belongs to the calling program.
    HRESULT Read(UINT place, SAFEARRAY**& records) const noexcept;
    /// S_OK if Write can store a number in the argument.
    HRESULT RequireRoomForNumber(UINT place) const noexcept;
    /// Stores two numbers in the variables that the first two arguments refer to, converted to the variables' types. If
    /// one does not fit (DISP_E_OVERFLOW), neither is stored. An argument passed by value is left unchanged.
    HRESULT Write(double first, double second) const noexcept;

private:
    VARIANT* At(UINT place) const noexcept;
    /// The argument or, if it refers to a script's variable, that variable.
    VARIANT* Plain(UINT place) const noexcept;
    /// The variant that says where a result is stored: the argument, or the reference in a script's variable. A
    /// script's variable that holds a value is a target itself: a number of any type can be stored in it.
    const VARIANT* Target(UINT place) const noexcept;
    /// A copy of the argument's value: of the variable that it refers to; of an object, its default property.
    HRESULT Value(UINT place, VARIANT& value) const noexcept;
    /// `number` in the type of the variable that the argument refers to.
    HRESULT Converted(UINT place, double number, VARIANT& converted) const noexcept;
    /// Stores the result of Converted in the variable that the argument refers to.
    void Store(UINT place, VARIANT& converted) const noexcept;
    /// Returns `code` and stores the argument's index as its cause.
    HRESULT Blame(UINT place, HRESULT code) const noexcept;

    DISPPARAMS& arguments;
    UINT* argumentError;
};

} // namespace qmv40
