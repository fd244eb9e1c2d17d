#include "tests/server/Client.h"
#include "tests/server/Registry.h"

using namespace qmv40;

/// A registration for one account, like that of the installer without administrator rights.

namespace {

/// While it lives, HKEY_CLASSES_ROOT is the key with the classes of the calling account, for reading and writing.
class AccountsClasses {
public:
    AccountsClasses() {
        RegCreateKeyW(HKEY_CURRENT_USER, LR"(Software\Classes)", &classes);
        RegOverridePredefKey(HKEY_CLASSES_ROOT, classes);
    }
    AccountsClasses(const AccountsClasses&) = delete;
    AccountsClasses& operator=(const AccountsClasses&) = delete;
    ~AccountsClasses() {
        RegOverridePredefKey(HKEY_CLASSES_ROOT, nullptr);
        RegCloseKey(classes);
    }

private:
    HKEY classes = nullptr;
};

class OneAccount : public Client {
protected:
    OneAccount() {
        const AccountsClasses classes;
        EXPECT_EQ(server.Register(), S_OK);
    }
    ~OneAccount() override {
        CoFreeUnusedLibraries();
        const AccountsClasses classes;
        EXPECT_EQ(server.Unregister(), S_OK);
        EXPECT_EQ(RegisteredTexts(), RegistryTexts{}) << "nothing may be left";
    }
};

bool MachineHas(const std::wstring& key) {
    const std::wstring name = LR"(Software\Classes\)" + key;
    HKEY opened = nullptr;
    if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, name.c_str(), 0, KEY_READ, &opened) != ERROR_SUCCESS) return false;
    RegCloseKey(opened);
    return true;
}

TEST_F(OneAccount, HasTheClassAndBothNamesAndTheMachineHasNone) {
    const AccountsClasses classes;
    for (const wchar_t* const key : {classKey, programKey, versionIndependentProgramKey}) {
        EXPECT_TRUE(KeyExists(key));
        EXPECT_FALSE(MachineHas(key));
    }
    const RegistryTexts texts = TextsBelow(classKey);
    EXPECT_EQ(texts.at(std::wstring(classKey) + LR"(\InprocServer32)").at(L""), ServerPath().wstring());
}

TEST_F(OneAccount, CreatesTheClassThatIsRegisteredForItOnly) {
    // Wine 8 shows the machine's classes only.
    if (!KeyExists(classKey)) GTEST_SKIP() << "this system does not show the account's classes";
    for (const wchar_t* const name : {QMVCalculatorProgId, QMVCalculatorVersionIndependentProgId}) {
        CLSID clsid{};
        EXPECT_EQ(CLSIDFromProgID(name, &clsid), S_OK);
        ComPointer<IQMVCalculator2> calculator;
        EXPECT_EQ(CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IQMVCalculator2, calculator.Receive()),
                  S_OK);
        ASSERT_TRUE(calculator);
        EXPECT_EQ(calculator->SetCurrentHeadPosition(15.0, 30.0), S_OK);
    }
}

} // namespace
