#include "tests/tools/cli/ToolRun.h"

#include "tests/server/Registry.h"
#include "tests/support/SettingsFixture.h"
#include "tools/text/Text.h"

#include <cstdlib>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stdexcept>

using namespace qmv40;

namespace {

using testing::HasSubstr;

/// The component beside this program.
std::filesystem::path ComponentFile() {
    std::wstring program(32768, L'\0');
    program.resize(GetModuleFileNameW(nullptr, program.data(), static_cast<DWORD>(program.size())));
    return std::filesystem::path(program).parent_path() / L"CoQMV40Calculator.dll";
}

/// Registers the component. The destructor removes the registration.
class DoctorOfARegistration : public testing::Test {
protected:
    DoctorOfARegistration() {
        RemoveRegistration();
        const HMODULE module = LoadLibraryW(ComponentFile().c_str());
        if (module == nullptr) throw std::runtime_error("the component's file cannot be loaded");
        void* const entryPoint = reinterpret_cast<void*>(GetProcAddress(module, "DllRegisterServer"));
        if (FAILED(reinterpret_cast<HRESULT (*)()>(entryPoint)())) throw std::runtime_error("not registered");
        FreeLibrary(module);
    }
    ~DoctorOfARegistration() override { RemoveRegistration(); }

    static Json Examine(int expectedExitCode) {
        const ToolRun run = RunQmv40({"doctor", "--json"});
        EXPECT_EQ(expectedExitCode, run.exitCode) << run.out;
        return run.Document();
    }

    const SettingsFixture settings;
    const TemporaryFolder folder;
};

std::wstring ServerKey() { return std::wstring(classKey) + L"\\InprocServer32"; }

std::string FindingsOf(const Json& document) {
    std::string text;
    for (const Json& each : document["findings"]) text += each["sentence"].get<std::string>() + '\n';
    return text;
}

TEST_F(DoctorOfARegistration, PrintsItAndFindsNothingWrong) {
    const Json document = Examine(0);
    const Json& registration = document["registration"];
    EXPECT_EQ(true, registration["registered"]);
    EXPECT_EQ("QMVCalculator Class", registration["class"]);
    EXPECT_EQ("Apartment", registration["threadingModel"]);
    EXPECT_TRUE(std::filesystem::equivalent(ComponentFile(), registration["server"].get<std::string>()));
    EXPECT_EQ(true, registration["serverExists"]);
    EXPECT_EQ("64-bit", registration["serverBitness"]);
    EXPECT_EQ("the same file", registration["besideTheTool"]);
    EXPECT_EQ("{5B2E9C41-7A3D-4F6E-9B12-3C8D4E7F1A26}", registration["QMV.QMVCalculator"]);
    EXPECT_TRUE(std::filesystem::equivalent(ComponentFile(), registration["typeLibrary"].get<std::string>()));
    EXPECT_EQ(nullptr, registration["server32"]);
}

TEST_F(DoctorOfARegistration, AcceptsACopyOfTheComponentsFile) {
    const std::filesystem::path copy = folder.Path() / "CoQMV40Calculator.dll";
    std::filesystem::copy_file(ComponentFile(), copy);
    SetText(ServerKey(), L"", copy.wstring());
    EXPECT_EQ("a copy of it", Examine(0)["registration"]["besideTheTool"]);
}

TEST_F(DoctorOfARegistration, FindsWrongEntries) {
    const std::filesystem::path other = text::PathOf(folder.Write("other.dll", "MZ not a program"));
    std::string narrowHeader(0x100, '\0');
    narrowHeader[0x3C] = '\x40';                        // the offset of the header
    narrowHeader.replace(0x40, 6, "PE\0\0\x4C\x01", 6); // machine type 0x014C: 32-bit
    const std::filesystem::path narrow = text::PathOf(folder.Write("narrow.dll", narrowHeader));
    const struct {
        std::wstring key;
        const wchar_t* name;
        std::wstring text;
        const char* finding;
        const char* why;
    } cases[] = {
        {ServerKey(), L"", L"Z:\\nowhere\\CoQMV40Calculator.dll", "is not there", "a file moved away"},
        {ServerKey(), L"", other.wstring(), "is no 64-bit module", "a damaged file"},
        {ServerKey(), L"", narrow.wstring(), "is no 64-bit module", "a 32-bit file"},
        {ServerKey(), L"", other.wstring(), "is another one than that beside this tool", "another file"},
        {ServerKey(), L"ThreadingModel", L"Both", "The threading model is not \"Apartment\"",
         "another threading model"},
        {std::wstring(programKey) + L"\\CLSID", L"", L"{00000000-0000-0000-0000-000000000000}",
         "\"QMV.QMVCalculator.1\" does not name the component's class", "the name belongs to another class"},
        {std::wstring(typeLibraryKey) + L"\\1.0\\0\\win64", L"", L"Z:\\nowhere.dll", "is not there: late binding",
         "a type library moved away"},
        {std::wstring(firstInterfaceKey) + L"\\TypeLib", L"", L"{00000000-0000-0000-0000-000000000000}",
         "does not name the type library", "the interface belongs to another type library"},
    };
    const RegistryTexts sound = RegisteredTexts();
    for (const auto& each : cases) {
        SetText(each.key, each.name, each.text);
        EXPECT_THAT(FindingsOf(Examine(4)), HasSubstr(each.finding)) << each.why;
        SetText(each.key, each.name, sound.at(each.key).at(each.name));
    }
    RemoveKey(std::wstring(typeLibraryKey));
    EXPECT_THAT(FindingsOf(Examine(4)), HasSubstr("No type library is registered")) << "only a part is registered";
}

TEST(SettingsWrite, WritesAFileThatRegImportReads) {
    const SettingsFixture store;
    const TemporaryFolder folder;
    const std::string file = folder.Name("settings.reg");
    ASSERT_EQ(
        0, RunQmv40({"settings", "write", "--set", "lever-centre-x=31", "--set", "unlocked-z=-1.625", "--output", file})
               .exitCode);
    ASSERT_EQ(0, std::system(("reg import \"" + file + "\" >nul 2>&1").c_str()));
    const Json document = RunQmv40({"settings", "show", "--json"}).Document();
    EXPECT_EQ(31.0, document["settings"][3]["inForce"]);
    EXPECT_EQ(-1.625, document["settings"][11]["inForce"]);
    EXPECT_EQ(Json::array(), document["findings"]);
}

TEST(Doctor, ReportsSettingsInThe32BitView) {
    constexpr const char* narrowKey = R"(SOFTWARE\WOW6432Node\Hollbeck\VRX Software\QMV40Calculator)";
    const SettingsFixture store;
    RegSetKeyValueA(HKEY_LOCAL_MACHINE, narrowKey, "Locked To Unlocked Lever Rotation", REG_SZ, "120", 4);
    const ToolRun run = RunQmv40({"doctor", "--json"});
    RegDeleteTreeA(HKEY_LOCAL_MACHINE, R"(SOFTWARE\WOW6432Node\Hollbeck)");
    EXPECT_EQ(4, run.exitCode);
    EXPECT_THAT(FindingsOf(run.Document()), HasSubstr("WOW6432Node"));
}

} // namespace
