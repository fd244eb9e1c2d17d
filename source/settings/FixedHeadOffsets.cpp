#include "settings/FixedHeadOffsets.h"

#include "formats/NumberText.h"
#include "platform/SettingsStore.h"

#include <algorithm>
#include <array>

namespace {

constexpr const char* settingsKeyPath = R"(Software\Hollbeck\VRX Software\QMV40Calculator)";

/// Reads the values of one offset, one after the other, from a key that is open for that long.
class OffsetReader {
public:
    /// The number stored under `name`, or `defaultValue` where there is none that can be read.
    double Read(const char* name, double defaultValue) {
        if (!key.IsOpen() || !QueryText(name)) return defaultValue;
        return TextToDouble(text.data());
    }

private:
    /// Fetches a text, terminated, into `text`.
    /// The capacity is meant not to be reset between the values of one offset: a text may be no longer than the one
    /// read before it, and after a failure nothing more is read. Sites that override only Y or Z, or that write a
    /// longer text for Y than for X, get defaults, and existing machines are set up for that.
    bool QueryText(const char* name) {
        const std::span<char> buffer(text.data(), capacity);
        capacity = 0;
        DWORD type = REG_NONE;
        DWORD length = 0;
        if (key.Query(name, buffer, type, length) != ERROR_SUCCESS) return false;
        if (type != REG_SZ && type != REG_EXPAND_SZ) return false;
        if (length == 0) {
            text[0] = '\0';
            return true;
        }
        const auto stored = buffer.first(length);
        if (std::find(stored.begin(), stored.end(), '\0') == stored.end()) return false;
        capacity = length;
        return true;
    }

    SettingsKey key{settingsKeyPath};
    std::array<char, 255> text{};
    DWORD capacity = static_cast<DWORD>(text.size());
};

} // namespace

FixedOffset ReadHeadCentreToDriveCupOffset() {
    OffsetReader reader;
    const double x = reader.Read("Head Centre To Drive Cup X Offset", -6.95);
    const double y = reader.Read("Head Centre To Drive Cup Y Offset", 24.0);
    const double z = reader.Read("Head Centre To Drive Cup Z Offset", -11.5);
    return {x, y, z};
}

FixedOffset ReadHeadCentreToLeverCentreOffset(int leverSide) {
    const double mirror = leverSide == 0 ? 1.0 : -1.0;
    OffsetReader reader;
    const double x = mirror * reader.Read("Head Centre To Lever Centre X Offset", 30.3);
    const double y = reader.Read("Head Centre To Lever Centre Y Offset", 0.0);
    const double z = reader.Read("Head Centre To Lever Centre Z Offset", -32.25);
    return {x, y, z};
}

FixedOffset ReadLeverCentreToBallCentreOffset(int leverState) {
    const double mirror = leverState == 0 ? 1.0 : -1.0;
    OffsetReader reader;
    const double x = reader.Read("Lever Centre To Ball Centre X Offset", 0.0);
    const double y = mirror * reader.Read("Lever Centre To Ball Centre Y Offset", -19.3);
    const double z = reader.Read("Lever Centre To Ball Centre Z Offset", -4.3);
    return {x, y, z};
}

FixedOffset ReadLockedToUnlockedOffset() {
    OffsetReader reader;
    const double x = reader.Read("Locked To Unlocked X Offset", 0.0);
    const double y = reader.Read("Locked To Unlocked Y Offset", 0.0);
    const double z = reader.Read("Locked To Unlocked Z Offset", -1.5);
    return {x, y, z};
}

double ReadLockedToUnlockedLeverRotation() {
    OffsetReader reader;
    return reader.Read("Locked To Unlocked Lever Rotation", 135.0);
}

double ReadUnlockedToLockedLeverRotation() {
    OffsetReader reader;
    // The capitals of the name are meant: machines have the value stored under it.
    return reader.Read("UnLocked To locked Lever Rotation", 138.0);
}
