#include "platform/ProfileFile.h"

#include "platform/Automation.h"

#include <optional>
#include <string>

namespace {

/// The name in the thread's code page, passed on as a null pointer when there is none. A character without a
/// counterpart there becomes '?', never a similar one: no file may have such a name, so the call fails instead of
/// reaching another file.
class NarrowName {
public:
    explicit NarrowName(const wchar_t* wide) {
        const int length = Convert(wide, nullptr, 0);
        if (length <= 0) return;
        text.emplace(static_cast<std::size_t>(length), '\0');
        if (Convert(wide, text->data(), length) != length) text.reset();
    }

    const char* Get() const { return text ? text->c_str() : nullptr; }

private:
    static int Convert(const wchar_t* wide, char* narrow, int size) {
        if (wide == nullptr) return 0;
        return WideCharToMultiByte(CP_THREAD_ACP, WC_NO_BEST_FIT_CHARS, wide, -1, narrow, size, nullptr, nullptr);
    }

    std::optional<std::string> text;
};

} // namespace

void ReadProfileText(const wchar_t* section, const wchar_t* key, const char* defaultText, std::span<char> buffer,
                     const wchar_t* fileName) {
    GetPrivateProfileStringA(NarrowName(section).Get(), NarrowName(key).Get(), defaultText, buffer.data(),
                             static_cast<DWORD>(buffer.size()), NarrowName(fileName).Get());
}

bool WriteProfileText(const wchar_t* section, const wchar_t* key, const char* text, const wchar_t* fileName) {
    return WritePrivateProfileStringA(NarrowName(section).Get(), NarrowName(key).Get(), text,
                                      NarrowName(fileName).Get()) != 0;
}
