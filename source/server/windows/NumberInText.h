#pragma once

#include "platform/Automation.h"

namespace qmv40 {

/// Reads a text that consists of one number: an optional sign, decimal digits with at most one point, an optional
/// exponent, blanks and tabs before and after. DISP_E_TYPEMISMATCH for any other text. A comma is refused because it is
/// a decimal separator in some countries and a thousands separator in others. DISP_E_OVERFLOW when no double holds the
/// number.
HRESULT NumberInText(const OLECHAR* text, UINT length, double& number) noexcept;

} // namespace qmv40
