#include "tests/server/Registry.h"

#include "server/windows/IRegistrar.h"
#include "tests/server/Client.h"
#include "tests/support/TemporaryFolder.h"

#include <optional>
#include <thread>

using namespace qmv40;

/// The keys that a registration writes, those that an unregistration removes, and those that neither changes.

namespace {

constexpr const wchar_t* clsidText = L"{5B2E9C41-7A3D-4F6E-9B12-3C8D4E7F1A26}";
constexpr const wchar_t* libraryText = L"{8E4F2A17-3B6C-4D59-A2E8-71F0C3B9D645}";
constexpr const wchar_t* description = L"QMVCalculator Class";
/// The type library's keys of this program's architecture.
constexpr const wchar_t* libraryOfLocale = sizeof(void*) == 8 ? LR"(1.0\409\win64)" : LR"(1.0\409\win32)";
constexpr const wchar_t* libraryOfNoLocale = sizeof(void*) == 8 ? LR"(1.0\0\win64)" : LR"(1.0\0\win32)";

std::wstring Below(const wchar_t* key, const wchar_t* subkey) { return std::wstring(key) + L'\\' + subkey; }

/// All texts that the registration script writes for the module at `path`.
RegistryTexts ScriptTexts(const std::wstring& path) {
    return {{programKey, {{L"", description}}},
            {Below(programKey, L"CLSID"), {{L"", clsidText}}},
            {versionIndependentProgramKey, {{L"", description}}},
            {Below(versionIndependentProgramKey, L"CLSID"), {{L"", clsidText}}},
            {Below(versionIndependentProgramKey, L"CurVer"), {{L"", L"QMV.QMVCalculator.1"}}},
            {classKey, {{L"", description}}},
            {Below(classKey, L"ProgID"), {{L"", L"QMV.QMVCalculator.1"}}},
            {Below(classKey, L"VersionIndependentProgID"), {{L"", L"QMV.QMVCalculator"}}},
            {Below(classKey, L"Programmable"), {}},
            {Below(classKey, L"InprocServer32"), {{L"", path}, {L"ThreadingModel", L"Apartment"}}},
            {Below(classKey, L"TypeLib"), {{L"", libraryText}}}};
}

RegistryTexts ScriptTextsFound() {
    RegistryTexts texts = TextsBelow(programKey);
    texts.merge(TextsBelow(versionIndependentProgramKey));
    texts.merge(TextsBelow(classKey));
    return texts;
}

std::optional<std::wstring> Text(const RegistryTexts& texts, const std::wstring& key, const std::wstring& name = L"") {
    const auto values = texts.find(key);
    if (values == texts.end()) return std::nullopt;
    const auto text = values->second.find(name);
    return text == values->second.end() ? std::nullopt : std::optional(text->second);
}

class Registration : public Client {
protected:
    ~Registration() override {
        RemoveKey(strangerClass);
        RemoveKey(strangerProgram);
    }

