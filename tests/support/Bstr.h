#pragma once

#include "platform/Automation.h"

#include <filesystem>
#include <string>

/// A file's name as the component takes it. (The library's own conversion depends on the locale.)
inline std::wstring WideNameOf(const std::filesystem::path& path) {
    if constexpr (sizeof(wchar_t) == sizeof(char16_t)) return path.wstring();
    const std::u32string name = path.u32string();
    return {name.begin(), name.end()};
}

/// A text for an interface method that takes a BSTR*. Freed with this object.
class Bstr {
public:
    explicit Bstr(const std::wstring& content)
        : text(SysAllocStringLen(content.c_str(), static_cast<UINT>(content.size()))) {}
    explicit Bstr(const std::filesystem::path& path) : Bstr(WideNameOf(path)) {}
    Bstr(const Bstr&) = delete;
    Bstr& operator=(const Bstr&) = delete;
    ~Bstr() { SysFreeString(text); }

    BSTR* Address() noexcept { return &text; }
    const wchar_t* Text() const noexcept { return text; }

private:
    BSTR text;
};
