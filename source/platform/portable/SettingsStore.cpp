#include "platform/SettingsStore.h"

#include "formats/RegistryText.h"
#include "platform/portable/FileReading.h"

#include <algorithm>
#include <cstdlib>
#include <fcntl.h>
#include <utility>

namespace qmv40 {

namespace {

const char* StoreFile() {
    const char* const chosen = std::getenv("QMV40_SETTINGS");
    return chosen != nullptr && *chosen != '\0' ? chosen : "/etc/qmv40/settings.reg";
}

} // namespace

struct SettingsKey::State {
    RegistryKeyText key;
};

SettingsKey::SettingsKey(const char* path) {
    // An empty file holds no key. It is not read again, although a program may be just writing it: a program that
    // replaces the file in one step avoids that.
    std::optional<std::string> content = ReadWhole(OpenFile(StoreFile(), O_RDONLY));
    if (!content) return;
    RegistryKeyText key(*content, path);
    if (key.IsPresent()) state = std::make_unique<State>(State{std::move(key)});
}

SettingsKey::~SettingsKey() = default;

bool SettingsKey::IsOpen() const noexcept { return state != nullptr; }

LSTATUS SettingsKey::Query(const char* name, std::span<char> buffer, DWORD& type, DWORD& length) const {
    const std::optional<RegistryValue> value = state ? state->key.Find(name) : std::nullopt;
    type = value ? static_cast<DWORD>(value->type) : REG_NONE;
    length = value ? static_cast<DWORD>(value->bytes.size()) : 0;
    if (!value) return ERROR_FILE_NOT_FOUND;
    if (value->bytes.size() > buffer.size()) return ERROR_MORE_DATA;
    std::ranges::copy(value->bytes, buffer.begin());
    return ERROR_SUCCESS;
}

} // namespace qmv40