    static constexpr const wchar_t* strangerClass = LR"(CLSID\{9C0A7C1D-5B1E-4E7B-8F0D-2A613394E570})";
    static constexpr const wchar_t* strangerProgram = L"QMV.SomethingElse";
};

TEST_F(Registration, WritesTheClassUnderItsIdentifierAndBothItsNames) {
    ASSERT_EQ(RegisteredTexts(), RegistryTexts{});
    ASSERT_EQ(server.Register(), S_OK);
    EXPECT_EQ(ScriptTextsFound(), ScriptTexts(ServerPath()));
}

TEST_F(Registration, WritesTheTypeLibraryForTwoLocales) {
    ASSERT_EQ(server.Register(), S_OK);
    const auto texts = TextsBelow(typeLibraryKey);
    EXPECT_EQ(Text(texts, Below(typeLibraryKey, L"1.0")), L"CoQMV40Calculator 1.0 Type Library");
    EXPECT_EQ(Text(texts, Below(typeLibraryKey, libraryOfLocale)), ServerPath().wstring());
    EXPECT_EQ(Text(texts, Below(typeLibraryKey, libraryOfNoLocale)), ServerPath().wstring())
        << "marshalling uses the neutral locale";
}

TEST_F(Registration, WritesBothInterfacesForMarshalling) {
    ASSERT_EQ(server.Register(), S_OK);
    const struct {
        const wchar_t* key;
        const wchar_t* name;
    } cases[] = {{firstInterfaceKey, L"IQMVCalculator"}, {secondInterfaceKey, L"IQMVCalculator2"}};
    for (const auto& [key, name] : cases) {
        const auto texts = TextsBelow(key);
        EXPECT_EQ(Text(texts, key), name);
        EXPECT_EQ(Text(texts, Below(key, L"ProxyStubClsid32")), L"{00020424-0000-0000-C000-000000000046}") << name;
        EXPECT_EQ(Text(texts, Below(key, L"TypeLib")), libraryText) << name;
        EXPECT_EQ(Text(texts, Below(key, L"TypeLib"), L"Version"), L"1.0") << name;
    }
}

TEST_F(Registration, DoneTwiceIsTheSameAsDoneOnce) {
    ASSERT_EQ(server.Register(), S_OK);
    const auto once = RegisteredTexts();
    ASSERT_EQ(server.Register(), S_OK);
    EXPECT_EQ(RegisteredTexts(), once);
}

TEST_F(Registration, IsRemovedCompletely) {
    ASSERT_EQ(server.Register(), S_OK);
    ASSERT_EQ(server.Register(), S_OK);
    EXPECT_EQ(server.Unregister(), S_OK);
    EXPECT_EQ(RegisteredTexts(), RegistryTexts{});
    EXPECT_TRUE(KeyExists(L"CLSID"));
    EXPECT_TRUE(KeyExists(L"TypeLib"));
    EXPECT_TRUE(KeyExists(L"Interface"));
}

TEST_F(Registration, CanBeRemovedTwiceOrWhenMissing) {
    EXPECT_EQ(server.Unregister(), S_OK);
    ASSERT_EQ(server.Register(), S_OK);
    EXPECT_EQ(server.Unregister(), S_OK);
    EXPECT_EQ(server.Unregister(), S_OK);
    EXPECT_EQ(RegisteredTexts(), RegistryTexts{});
}

TEST_F(Registration, CanBeRepeatedAfterItsRemoval) {
    ASSERT_EQ(server.Register(), S_OK);
    ASSERT_EQ(server.Unregister(), S_OK);
    ASSERT_EQ(server.Register(), S_OK);
    EXPECT_EQ(ScriptTextsFound(), ScriptTexts(ServerPath()));
}

TEST_F(Registration, DoesNotChangeOtherClassesAndPrograms) {
    SetText(strangerClass, L"", L"of another program");
    SetText(strangerProgram, L"", L"of another program");
    const auto classBefore = TextsBelow(strangerClass);
    ASSERT_EQ(classBefore.size(), 1U);
    ASSERT_EQ(server.Register(), S_OK);
    EXPECT_EQ(TextsBelow(strangerClass), classBefore);
    ASSERT_EQ(server.Unregister(), S_OK);
    EXPECT_EQ(TextsBelow(strangerClass), classBefore);
    EXPECT_EQ(Text(TextsBelow(strangerProgram), strangerProgram), L"of another program");
}

TEST_F(Registration, KeepsKeysOfOtherProgramsUnderTheProgramNames) {
    const std::wstring foreign = Below(programKey, L"OtherProgram");
    SetText(foreign, L"name", L"of another program");
    ASSERT_EQ(server.Register(), S_OK);
    EXPECT_EQ(Text(TextsBelow(programKey), foreign, L"name"), L"of another program");
    ASSERT_EQ(server.Register(), S_OK);
    ASSERT_EQ(server.Unregister(), S_OK);
    EXPECT_EQ(Text(TextsBelow(programKey), foreign, L"name"), L"of another program");
    EXPECT_FALSE(KeyExists(Below(programKey, L"CLSID")));
}

TEST_F(Registration, RemovesOldKeysOfTheClassFirst) {
    SetText(Below(classKey, L"LocalServer32"), L"", L"left by an older version");
    SetText(Below(classKey, L"Programmable"), L"old", L"left by an older version");
    ASSERT_EQ(server.Register(), S_OK);
    EXPECT_EQ(ScriptTextsFound(), ScriptTexts(ServerPath()));
}

TEST_F(Registration, IsRemovedAlsoBesideOtherKeysOfTheClass) {
    ASSERT_EQ(server.Register(), S_OK);
    SetText(Below(classKey, L"OtherProgram"), L"", L"of another program");
    ASSERT_EQ(server.Unregister(), S_OK);
    for (const auto& [key, values] : ScriptTexts(ServerPath())) {
        // Some registrars remove the class key although another program's key is in it; others do not.
        if (key == classKey) continue;
        EXPECT_FALSE(KeyExists(key)) << std::filesystem::path(key);
    }
}

/// During its life no registrar can be created in this process: the creation fails with `code`.
class NoRegistrar final : public IClassFactory {
public:
    explicit NoRegistrar(HRESULT theCode) : code(theCode) {
        EXPECT_EQ(CoRegisterClassObject(CLSID_Registrar, this, CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &cookie),
                  S_OK);
    }
    NoRegistrar(const NoRegistrar&) = delete;
    NoRegistrar& operator=(const NoRegistrar&) = delete;
    ~NoRegistrar() { CoRevokeClassObject(cookie); }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        const bool own = IsEqualIID(iid, IID_IUnknown) || IsEqualIID(iid, IID_IClassFactory);
        *object = own ? this : nullptr;
        return own ? S_OK : E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return 1; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }
    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown*, REFIID, void** object) override {
        *object = nullptr;
        ++asked;
        return code;
    }
    HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }

    int asked = 0;

