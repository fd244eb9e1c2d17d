#pragma once

#include "platform/Automation.h"

#include <filesystem>
#include <string>

/// A text that an interface method takes as BSTR*; freed with its owner.
class Bstr {
public:
    explicit Bstr(const std::wstring& content)
        : text(SysAllocStringLen(content.c_str(), static_cast<UINT>(content.size()))) {}
    explicit Bstr(const std::filesystem::path& path) : Bstr(path.wstring()) {}
    Bstr(const Bstr&) = delete;
    Bstr& operator=(const Bstr&) = delete;
    ~Bstr() { SysFreeString(text); }

    BSTR* Address() noexcept { return &text; }
    const wchar_t* Text() const noexcept { return text; }

private:
    BSTR text;
};
