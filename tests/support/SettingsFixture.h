#pragma once

#include <memory>
#include <vector>

/// While one lives, the settings store holds under the component's key exactly what the test puts there; at first there
/// is no key. Nothing of it is left at the end.
class SettingsFixture {
public:
    SettingsFixture();
    SettingsFixture(const SettingsFixture&) = delete;
    SettingsFixture& operator=(const SettingsFixture&) = delete;
    ~SettingsFixture();

    /// The key as the component opens it, below the machine-wide root.
    static constexpr const char* key = R"(Software\Hollbeck\VRX Software\QMV40Calculator)";

    /// Stores a terminated text. Creates the key when there is none, as does SetRaw.
    void SetText(const char* name, const char* text);
    /// Stores `bytes` as they are under one of the store's types (1: text, 2: expandable text, 3: bytes, 4: number).
    /// A text's bytes are narrow characters of the ASCII range, with the terminator only if they bring it.
    void SetRaw(const char* name, unsigned long type, std::vector<unsigned char> bytes);
    void RemoveKey();
    void CreateEmptyKey();

private:
    struct State;
    std::unique_ptr<State> state;
};
