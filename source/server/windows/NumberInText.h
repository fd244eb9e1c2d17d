#pragma once

#include "platform/Automation.h"

namespace qmv40 {

/// The number that `text` is, wholly: an optional sign, decimal digits with at most one point, an optional exponent,
/// blanks and tabs before and after. DISP_E_TYPEMISMATCH for any other text: a comma would be a decimal separator to
/// one caller and a thousands separator to another. DISP_E_OVERFLOW when no double holds the number.
HRESULT NumberInText(const OLECHAR* text, UINT length, double& number) noexcept;

} // namespace qmv40
