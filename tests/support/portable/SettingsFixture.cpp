#include "tests/support/SettingsFixture.h"

#include "tests/support/TemporaryFolder.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <map>
#include <optional>
#include <stdexcept>
#include <string>

namespace {

constexpr const char* variable = "QMV40_SETTINGS";

std::optional<std::string> ChosenFile() {
    const char* const chosen = std::getenv(variable);
    return chosen == nullptr ? std::nullopt : std::optional<std::string>(chosen);
}

std::string Quoted(const std::string& text) {
    std::string quoted = "\"";
    for (const char c : text) {
        if (c == '"' || c == '\\') quoted += '\\';
        quoted += c;
    }
    return quoted + '"';
}

std::string Hex(unsigned long number) {
    char digits[20];
    std::snprintf(digits, sizeof digits, "%02lx", number);
    return digits;
}

} // namespace

/// The store is a file of this object. It has the older format, in which the bytes of a text are ASCII characters.
struct SettingsFixture::State {
    TemporaryFolder folder;
    std::optional<std::string> chosenBefore = ChosenFile();
    std::map<std::string, std::string> values; ///< name to what follows the equals sign

    std::filesystem::path File() const { return folder.Path("settings.reg"); }

    void Write() const {
        std::ofstream file(File(), std::ios::binary);
        file << "REGEDIT4\r\n\r\n[HKEY_LOCAL_MACHINE\\" << key << "]\r\n";
        for (const auto& [name, value] : values) file << Quoted(name) << '=' << value << "\r\n";
        if (!file.flush()) throw std::runtime_error("cannot write the test's settings");
    }
};

SettingsFixture::SettingsFixture() : state(std::make_unique<State>()) { ::setenv(variable, state->File().c_str(), 1); }

SettingsFixture::~SettingsFixture() {
    if (state->chosenBefore)
        ::setenv(variable, state->chosenBefore->c_str(), 1);
    else
        ::unsetenv(variable);
}

void SettingsFixture::SetText(const char* name, const char* text) {
    state->values[name] = Quoted(text);
    state->Write();
}

void SettingsFixture::SetRaw(const char* name, unsigned long type, std::vector<unsigned char> bytes) {
    std::string value = "hex(" + Hex(type) + "):";
    for (const unsigned char byte : bytes) value += Hex(byte) + ',';
    if (!bytes.empty()) value.pop_back();
    state->values[name] = value;
    state->Write();
}

void SettingsFixture::RemoveKey() {
    state->values.clear();
    std::filesystem::remove(state->File());
}

void SettingsFixture::CreateEmptyKey() {
    state->values.clear();
    state->Write();
}
