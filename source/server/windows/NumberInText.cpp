#include "server/windows/NumberInText.h"

#include <array>
#include <charconv>
#include <string_view>

namespace qmv40 {

namespace {

/// Longer texts are refused: no caller writes an angle with so many digits.
constexpr std::size_t longestNumber = 400;

constexpr std::wstring_view blanks = L" \t";

std::wstring_view WithoutBlanks(std::wstring_view text) noexcept {
    const std::size_t first = text.find_first_not_of(blanks);
    if (first == std::wstring_view::npos) return {};
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

bool CanBeInNumber(wchar_t character) noexcept {
    return (character >= L'0' && character <= L'9') ||
           std::wstring_view(L".eE+-").find(character) != std::wstring_view::npos;
}

} // namespace

HRESULT NumberInText(const OLECHAR* text, UINT length, double& number) noexcept {
    std::wstring_view written = WithoutBlanks({text == nullptr ? L"" : text, length});
    // from_chars accepts no plus sign.
    if (written.size() > 1 && written[0] == L'+' && written[1] != L'-') written.remove_prefix(1);
    std::array<char, longestNumber> characters{};
    if (written.size() > characters.size()) return DISP_E_TYPEMISMATCH;
    std::size_t count = 0;
    for (const wchar_t character : written) {
        // This refuses "inf" and "nan", which from_chars would accept.
        if (!CanBeInNumber(character)) return DISP_E_TYPEMISMATCH;
        characters[count++] = static_cast<char>(character);
    }
    const char* const end = characters.data() + count;
    double read = 0.0;
    const auto [stopped, error] = std::from_chars(characters.data(), end, read);
    if (error == std::errc::invalid_argument || stopped != end) return DISP_E_TYPEMISMATCH;
    if (error == std::errc::result_out_of_range) return DISP_E_OVERFLOW;
    number = read;
    return S_OK;
}

} // namespace qmv40
