#pragma once

#include <memory>
#include <vector>

/// During the life of this object the component's key in the settings store holds only what the test puts there. At
/// first there is no key, and at the end the test's values are removed.
class SettingsFixture {
public:
    SettingsFixture();
    SettingsFixture(const SettingsFixture&) = delete;
    SettingsFixture& operator=(const SettingsFixture&) = delete;
    ~SettingsFixture();

    /// The key as the component opens it, below the machine-wide root.
    static constexpr const char* key = R"(Software\Hollbeck\VRX Software\QMV40Calculator)";

    /// Stores a terminated text. SetText and SetRaw create the key if there is none.
    void SetText(const char* name, const char* text);
    /// Stores `bytes` as they are under one of the store's types (1: text, 2: expandable text, 3: bytes, 4: number).
    /// The bytes of a text are ASCII characters. A terminator is stored only if it is among them.
    void SetRaw(const char* name, unsigned long type, std::vector<unsigned char> bytes);
    void RemoveKey();
    void CreateEmptyKey();

private:
    struct State;
    std::unique_ptr<State> state;
};
