#pragma once

#include <array>

namespace qmv40 {

/// Numbers as text in the C locale, independently of the locale of the host process.

/// The number at the beginning of `text`, by the rules of the C library's strtod in the C locale: leading white space
/// is skipped, an optional sign, decimal or hexadecimal digits, "inf" and "nan" are understood, conversion stops at the
/// first character that cannot continue the number. Text that does not begin with a number gives 0.0. A number that
/// is too large gives infinity.
double TextToDouble(const char* text) noexcept;

/// Terminated text of a double.
using ScientificText = std::array<char, 32>;

/// `value` as the C library's "%.9e" writes it in the C locale: one digit, a point, nine digits, `e`, a sign and at
/// least two exponent digits (-6.950000000e+00). Correctly rounded. A value that is not finite gives "inf", "-inf",
/// "nan" or "-nan".
ScientificText DoubleToScientific(double value) noexcept;

} // namespace qmv40
