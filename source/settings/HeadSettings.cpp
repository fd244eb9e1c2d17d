#include "settings/HeadSettings.h"

#include "formats/NumberText.h"
#include "platform/SettingsStore.h"

#include <algorithm>

namespace qmv40 {

namespace {

constexpr std::array<HeadSetting, headSettingCount> table{{
    {"Head Centre To Drive Cup X Offset", "drive-cup-x", -6.95, "mm", HeadOffset::HeadCentreToDriveCup},
    {"Head Centre To Drive Cup Y Offset", "drive-cup-y", 24.0, "mm", HeadOffset::HeadCentreToDriveCup},
    {"Head Centre To Drive Cup Z Offset", "drive-cup-z", -11.5, "mm", HeadOffset::HeadCentreToDriveCup},
    {"Head Centre To Lever Centre X Offset", "lever-centre-x", 30.3, "mm", HeadOffset::HeadCentreToLeverCentre,
     Mirror::ByLeverSide},
    {"Head Centre To Lever Centre Y Offset", "lever-centre-y", 0.0, "mm", HeadOffset::HeadCentreToLeverCentre},
    {"Head Centre To Lever Centre Z Offset", "lever-centre-z", -32.25, "mm", HeadOffset::HeadCentreToLeverCentre},
    {"Lever Centre To Ball Centre X Offset", "ball-centre-x", 0.0, "mm", HeadOffset::LeverCentreToBallCentre},
    {"Lever Centre To Ball Centre Y Offset", "ball-centre-y", -19.3, "mm", HeadOffset::LeverCentreToBallCentre,
     Mirror::ByLeverState},
    {"Lever Centre To Ball Centre Z Offset", "ball-centre-z", -4.3, "mm", HeadOffset::LeverCentreToBallCentre},
    {"Locked To Unlocked X Offset", "unlocked-x", 0.0, "mm", HeadOffset::LockedToUnlocked},
    {"Locked To Unlocked Y Offset", "unlocked-y", 0.0, "mm", HeadOffset::LockedToUnlocked},
    {"Locked To Unlocked Z Offset", "unlocked-z", -1.5, "mm", HeadOffset::LockedToUnlocked},
    {"Locked To Unlocked Lever Rotation", "unlocking-rotation", 135.0, "deg", HeadOffset::UnlockingRotation},
    // These capitals are required. They differ from those of the name above.
    {"UnLocked To locked Lever Rotation", "locking-rotation", 138.0, "deg", HeadOffset::LockingRotation},
}};

} // namespace

std::span<const HeadSetting, headSettingCount> HeadSettings() noexcept { return table; }

std::span<const HeadSetting> SettingsOf(HeadOffset offset) noexcept {
    const auto isOfOffset = [offset](const HeadSetting& setting) { return setting.offset == offset; };
    const auto* const first = std::find_if(table.begin(), table.end(), isOfOffset);
    const auto* const last = std::find_if_not(first, table.end(), isOfOffset);
    return {first, last};
}

SettingReading HeadSettingReader::Read(const HeadSetting& setting) {
    const SettingSource source = FetchText(setting.name);
    if (source == SettingSource::Stored) return {TextToDouble(text.data()), source};
    hasFailed = true;
    return {setting.builtIn, source};
}

/// Reads a text into `text`, with its terminator. The capacity becomes the length of this text and is not reset between
/// the settings of one offset: this is required. HeadSettings.h names the consequences.
SettingSource HeadSettingReader::FetchText(const char* name) {
    if (!query) return SettingSource::NoKey;
    if (hasFailed) return SettingSource::EarlierUnreadable;
    DWORD type = REG_NONE;
    DWORD length = 0;
    const LSTATUS result = query(name, std::span(text.data(), capacity), type, length);
    if (result == ERROR_MORE_DATA) return SettingSource::TooLong;
    if (result != ERROR_SUCCESS) return SettingSource::Missing;
    if (type != REG_SZ && type != REG_EXPAND_SZ) return SettingSource::WrongType;
    const auto stored = std::span(text).first(length);
    if (length == 0) {
        text[0] = '\0'; // a value of no bytes is an empty text
    } else if (std::ranges::find(stored, '\0') == stored.end()) {
        return SettingSource::NotTerminated;
    }
    capacity = length;
    return SettingSource::Stored;
}

SettingQuery QueryOf(const SettingsKey& key) {
    if (!key.IsOpen()) return {};
    return [&key](const char* name, std::span<char> buffer, DWORD& type, DWORD& length) {
        return key.Query(name, buffer, type, length);
    };
}

std::array<SettingReading, headSettingCount> ReadHeadSettings(const SettingQuery& query) {
    std::array<SettingReading, headSettingCount> readings{};
    HeadSettingReader reader(query);
    for (std::size_t i = 0; i < table.size(); ++i) {
        const bool beginsOffset = i > 0 && table[i].offset != table[i - 1].offset;
        if (beginsOffset) reader = HeadSettingReader(query);
        readings[i] = reader.Read(table[i]);
    }
    return readings;
}

std::array<SettingReading, headSettingCount> ReadHeadSettings() {
    const SettingsKey key(settingsKeyPath);
    return ReadHeadSettings(QueryOf(key));
}

} // namespace qmv40