private:
    HRESULT code;
    DWORD cookie = 0;
};

/// During its life the class is registered as by a component of the other architecture.
class OtherArchitecture {
public:
    OtherArchitecture() {
        HKEY key = nullptr;
        EXPECT_EQ(RegCreateKeyExW(HKEY_CLASSES_ROOT, classKey, 0, nullptr, 0, KEY_WRITE | view, nullptr, &key, nullptr),
                  ERROR_SUCCESS);
        RegCloseKey(key);
    }
    OtherArchitecture(const OtherArchitecture&) = delete;
    OtherArchitecture& operator=(const OtherArchitecture&) = delete;
    ~OtherArchitecture() { RegDeleteKeyExW(HKEY_CLASSES_ROOT, classKey, view, 0); }

    static bool IsThere() {
        HKEY key = nullptr;
        const bool isThere = RegOpenKeyExW(HKEY_CLASSES_ROOT, classKey, 0, KEY_READ | view, &key) == ERROR_SUCCESS;
        if (isThere) RegCloseKey(key);
        return isThere;
    }

private:
    static constexpr REGSAM view = sizeof(void*) == 8 ? KEY_WOW64_32KEY : KEY_WOW64_64KEY;
};

TEST_F(Registration, KeepsTheNamesForTheOtherArchitecture) {
    ASSERT_EQ(server.Register(), S_OK);
    const auto names = TextsBelow(programKey);
    {
        const OtherArchitecture other;
        EXPECT_EQ(server.Unregister(), S_OK);
        EXPECT_EQ(TextsBelow(programKey), names);
        EXPECT_TRUE(KeyExists(Below(versionIndependentProgramKey, L"CurVer")));
        EXPECT_FALSE(KeyExists(classKey));
        EXPECT_FALSE(KeyExists(typeLibraryKey));
        EXPECT_TRUE(OtherArchitecture::IsThere());
        const NoRegistrar none(REGDB_E_CLASSNOTREG);
        ASSERT_EQ(server.Register(), S_OK);
        EXPECT_EQ(server.Unregister(), S_OK);
        EXPECT_EQ(TextsBelow(programKey), names) << "without the platform's registrar";
    }
    EXPECT_EQ(server.Unregister(), S_OK);
    EXPECT_EQ(RegisteredTexts(), RegistryTexts{});
}

TEST_F(Registration, AcceptsAPathWithBlanksApostropheAndForeignLetters) {
    const TemporaryFolder folder;
    const auto place = folder.Path() / L"M\u00FCller's  probe head \u03A9 'A'";
    ASSERT_TRUE(std::filesystem::create_directory(place));
    const auto path = place / L"CoQMV40Calculator.dll";
    std::filesystem::copy_file(ServerPath(), path);
    {
        const LoadedServer copy(path);
        ASSERT_EQ(copy.Register(), S_OK);
        EXPECT_EQ(ScriptTextsFound(), ScriptTexts(path));
        EXPECT_EQ(Text(TextsBelow(typeLibraryKey), Below(typeLibraryKey, libraryOfNoLocale)), path.wstring());
        {
            CLSID clsid{};
            ASSERT_EQ(CLSIDFromProgID(L"QMV.QMVCalculator.1", &clsid), S_OK);
            ComPointer<IQMVCalculator> calculator;
            ASSERT_EQ(CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IQMVCalculator, calculator.Receive()),
                      S_OK);
            EXPECT_EQ(copy.CanUnloadNow(), S_FALSE) << "the object must come from the copy";
            EXPECT_EQ(server.CanUnloadNow(), S_OK);
            LPOLESTR names[] = {const_cast<LPOLESTR>(L"CalculateMove")};
            DISPID id = 0;
            EXPECT_EQ(calculator->GetIDsOfNames(IID_NULL, names, 1, 0, &id), S_OK);
            EXPECT_EQ(id, 5);
        }
        CoFreeUnusedLibraries();
        EXPECT_EQ(copy.Unregister(), S_OK);
    }
    EXPECT_EQ(RegisteredTexts(), RegistryTexts{});
}

