#pragma once

#include "platform/Automation.h"

#include <memory>
#include <span>

namespace qmv40 {

/// One key of the machine-wide settings store, open for reading from construction to destruction.
/// On Windows: a key under HKEY_LOCAL_MACHINE. Elsewhere: a section of a text file in the registry export format,
/// /etc/qmv40/settings.reg or the file that the environment variable QMV40_SETTINGS names; it is read again each time a
/// key is opened. A key that is missing or cannot be read is not open.
class SettingsKey {
public:
    /// `path` below the machine-wide root, parts separated by backslashes; letter case does not matter.
    explicit SettingsKey(const char* path);
    SettingsKey(const SettingsKey&) = delete;
    SettingsKey& operator=(const SettingsKey&) = delete;
    ~SettingsKey();

    bool IsOpen() const noexcept;

    /// Copies the bytes stored under `name` (letter case does not matter) into `buffer`.
    /// ERROR_SUCCESS: `type` is the type of the value and `length` the number of bytes copied, including a text's
    /// terminator; a text that is stored without its terminator may be copied without one. ERROR_MORE_DATA: `buffer` is
    /// too small and unchanged, `length` is the size needed. ERROR_FILE_NOT_FOUND: there is no such value, or the key
    /// is not open; `type` is REG_NONE and `length` 0.
    LSTATUS Query(const char* name, std::span<char> buffer, DWORD& type, DWORD& length) const;

private:
    struct State;
    std::unique_ptr<State> state;
};

} // namespace qmv40
