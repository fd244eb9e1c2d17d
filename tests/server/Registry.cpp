#include "tests/server/Registry.h"

#include <vector>

namespace {

constexpr const wchar_t* registeredKeys[] = {
    programKey, versionIndependentProgramKey, classKey, typeLibraryKey, firstInterfaceKey, secondInterfaceKey};

/// Longer than all names and texts of these tests.
constexpr DWORD longestText = 1024;

class OpenKey {
public:
    explicit OpenKey(const std::wstring& key) {
        if (RegOpenKeyExW(HKEY_CLASSES_ROOT, key.c_str(), 0, KEY_READ, &handle) != ERROR_SUCCESS) handle = nullptr;
    }
    OpenKey(const OpenKey&) = delete;
    OpenKey& operator=(const OpenKey&) = delete;
    ~OpenKey() {
        if (handle != nullptr) RegCloseKey(handle);
    }
    HKEY Get() const noexcept { return handle; }

private:
    HKEY handle = nullptr;
};

std::map<std::wstring, std::wstring> Values(HKEY key) {
    std::map<std::wstring, std::wstring> values;
    for (DWORD index = 0;; ++index) {
        wchar_t name[longestText];
        wchar_t text[longestText];
        DWORD nameLength = longestText;
        DWORD bytes = sizeof text - sizeof(wchar_t);
        DWORD type = 0;
        if (RegEnumValueW(key, index, name, &nameLength, nullptr, &type, reinterpret_cast<BYTE*>(text), &bytes) !=
            ERROR_SUCCESS)
            return values;
        text[bytes / sizeof(wchar_t)] = L'\0';
        values[name] = type == REG_SZ ? text : L"(no text)";
    }
}

std::vector<std::wstring> Subkeys(HKEY key) {
    std::vector<std::wstring> subkeys;
    wchar_t name[longestText];
    while (RegEnumKeyW(key, static_cast<DWORD>(subkeys.size()), name, longestText) == ERROR_SUCCESS)
        subkeys.emplace_back(name);
    return subkeys;
}

} // namespace

RegistryTexts TextsBelow(const std::wstring& key) {
    const OpenKey open(key);
    if (open.Get() == nullptr) return {};
    RegistryTexts texts{{key, Values(open.Get())}};
    for (const std::wstring& subkey : Subkeys(open.Get())) texts.merge(TextsBelow(key + L'\\' + subkey));
    return texts;
}

RegistryTexts RegisteredTexts() {
    RegistryTexts texts;
    for (const wchar_t* const key : registeredKeys) texts.merge(TextsBelow(key));
    return texts;
}

bool KeyExists(const std::wstring& key) { return OpenKey(key).Get() != nullptr; }

void SetText(const std::wstring& key, const std::wstring& name, const std::wstring& text) {
    RegSetKeyValueW(HKEY_CLASSES_ROOT, key.c_str(), name.c_str(), REG_SZ, text.c_str(),
                    static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)));
}

void RemoveKey(const std::wstring& key) {
    if (!KeyExists(key)) return;
    RegDeleteTreeW(HKEY_CLASSES_ROOT, key.c_str());
    RegDeleteKeyW(HKEY_CLASSES_ROOT, key.c_str());
}

void RemoveRegistration() {
    for (const wchar_t* const key : registeredKeys) RemoveKey(key);
}
