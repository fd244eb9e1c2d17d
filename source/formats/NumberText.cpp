#include "formats/NumberText.h"

#include "formats/AsciiText.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <optional>
#include <string_view>

namespace qmv40 {

using namespace ascii;

namespace {

bool IsSpace(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }
bool IsDigit(char c) { return c >= '0' && c <= '9'; }
bool IsHexDigit(char c) { return IsDigit(c) || (UpperAscii(c) >= 'A' && UpperAscii(c) <= 'F'); }

/// One way of writing a number: how to recognise it, and how much one digit before the point adds to its exponent.
struct Notation {
    std::chars_format format;
    bool (*isDigit)(char);
    char exponentMark;
    long long exponentsPerDigit;
};
constexpr Notation decimal{std::chars_format::general, IsDigit, 'E', 1};
constexpr Notation hexadecimal{std::chars_format::hex, IsHexDigit, 'P', 4};

bool StartsNumber(std::string_view text, const Notation& notation) {
    if (!text.empty() && text.front() == '.') text.remove_prefix(1);
    return !text.empty() && notation.isDigit(text.front());
}

/// The number of digits from the first significant digit to the point: 3 in 123.4, 0 in 0.5, -2 in 0.005.
long long LeadingPlace(std::string_view digits) {
    const std::size_t point = std::min(digits.find('.'), digits.size());
    const std::size_t leading = std::min(digits.find_first_not_of("0."), digits.size());
    const auto places = static_cast<long long>(point) - static_cast<long long>(leading);
    return leading < point ? places : places + 1;
}

/// The exponent after its mark, limited to 2^50: no text in memory has so many digits that they could balance it.
long long Exponent(std::string_view text) {
    constexpr long long bound = 1LL << 50;
    const bool negative = !text.empty() && text.front() == '-';
    if (!text.empty() && !IsDigit(text.front())) text.remove_prefix(1);
    long long exponent = 0;
    for (const char digit : text) exponent = std::min(bound, exponent * 10 + (digit - '0'));
    return negative ? -exponent : exponent;
}

/// Infinity for a number that is too large for a double, 0 for one that is too small.
double BeyondRange(std::string_view number, const Notation& notation) {
    const auto isMark = [&](char c) { return UpperAscii(c) == notation.exponentMark; };
    const auto mark = static_cast<std::size_t>(std::find_if(number.begin(), number.end(), isMark) - number.begin());
    const long long exponent = mark < number.size() ? Exponent(number.substr(mark + 1)) : 0;
    const long long magnitude = notation.exponentsPerDigit * LeadingPlace(number.substr(0, mark)) + exponent;
    return magnitude > 0 ? std::numeric_limits<double>::infinity() : 0.0;
}

double Convert(std::string_view text, const Notation& notation) {
    double value = 0.0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, notation.format);
    if (error == std::errc{}) return value;
    return BeyondRange(text.substr(0, static_cast<std::size_t>(end - text.data())), notation);
}

/// The number without its sign; nothing when the text does not begin one.
std::optional<double> UnsignedNumber(std::string_view text) {
    if (StartsWithIgnoringCase(text, "inf")) return std::numeric_limits<double>::infinity();
    if (StartsWithIgnoringCase(text, "nan")) return std::numeric_limits<double>::quiet_NaN();
    if (StartsWithIgnoringCase(text, "0x") && StartsNumber(text.substr(2), hexadecimal))
        return Convert(text.substr(2), hexadecimal);
    if (StartsNumber(text, decimal)) return Convert(text, decimal);
    return std::nullopt;
}

} // namespace

double TextToDouble(const char* text) noexcept {
    while (IsSpace(*text)) ++text;
    const bool negative = *text == '-';
    if (negative || *text == '+') ++text;
    const std::optional<double> number = UnsignedNumber(text);
    if (!number) return 0.0; // a sign without a number is ignored
    return negative ? -*number : *number;
}

ScientificText DoubleToScientific(double value) noexcept {
    ScientificText text{};
    std::to_chars(text.data(), text.data() + text.size() - 1, value, std::chars_format::scientific, 9);
    return text;
}

} // namespace qmv40
