#include "tools/settings/MachineSettings.h"

#include <vector>

namespace qmv40::settings {

namespace {

constexpr const char* narrowViewPath = R"(SOFTWARE\WOW6432Node\Hollbeck\VRX Software\QMV40Calculator)";

class Key {
public:
    explicit Key(const char* path) { result = RegOpenKeyExA(HKEY_LOCAL_MACHINE, path, 0, KEY_READ, &handle); }
    Key(const Key&) = delete;
    Key& operator=(const Key&) = delete;
    ~Key() {
        if (result == ERROR_SUCCESS) RegCloseKey(handle);
    }

    LSTATUS Result() const { return result; }

    /// Uses the narrow functions, as the component does, so that each text is as long here as the component sees it.
    std::vector<StoredValue> Values() const {
        DWORD longestName = 0;
        DWORD longestValue = 0;
        RegQueryInfoKeyA(handle, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, &longestName,
                         &longestValue, nullptr, nullptr);
        // A character may take several bytes of the code page.
        constexpr std::size_t bytesOfCharacter = 4;
        std::vector<char> name((longestName + 1) * bytesOfCharacter);
        std::vector<char> bytes((longestValue + 2) * bytesOfCharacter);
        std::vector<StoredValue> values;
        for (DWORD index = 0;; ++index) {
            auto nameLength = static_cast<DWORD>(name.size());
            auto length = static_cast<DWORD>(bytes.size());
            DWORD type = REG_NONE;
            if (RegEnumValueA(handle, index, name.data(), &nameLength, nullptr, &type,
                              reinterpret_cast<BYTE*>(bytes.data()), &length) != ERROR_SUCCESS) {
                return values;
            }
            values.push_back(
                {std::string(name.data(), nameLength), {RegistryType{type}, std::string(bytes.data(), length)}, {}});
        }
    }

private:
    HKEY handle = nullptr;
    LSTATUS result;
};

} // namespace

MachineSettings ReadMachineSettings() {
    MachineSettings settings{std::string(machineRoot) + std::string(keyPath), "missing", {}};
    const Key key(settingsKeyPath);
    if (key.Result() == ERROR_SUCCESS) {
        settings.state = "there";
        settings.stored.isKeyThere = true;
        settings.stored.values = key.Values();
    } else if (key.Result() != ERROR_FILE_NOT_FOUND) {
        settings.state = "unreadable";
        settings.stored.findings.push_back(FindingAbout(
            {}, "settings-unreadable", Severity::Fault, "The key " + settings.place + " cannot be opened for reading",
            "Give its readers the right to; until then the built-in values count."));
    }
    if (const Key narrow(narrowViewPath); narrow.Result() == ERROR_SUCCESS && !narrow.Values().empty()) {
        settings.stored.findings.push_back(FindingAbout({}, "settings-elsewhere", Severity::Warning,
                                                        std::string("[") + std::string(machineRoot) + narrowViewPath +
                                                            "] holds values, and the component does not look there",
                                                        "A 32-bit program wrote them. Store them from a 64-bit one."));
    }
    return settings;
}

std::string HowToPutInPlace(const std::string& fileName) {
    return "To put it in place, as administrator: reg import \"" + fileName + "\"";
}

} // namespace qmv40::settings
