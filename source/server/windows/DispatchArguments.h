#pragma once

#include "platform/ComPointer.h"

namespace qmv40 {

/// The arguments of one late-bound call, by their place in the method's signature, from 0. An argument can be
/// positional or named, and passed by value, by reference or in a script's variable.
///
/// The first refusal is kept: Problem returns its code, the index of the refused argument is in `argumentError`, and
/// later operations do nothing and return null or 0.
class DispatchArguments {
public:
    DispatchArguments(DISPPARAMS& theArguments, UINT* theArgumentError) noexcept
        : arguments(theArguments), argumentError(theArgumentError) {}

    HRESULT Problem() const noexcept { return problem; }

    /// DISP_E_BADPARAMCOUNT unless there are exactly `count` arguments; DISP_E_PARAMNOTFOUND when one is omitted.
    void Require(UINT count) noexcept;
    /// A number, converted as the platform converts it. A text must be a decimal number with a point, in any
    /// locale: the platform can read "7,5" as 75, and the head would be turned to a wrong angle.
    double Number(UINT place) noexcept;
    OwnedText Text(UINT place) noexcept;
    /// An array of records. It is not copied; it still belongs to the calling program.
    SAFEARRAY** Records(UINT place) noexcept;
    /// Refuses an argument in which Write cannot store a number.
    void RequireRoomForNumber(UINT place) noexcept;
    /// Stores two numbers in the variables that the first two arguments refer to, converted to the variables' types. If
    /// one does not fit (DISP_E_OVERFLOW), neither is stored. An argument passed by value is left unchanged.
    void Write(double first, double second) noexcept;

private:
    VARIANT* At(UINT place) const noexcept;
    /// The argument or, if it refers to a script's variable, that variable.
    VARIANT* Plain(UINT place) const noexcept;
    /// The variant that says where a result is stored: the argument, or the reference in a script's variable. A
    /// script's variable that holds a value is a target itself: a number of any type can be stored in it.
    const VARIANT* Target(UINT place) const noexcept;
    /// A copy of the argument's value: of the variable that it refers to; of an object, its default property.
    HRESULT Value(UINT place, VARIANT& value) const noexcept;
    /// Converts `number` to the type of the variable that the argument refers to.
    void Convert(UINT place, double number, VARIANT& converted) noexcept;
    /// Stores the result of Convert in the variable that the argument refers to.
    void Store(UINT place, VARIANT& converted) const noexcept;
    /// Keeps a failure as the problem, with the argument's index. Returns true if `result` is no failure.
    bool Accept(UINT place, HRESULT result) noexcept;

    DISPPARAMS& arguments;
    UINT* argumentError;
    HRESULT problem = S_OK;
};

} // namespace qmv40
