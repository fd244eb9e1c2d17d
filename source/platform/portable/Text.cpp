#include "platform/portable/Text.h"

#include <cstdlib>
#include <cwchar>
#include <limits>

namespace {

/// The length in bytes. It is stored immediately before the first character.
using LengthPrefix = std::uint32_t;

constexpr std::size_t longestText =
    (std::numeric_limits<LengthPrefix>::max() - sizeof(LengthPrefix) - sizeof(OLECHAR)) / sizeof(OLECHAR);

/// Memory for `length` characters and the terminator. Null if memory runs out, or if the prefix cannot hold the length.
BSTR Allocate(std::size_t length) noexcept {
    if (length > longestText) return nullptr;
    const auto byteLength = static_cast<LengthPrefix>(length * sizeof(OLECHAR));
    auto* const block = static_cast<char*>(std::malloc(sizeof byteLength + byteLength + sizeof(OLECHAR)));
    if (block == nullptr) return nullptr;
    std::memcpy(block, &byteLength, sizeof byteLength);
    auto* const text = reinterpret_cast<OLECHAR*>(block + sizeof byteLength);
    text[length] = L'\0';
    return text;
}

char* BlockOf(BSTR text) noexcept { return reinterpret_cast<char*>(text) - sizeof(LengthPrefix); }

BSTR Copy(const OLECHAR* text, std::size_t length) noexcept {
    const BSTR copy = Allocate(length);
    if (copy != nullptr && text != nullptr) std::wmemcpy(copy, text, length);
    return copy;
}

} // namespace

BSTR SysAllocString(const OLECHAR* text) noexcept { return text == nullptr ? nullptr : Copy(text, std::wcslen(text)); }

BSTR SysAllocStringLen(const OLECHAR* text, UINT length) noexcept { return Copy(text, length); }

void SysFreeString(BSTR text) noexcept {
    if (text != nullptr) std::free(BlockOf(text));
}

UINT SysStringLen(BSTR text) noexcept {
    if (text == nullptr) return 0;
    LengthPrefix byteLength = 0;
    std::memcpy(&byteLength, BlockOf(text), sizeof byteLength);
    return byteLength / UINT{sizeof(OLECHAR)};
}
