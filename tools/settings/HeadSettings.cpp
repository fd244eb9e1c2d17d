#include "tools/settings/HeadSettings.h"

#include "tools/text/Text.h"
#include "head/RoundThePole.h"

#include <algorithm>
#include <numeric>
#include <vector>

namespace qmv40::settings {

namespace {

constexpr std::array<HeadSetting, settingCount> table{{
    {"Head Centre To Drive Cup X Offset", "drive-cup-x", -6.95, "mm", 0},
    {"Head Centre To Drive Cup Y Offset", "drive-cup-y", 24.0, "mm", 0},
    {"Head Centre To Drive Cup Z Offset", "drive-cup-z", -11.5, "mm", 0},
    {"Head Centre To Lever Centre X Offset", "lever-centre-x", 30.3, "mm", 1},
    {"Head Centre To Lever Centre Y Offset", "lever-centre-y", 0.0, "mm", 1},
    {"Head Centre To Lever Centre Z Offset", "lever-centre-z", -32.25, "mm", 1},
    {"Lever Centre To Ball Centre X Offset", "ball-centre-x", 0.0, "mm", 2},
    {"Lever Centre To Ball Centre Y Offset", "ball-centre-y", -19.3, "mm", 2},
    {"Lever Centre To Ball Centre Z Offset", "ball-centre-z", -4.3, "mm", 2},
    {"Locked To Unlocked X Offset", "unlocked-x", 0.0, "mm", 3},
    {"Locked To Unlocked Y Offset", "unlocked-y", 0.0, "mm", 3},
    {"Locked To Unlocked Z Offset", "unlocked-z", -1.5, "mm", 3},
    {"Locked To Unlocked Lever Rotation", "unlocking-rotation", 135.0, "deg", 4},
    // The capitals are the stored name's own.
    {"UnLocked To locked Lever Rotation", "locking-rotation", 138.0, "deg", 5},
}};

std::string LowerCase(std::string_view text) {
    std::string lower(text);
    for (char& c : lower) c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    return lower;
}

/// How many letters must be added, dropped or exchanged to make one text of the other.
std::size_t EditDistance(std::string_view from, std::string_view to) {
    std::vector<std::size_t> row(to.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 0; i < from.size(); ++i) {
        std::size_t diagonal = row[0];
        row[0] = i + 1;
        for (std::size_t j = 0; j < to.size(); ++j) {
            const std::size_t exchanged = diagonal + (from[i] == to[j] ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({exchanged, diagonal + 1, row[j] + 1});
        }
    }
    return row.back();
}

} // namespace

std::span<const HeadSetting, settingCount> AllHeadSettings() { return table; }

std::optional<std::size_t> FindHeadSetting(std::string_view name) {
    for (std::size_t i = 0; i < settingCount; ++i) {
        if (text::SameName(name, table[i].name) || text::SameName(name, table[i].shortName)) return i;
    }
    return std::nullopt;
}

std::string NearestSettingName(std::string_view text) {
    const std::string typed = LowerCase(text::Trimmed(text));
    std::string nearest;
    // Beyond a third of its letters a name is another one.
    std::size_t bestDistance = typed.size() / 3 + 1;
    for (const HeadSetting& setting : table) {
        for (const char* const name : {setting.name, setting.shortName}) {
            const std::size_t distance = EditDistance(typed, LowerCase(name));
            if (distance >= bestDistance) continue;
            bestDistance = distance;
            nearest = name;
        }
    }
    return nearest;
}

std::array<double, settingCount> SettingsInForce() {
    const RoundThePole head;
    const qmv40::FixedOffset driveCup = head.GetHeadCentreToDriveCupOffset();
    CMaVector leverCentre(0.0, 0.0, 0.0);
    head.GetHeadCentreToLeverCentreOffset(0, leverCentre);
    CMaVector ballCentre(0.0, 0.0, 0.0);
    head.GetLeverCentreToBallCentreOffset(0, ballCentre);
    const qmv40::FixedOffset unlocked = head.GetLockedToUnlockedOffset();
    return {driveCup.x,
            driveCup.y,
            driveCup.z,
            leverCentre[0],
            leverCentre[1],
            leverCentre[2],
            ballCentre[0],
            ballCentre[1],
            ballCentre[2],
            unlocked.x,
            unlocked.y,
            unlocked.z,
            head.GetLockedToUnlockedLeverRotation(),
            head.GetUnlockedToLockedLeverRotation()};
}

} // namespace qmv40::settings
