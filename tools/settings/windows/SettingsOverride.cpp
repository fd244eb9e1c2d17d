#include "tools/settings/SettingsOverride.h"

#include "interface/Identifiers.h"
#include "settings/HeadSettings.h"
#include "tools/component/ComponentError.h"
#include "tools/settings/SettingsReading.h"
#include "tools/text/Failures.h"
#include "tools/text/Files.h"
#include "tools/text/Text.h"

#include <filesystem>

namespace qmv40::settings {

namespace {

/// During an override the component's key is looked for below this one. The process number makes it unique, and the key
/// is volatile: it does not survive a restart.
std::string PrivateRoot() { return "Software\\qmv40-settings-" + std::to_string(GetCurrentProcessId()); }

void RequireSuccess(LSTATUS result, const char* operation) {
    if (result == ERROR_SUCCESS) return;
    throw component::TakeComponentError(HRESULT_FROM_WIN32(static_cast<unsigned long>(result)), operation);
}

HKEY MakeVolatileKey(const std::string& path) {
    HKEY key = nullptr;
    RequireSuccess(RegCreateKeyExA(HKEY_CURRENT_USER, path.c_str(), 0, nullptr, REG_OPTION_VOLATILE, KEY_ALL_ACCESS,
                                   nullptr, &key, nullptr),
                   "RegCreateKeyEx");
    return key;
}

LSTATUS StoreBelow(HKEY key, const StoredValue& stored) {
    const std::string& bytes = stored.value.bytes;
    return RegSetValueExA(key, stored.name.c_str(), 0, static_cast<DWORD>(stored.value.type),
                          reinterpret_cast<const BYTE*>(bytes.data()), static_cast<DWORD>(bytes.size()));
}

void StoreAll(const StoredSettings& settings) {
    if (!settings.isKeyThere) return;
    const HKEY key = MakeVolatileKey(PrivateRoot() + "\\" + settingsKeyPath);
    LSTATUS result = ERROR_SUCCESS;
    for (const StoredValue& value : settings.values)
        if (result == ERROR_SUCCESS) result = StoreBelow(key, value);
    RegCloseKey(key);
    RequireSuccess(result, "RegSetValueEx");
}

/// Keeps the component's class object creatable after HKEY_LOCAL_MACHINE is overridden, because no class is registered
/// below the replacement. 0 when there is no class object: creating a calculator then fails with the reason.
DWORD KeepClassObject() {
    void* found = nullptr;
    if (FAILED(CoGetClassObject(CLSID_QMVCalculator, CLSCTX_INPROC_SERVER, nullptr, IID_IClassFactory, &found)))
        return 0;
    auto* const factory = static_cast<IClassFactory*>(found);
    DWORD registration = 0;
    CoRegisterClassObject(CLSID_QMVCalculator, factory, CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &registration);
    factory->Release();
    return registration;
}

} // namespace

struct SettingsOverride::State {
    explicit State(const StoredSettings& settings) {
        StoreAll(settings);
        // For this process, HKEY_LOCAL_MACHINE becomes the key that holds the values of the file.
        RequireSuccess(RegOverridePredefKey(HKEY_LOCAL_MACHINE, root), "RegOverridePredefKey");
    }
    State(const State&) = delete;
    State& operator=(const State&) = delete;
    ~State() {
        RegOverridePredefKey(HKEY_LOCAL_MACHINE, nullptr);
        RegCloseKey(root);
        RegDeleteTreeA(HKEY_CURRENT_USER, PrivateRoot().c_str());
        if (classObject != 0) CoRevokeClassObject(classObject);
    }

    DWORD classObject = KeepClassObject();
    HKEY root = MakeVolatileKey(PrivateRoot());
};

SettingsOverride::SettingsOverride(const std::string& fileName) {
    if (fileName.empty()) return;
    std::error_code ignored;
    if (!std::filesystem::is_regular_file(text::PathOf(fileName), ignored))
        throw text::InputError{fileName, {}, "no such settings file"};
    state = std::make_unique<State>(SettingsInFile(text::ReadWholeFile(fileName)));
}

SettingsOverride::SettingsOverride() : state(std::make_unique<State>(StoredSettings{})) {}

SettingsOverride SettingsOverride::BuiltIn() { return {}; }

SettingsOverride::~SettingsOverride() = default;

} // namespace qmv40::settings
