#include "platform/SettingsStore.h"

#include "formats/RegistryText.h"
#include "platform/portable/FileReading.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <fcntl.h>
#include <thread>
#include <utility>

namespace {

const char* StoreFile() {
    const char* const chosen = std::getenv("QMV40_SETTINGS");
    return chosen != nullptr && *chosen != '\0' ? chosen : "/etc/qmv40/settings.reg";
}

/// The store's content; nothing when it cannot be read. An empty file is one that somebody is just writing anew: what
/// comes is waited for, a little.
std::optional<std::string> StoreContent() {
    constexpr int mostAttempts = 20;
    for (int attempt = 0;; ++attempt) {
        std::optional<std::string> content = ReadWhole(OpenFile(StoreFile(), O_RDONLY));
        if (!content || !content->empty() || attempt == mostAttempts) return content;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
}

} // namespace

struct SettingsKey::State {
    RegistryKeyText key;
};

SettingsKey::SettingsKey(const char* path) {
    std::optional<std::string> content = StoreContent();
    if (!content) return;
    RegistryKeyText key(std::move(*content), path);
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
