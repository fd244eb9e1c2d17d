#include "tools/text/Numbers.h"

#include "formats/AsciiText.h"

#include <array>
#include <charconv>
#include <cmath>

namespace qmv40::text {

namespace {

// The longest double without exponent has 309 digits, a sign, a mark and decimals.
using NumberBuffer = std::array<char, 400>;

} // namespace

std::string FixedText(double value, int decimals) {
    NumberBuffer buffer;
    const auto result =
        std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, std::chars_format::fixed, decimals);
    std::string text(buffer.data(), result.ptr);
    const bool isNegativeZero = text.starts_with('-') && text.find_first_not_of("-0.") == std::string::npos;
    return isNegativeZero ? text.substr(1) : text;
}

std::string ExactText(double value) {
    NumberBuffer buffer;
    const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value);
    return {buffer.data(), result.ptr};
}

ParsedNumber ParseNumber(std::string_view text) {
    if (text.empty()) return {.problem = "is empty"};
    if (text.starts_with('+') && !text.starts_with("+-")) text.remove_prefix(1);
    ParsedNumber parsed;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), parsed.value);
    if (result.ec == std::errc::result_out_of_range) return {.problem = "is too large or too small a number"};
    if (result.ec != std::errc()) return {.problem = "is not a number"};
    if (result.ptr != text.data() + text.size()) return {.problem = "goes on after the number"};
    if (!std::isfinite(parsed.value)) return {.problem = "is not a finite number"};
    return parsed;
}

std::optional<std::pair<double, double>> ParseNumberPair(std::string_view text) {
    const std::size_t comma = text.find(',');
    if (comma == std::string_view::npos) return std::nullopt;
    const ParsedNumber first = ParseNumber(ascii::Trimmed(text.substr(0, comma)));
    const ParsedNumber second = ParseNumber(ascii::Trimmed(text.substr(comma + 1)));
    if (first.problem != nullptr || second.problem != nullptr) return std::nullopt;
    return std::pair(first.value, second.value);
}

} // namespace qmv40::text
