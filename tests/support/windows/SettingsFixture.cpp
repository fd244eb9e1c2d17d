#include "tests/support/SettingsFixture.h"

#define WIN32_LEAN_AND_MEAN
#include <windows.h>

#include <stdexcept>
#include <string>

namespace {

void Require(LSTATUS result) {
    if (result != ERROR_SUCCESS)
        throw std::runtime_error("settings store of the test: error " + std::to_string(result));
}

std::wstring Wide(const char* ascii) {
    const std::string narrow(ascii);
    return {narrow.begin(), narrow.end()};
}

/// Programs of both architectures set the same key.
constexpr REGSAM view = KEY_WOW64_64KEY;

/// Removes the key and everything below it, if it exists.
void DeleteKey() {
    HKEY handle = nullptr;
    if (RegOpenKeyExA(HKEY_LOCAL_MACHINE, SettingsFixture::key, 0, KEY_ALL_ACCESS | view, &handle) != ERROR_SUCCESS)
        return;
    RegDeleteTreeA(handle, nullptr);
    RegCloseKey(handle);
    RegDeleteKeyExA(HKEY_LOCAL_MACHINE, SettingsFixture::key, view, 0);
}

/// The key's handle while a value is written.
class OpenKey {
public:
    OpenKey() {
        Require(RegCreateKeyExA(HKEY_LOCAL_MACHINE, SettingsFixture::key, 0, nullptr, 0, KEY_WRITE | view, nullptr,
                                &handle, nullptr));
    }
    OpenKey(const OpenKey&) = delete;
    OpenKey& operator=(const OpenKey&) = delete;
    ~OpenKey() { RegCloseKey(handle); }

    // The wide function stores the bytes unchanged; the narrow one would add a missing terminator.
    void Set(const char* name, DWORD type, const void* bytes, std::size_t length) const {
        Require(RegSetValueExW(handle, Wide(name).c_str(), 0, type, static_cast<const BYTE*>(bytes),
                               static_cast<DWORD>(length)));
    }

private:
    HKEY handle = nullptr;
};

} // namespace

struct SettingsFixture::State {};

SettingsFixture::SettingsFixture() : state(std::make_unique<State>()) { RemoveKey(); }

SettingsFixture::~SettingsFixture() { DeleteKey(); }

void SettingsFixture::SetText(const char* name, const char* text) {
    const std::wstring wide = Wide(text);
    OpenKey().Set(name, REG_SZ, wide.c_str(), (wide.size() + 1) * sizeof(wchar_t));
}

void SettingsFixture::SetRaw(const char* name, unsigned long type, std::vector<unsigned char> bytes) {
    const std::wstring wide(bytes.begin(), bytes.end());
    const bool isText = type == REG_SZ || type == REG_EXPAND_SZ || type == REG_MULTI_SZ;
    if (isText)
        OpenKey().Set(name, type, wide.data(), wide.size() * sizeof(wchar_t));
    else
        OpenKey().Set(name, type, bytes.data(), bytes.size());
}

void SettingsFixture::RemoveKey() { DeleteKey(); }

void SettingsFixture::CreateEmptyKey() {
    RemoveKey();
    const OpenKey created;
}
