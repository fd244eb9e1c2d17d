#include "settings/FixedHeadOffsets.h"

#include "platform/SettingsStore.h"
#include "settings/HeadSettings.h"

namespace qmv40 {

namespace {

/// The settings of `offset`, up to three. The key is opened for them alone. Any selector except 0 negates the settings
/// that the table marks as mirrored.
std::array<double, 3> Read(HeadOffset offset, int selector = 0) {
    const SettingsKey key(settingsKeyPath);
    HeadSettingReader reader(QueryOf(key));
    std::array<double, 3> values{};
    std::size_t next = 0;
    for (const HeadSetting& setting : SettingsOf(offset)) {
        const double value = reader.Read(setting).value;
        values[next++] = selector != 0 && setting.mirror != Mirror::Never ? -value : value;
    }
    return values;
}

FixedOffset ReadVector(HeadOffset offset, int selector = 0) {
    const auto [x, y, z] = Read(offset, selector);
    return {x, y, z};
}

} // namespace

FixedOffset ReadHeadCentreToDriveCupOffset() { return ReadVector(HeadOffset::HeadCentreToDriveCup); }

FixedOffset ReadHeadCentreToLeverCentreOffset(int leverSide) {
    return ReadVector(HeadOffset::HeadCentreToLeverCentre, leverSide);
}

FixedOffset ReadLeverCentreToBallCentreOffset(int leverState) {
    return ReadVector(HeadOffset::LeverCentreToBallCentre, leverState);
}

FixedOffset ReadLockedToUnlockedOffset() { return ReadVector(HeadOffset::LockedToUnlocked); }

double ReadLockedToUnlockedLeverRotation() { return Read(HeadOffset::UnlockingRotation)[0]; }

double ReadUnlockedToLockedLeverRotation() { return Read(HeadOffset::LockingRotation)[0]; }

} // namespace qmv40
