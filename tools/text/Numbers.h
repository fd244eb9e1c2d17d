#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace qmv40::text {

/// Numbers as text and back, with `.` as the decimal mark whatever the locale.

/// With a fixed number of decimals, for people. A value that rounds to zero has no sign.
std::string FixedText(double value, int decimals);

/// The shortest text that reads back to the same bits.
std::string ExactText(double value);

/// A number read from text, or what is wrong with the text.
struct ParsedNumber {
    double value = 0.0;
    const char* problem = nullptr; ///< completes a sentence that begins with the text; null when there is a value
};

/// Reads a decimal number that takes up the whole text. Only finite numbers are accepted.
ParsedNumber ParseNumber(std::string_view text);

/// Two finite numbers with a comma between, such as -500,0.
std::optional<std::pair<double, double>> ParseNumberPair(std::string_view text);

} // namespace qmv40::text
