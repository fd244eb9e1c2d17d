#include "settings/FixedHeadOffsets.h"

#include "platform/SettingsStore.h"

namespace qmv40 {

FixedOffset ReadFixedOffset(HeadOffset offset, int selector) {
    const SettingsKey key(settingsKeyPath);
    HeadSettingReader reader(QueryOf(key));
    double values[3] = {};
    double* next = values;
    for (const HeadSetting& setting : SettingsOf(offset)) {
        const double value = reader.Read(setting).value;
        *next++ = selector != 0 && setting.mirror != Mirror::Never ? -value : value;
    }
    return {values[0], values[1], values[2]};
}

double ReadFixedRotation(HeadOffset offset) { return ReadFixedOffset(offset).x; }

} // namespace qmv40
