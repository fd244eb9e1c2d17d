#include "platform/SettingsStore.h"

namespace qmv40 {

struct SettingsKey::State {
    HKEY key = nullptr;
};

namespace {

/// The settings are one for the machine: a 32-bit process would else be shown a copy of the key that nobody sets.
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
    // Without an address the call would tell the length and succeed; with one it refuses an empty buffer like any
    // other.
    char nowhere = '\0';
    char* const destination = buffer.empty() ? &nowhere : buffer.data();
    auto bytes = static_cast<DWORD>(buffer.size());
    const LSTATUS result =
        RegQueryValueExA(state->key, name, nullptr, &type, reinterpret_cast<BYTE*>(destination), &bytes);
    if (result == ERROR_SUCCESS || result == ERROR_MORE_DATA) length = bytes;
    return result;
}

} // namespace qmv40
