#include "tests/server/Client.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <string>
#include <vector>

/// The properties of the component's file that the loader and the linker use.

namespace {

using testing::ElementsAre;
using testing::IsSubsetOf;

/// The file's image in memory.
class Image {
public:
    explicit Image(HMODULE module) : base(reinterpret_cast<const char*>(module)) {
        const auto* const dos = At<IMAGE_DOS_HEADER>(0);
        headers = At<IMAGE_NT_HEADERS>(static_cast<DWORD>(dos->e_lfanew));
    }

    std::vector<std::string> Exports() const {
        const auto* const table = At<IMAGE_EXPORT_DIRECTORY>(Directory(IMAGE_DIRECTORY_ENTRY_EXPORT));
        std::vector<std::string> names;
        for (DWORD i = 0; i < table->NumberOfNames; ++i)
            names.emplace_back(At<char>(At<DWORD>(table->AddressOfNames)[i]));
        return names;
    }
    /// The number of exports, including those without a name.
    DWORD ExportedFunctions() const {
        return At<IMAGE_EXPORT_DIRECTORY>(Directory(IMAGE_DIRECTORY_ENTRY_EXPORT))->NumberOfFunctions;
    }
    /// The libraries that the file imports, in lower case.
    std::vector<std::string> Imports() const {
        std::vector<std::string> names;
        const auto* library = At<IMAGE_IMPORT_DESCRIPTOR>(Directory(IMAGE_DIRECTORY_ENTRY_IMPORT));
        for (; library->Name != 0; ++library) {
            std::string name(At<char>(library->Name));
            std::transform(name.begin(), name.end(), name.begin(),
                           [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
            names.push_back(name);
        }
        return names;
    }
    WORD Machine() const { return headers->FileHeader.Machine; }
    WORD Characteristics() const { return headers->OptionalHeader.DllCharacteristics; }

private:
    template <class T> const T* At(DWORD offset) const { return reinterpret_cast<const T*>(base + offset); }
    DWORD Directory(std::size_t entry) const { return headers->OptionalHeader.DataDirectory[entry].VirtualAddress; }

    const char* base;
    const IMAGE_NT_HEADERS* headers;
};

TEST(ModuleFile, HasTheArchitectureOfThisProgram) {
    EXPECT_EQ(Image(LoadedServer().Module()).Machine(),
              sizeof(void*) == 8 ? IMAGE_FILE_MACHINE_AMD64 : IMAGE_FILE_MACHINE_I386);
}

TEST(ModuleFile, CanBeLoadedAnywhereAndDoesNotExecuteData) {
    constexpr WORD everywhere = IMAGE_DLLCHARACTERISTICS_DYNAMIC_BASE | IMAGE_DLLCHARACTERISTICS_NX_COMPAT;
    constexpr WORD expected = sizeof(void*) == 8 ? everywhere | IMAGE_DLLCHARACTERISTICS_HIGH_ENTROPY_VA : everywhere;
    EXPECT_EQ(Image(LoadedServer().Module()).Characteristics() & expected, expected);
}

TEST(ModuleFile, ExportsItsFourEntryPointsAndNothingElse) {
    const LoadedServer server;
    const Image image(server.Module());
    EXPECT_THAT(image.Exports(),
                ElementsAre("DllCanUnloadNow", "DllGetClassObject", "DllRegisterServer", "DllUnregisterServer"));
    EXPECT_EQ(image.ExportedFunctions(), 4U);
}

TEST(ModuleFile, ImportsLibrariesOfTheSystemOnly) {
    const LoadedServer server;
    const auto imports = Image(server.Module()).Imports();
    EXPECT_FALSE(imports.empty());
    EXPECT_THAT(imports, IsSubsetOf({"advapi32.dll", "kernel32.dll", "msvcrt.dll", "ole32.dll", "oleaut32.dll"}));
}

TEST(ModuleFile, ContainsTypeLibraryScriptAndVersion) {
    const LoadedServer server;
    EXPECT_NE(FindResourceW(server.Module(), MAKEINTRESOURCEW(1), L"TYPELIB"), nullptr);
    EXPECT_NE(FindResourceW(server.Module(), MAKEINTRESOURCEW(101), L"REGISTRY"), nullptr);
    EXPECT_NE(FindResourceW(server.Module(), MAKEINTRESOURCEW(VS_VERSION_INFO), MAKEINTRESOURCEW(16)), nullptr);
}

TEST(ModuleFile, CanBeUnloadedAsSoonAsItIsLoaded) { EXPECT_EQ(LoadedServer().CanUnloadNow(), S_OK); }

} // namespace
