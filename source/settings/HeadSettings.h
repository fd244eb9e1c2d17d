#pragma once

#include "platform/Automation.h"

#include <array>
#include <cstddef>
#include <functional>
#include <span>
#include <utility>

/// The fourteen fixed dimensions of the head's mechanics: the table of them, and the one reader of them.
///
/// Each dimension has a built-in value, which a text value in the settings store may override on one machine. The
/// settings of one offset are read together, in the order of the table. For the first one the buffer has 255 bytes; for
/// each other one it is as long as the stored text before it (terminators included). After a setting that cannot be
/// read, all later settings of the same offset have their built-in values. This is required. So a text that is stored
/// for Y or Z alone, or that is longer than the one before it, has no effect.
///
/// A text that does not begin with a number is read as 0.0, not as the built-in value: this is required too. Numbers
/// are in the C locale.
namespace qmv40 {

class SettingsKey;

/// The one key that is read, below HKEY_LOCAL_MACHINE.
inline constexpr const char* settingsKeyPath = R"(Software\Hollbeck\VRX Software\QMV40Calculator)";

/// The offset that a setting belongs to. The settings of one offset are read together.
enum class HeadOffset {
    HeadCentreToDriveCup,
    HeadCentreToLeverCentre,
    LeverCentreToBallCentre,
    LockedToUnlocked,
    UnlockingRotation,
    LockingRotation
};

/// The selector that negates a setting (stored or built in) when it is not 0. The table has the values for selector 0.
enum class Mirror {
    Never,
    ByLeverSide, ///< 0: the positive lever, any other value: the negative lever
    ByLeverState ///< 0: locked, any other value: unlocked
};

struct HeadSetting {
    const char* name;      ///< as it is stored; letter case makes no difference
    const char* shortName; ///< on the command line of the tool
    double builtIn;
    const char* unit; ///< "mm" (the unit of the captured points) or "deg"
    HeadOffset offset;
    Mirror mirror = Mirror::Never;
};

inline constexpr std::size_t headSettingCount = 14;

/// In the order of reading. The settings of one offset follow each other: X, Y, Z, or a single rotation.
std::span<const HeadSetting, headSettingCount> HeadSettings() noexcept;
std::span<const HeadSetting> SettingsOf(HeadOffset offset) noexcept;

/// Where a value comes from: the store, or the table and the reason why.
enum class SettingSource {
    Stored,
    NoKey,            ///< the key does not exist or cannot be opened
    Missing,          ///< the value does not exist or cannot be read
    TooLong,          ///< longer than the text before it in the same offset, or than 255 bytes
    WrongType,        ///< neither REG_SZ nor REG_EXPAND_SZ
    NotTerminated,    ///< a text without its terminating zero byte
    EarlierUnreadable ///< an earlier setting of the same offset could not be read, so this one was not tried
};

struct SettingReading {
    double value; ///< not mirrored
    SettingSource source;
};

/// Returns the bytes stored under a name, as SettingsKey::Query does. An empty function means that there is no key.
using SettingQuery = std::function<LSTATUS(const char* name, std::span<char> buffer, DWORD& type, DWORD& length)>;

/// The query of the platform's store. The key must outlive it.
SettingQuery QueryOf(const SettingsKey& key);

/// Reads the settings of one offset, one call of Read for each, in the order of the table.
class HeadSettingReader {
public:
    explicit HeadSettingReader(SettingQuery theQuery) : query(std::move(theQuery)) {}

    SettingReading Read(const HeadSetting& setting);

private:
    SettingSource FetchText(const char* name);

    static constexpr DWORD bufferSize = 255;

    SettingQuery query;
    std::array<char, bufferSize> text{};
    DWORD capacity = bufferSize; ///< for the next text: the length of the one before it
    bool hasFailed = false;
};

/// All settings, in the order of the table, as the component takes them from `query`.
std::array<SettingReading, headSettingCount> ReadHeadSettings(const SettingQuery& query);

/// All settings as the component takes them on this machine at this moment.
std::array<SettingReading, headSettingCount> ReadHeadSettings();

} // namespace qmv40