TEST_F(Registration, WorksOnAThreadWithoutAnApartment) {
    HRESULT registered = E_FAIL;
    HRESULT unregistered = E_FAIL;
    bool written = false;
    std::thread([&] {
        registered = server.Register();
        written = KeyExists(classKey);
        unregistered = server.Unregister();
    }).join();
    EXPECT_EQ(registered, S_OK);
    EXPECT_TRUE(written);
    EXPECT_EQ(unregistered, S_OK);
    EXPECT_EQ(RegisteredTexts(), RegistryTexts{});
}

TEST_F(Registration, IsTheSameWithoutThePlatformsRegistrar) {
    ASSERT_EQ(server.Register(), S_OK);
    const auto expected = RegisteredTexts();
    ASSERT_EQ(server.Unregister(), S_OK);
    NoRegistrar none(REGDB_E_CLASSNOTREG);
    SetText(Below(classKey, L"LocalServer32"), L"", L"left by an older version");
    EXPECT_EQ(server.Register(), S_OK);
    EXPECT_EQ(RegisteredTexts(), expected);
    EXPECT_EQ(server.Unregister(), S_OK);
    EXPECT_EQ(RegisteredTexts(), RegistryTexts{});
    EXPECT_EQ(server.Unregister(), S_OK) << "undone twice";
    EXPECT_EQ(none.asked, 3);
}

TEST_F(Registration, WithoutARegistrarKeepsKeysOfOtherPrograms) {
    const NoRegistrar none(REGDB_E_CLASSNOTREG);
    const std::wstring foreign = Below(programKey, L"OtherProgram");
    SetText(foreign, L"name", L"of another program");
    ASSERT_EQ(server.Register(), S_OK);
    ASSERT_EQ(server.Unregister(), S_OK);
    EXPECT_EQ(Text(TextsBelow(programKey), foreign, L"name"), L"of another program");
    EXPECT_FALSE(KeyExists(Below(programKey, L"CLSID")));
}

TEST_F(Registration, ThatFailsLeavesNoKeys) {
    // Keys that a registrar wrote before it failed, and keys of an older registration.
    const NoRegistrar fails(DISP_E_EXCEPTION);
    for (const auto& [key, values] : ScriptTexts(ServerPath())) {
        for (const auto& [name, text] : values) SetText(key, name, text);
    }
    EXPECT_EQ(server.Register(), DISP_E_EXCEPTION);
    EXPECT_EQ(RegisteredTexts(), RegistryTexts{});
}

TEST_F(Registration, WithoutRightsReturnsAccessDeniedAndWritesNothing) {
    NoRegistrar registrar(DISP_E_EXCEPTION);
    // The last key to which a registration writes exists already, and access to it is denied to everybody.
    constexpr auto denied = secondInterfaceKey;
    SECURITY_DESCRIPTOR noAccess{};
    ACL empty{};
    ASSERT_NE(InitializeSecurityDescriptor(&noAccess, SECURITY_DESCRIPTOR_REVISION), 0);
    ASSERT_NE(InitializeAcl(&empty, sizeof empty, ACL_REVISION), 0);
    ASSERT_NE(SetSecurityDescriptorDacl(&noAccess, TRUE, &empty, FALSE), 0);
    SECURITY_DESCRIPTOR everybody{};
    ASSERT_NE(InitializeSecurityDescriptor(&everybody, SECURITY_DESCRIPTOR_REVISION), 0);
    ASSERT_NE(SetSecurityDescriptorDacl(&everybody, TRUE, nullptr, FALSE), 0);
    HKEY key = nullptr;
    ASSERT_EQ(RegCreateKeyExW(HKEY_CLASSES_ROOT, denied, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key, nullptr), 0);
    ASSERT_EQ(RegSetKeySecurity(key, DACL_SECURITY_INFORMATION, &noAccess), 0);
    EXPECT_EQ(server.Register(), E_ACCESSDENIED);
    EXPECT_EQ(registrar.asked, 0);
    EXPECT_EQ(RegSetKeySecurity(key, DACL_SECURITY_INFORMATION, &everybody), 0);
    RegCloseKey(key);
    RemoveKey(denied);
    EXPECT_EQ(RegisteredTexts(), RegistryTexts{});
}

} // namespace
