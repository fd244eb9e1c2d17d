#include "platform/SettingsStore.h"

namespace qmv40 {

struct SettingsKey::State {
    HKEY key = nullptr;
};

namespace {

/// A machine has one set of settings. Without this flag Windows would show a 32-bit process another copy of the key.
constexpr REGSAM access = sizeof(void*) == 8 ? KEY_READ : KEY_READ | KEY_WOW64_64KEY;

} // namespace

SettingsKey::SettingsKey(const char* path) : state(std::make_unique<State>()) {
    if (RegOpenKeyExA(HKEY_LOCAL_MACHINE, path, 0, access, &state->key) != ERROR_SUCCESS) state.reset();
}

SettingsKey::~SettingsKey() {
    if (state) RegCloseKey(state->key);
}

bool SettingsKey::IsOpen() const noexcept { return state != nullptr; }

LSTATUS SettingsKey::Query(const char* name, std::span<char> buffer, DWORD& type, DWORD& length) const {
    type = REG_NONE;
    length = 0;
    if (!state) return ERROR_FILE_NOT_FOUND;
    // With a null address the call would succeed and return the length. With an address it refuses an empty buffer,
    // like any buffer that is too small.
    char nowhere = '\0';
    char* const destination = buffer.empty() ? &nowhere : buffer.data();
    auto bytes = static_cast<DWORD>(buffer.size());
    const LSTATUS result =
        RegQueryValueExA(state->key, name, nullptr, &type, reinterpret_cast<BYTE*>(destination), &bytes);
    if (result == ERROR_SUCCESS || result == ERROR_MORE_DATA) length = bytes;
    return result;
}

} // namespace qmv40
