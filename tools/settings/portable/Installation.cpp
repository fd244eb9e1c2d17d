#include "tools/settings/Installation.h"

#include "interface/Identifiers.h"
#include "tools/text/Text.h"

#include <algorithm>
#include <dlfcn.h>
#include <filesystem>
#include <set>

namespace qmv40::settings {

namespace {

constexpr std::string_view libraryName = "libCoQMV40Calculator.so";

/// The shared library in which this process finds the component's entry point; empty when it finds none.
std::filesystem::path LoadedLibrary() {
    Dl_info info{};
    void* const entryPoint = dlsym(RTLD_DEFAULT, "DllGetClassObject");
    if (entryPoint == nullptr || dladdr(entryPoint, &info) == 0) return {};
    std::error_code error;
    const std::filesystem::path file = std::filesystem::canonical(info.dli_fname, error);
    return error ? std::filesystem::path(info.dli_fname) : file;
}

/// The library's file name ends in its version.
text::Json VersionOf(const std::filesystem::path& library) {
    const std::string name = library.filename().string();
    const std::string start = std::string(libraryName) + '.';
    return name.starts_with(start) ? text::Json(name.substr(start.size())) : text::Json();
}

/// Other copies of the library: beside the tool, in the lib folder next to the tool's folder, and in the folders of the
/// system.
std::vector<std::string> OtherCopies(const std::filesystem::path& library) {
    std::set<std::string> copies;
    const std::filesystem::path toolFolder = std::filesystem::path(OwnFile()).parent_path();
    for (const std::filesystem::path& folder :
         {toolFolder, toolFolder.parent_path() / "lib", std::filesystem::path("/usr/local/lib"),
          std::filesystem::path("/usr/lib"), std::filesystem::path("/usr/lib/x86_64-linux-gnu")}) {
        std::error_code error;
        const std::filesystem::path file = std::filesystem::canonical(folder / libraryName, error);
        if (!error && file != library) copies.insert(file.string());
    }
    return {copies.begin(), copies.end()};
}

bool IsCreatableByName(const wchar_t* name) {
    CLSID found{};
    return CLSIDFromProgID(name, &found) == S_OK && found == CLSID_QMVCalculator;
}

} // namespace

Installation ExamineInstallation() {
    Installation installation;
    const std::filesystem::path library = LoadedLibrary();
    const text::Json version = VersionOf(library);
    const std::vector<std::string> copies = OtherCopies(library);
    installation.component = {
        {"file", "file", library.empty() ? text::Json() : text::Json(library.string())},
        {"version", "version", version},
        {"otherCopies", "other copies", copies.empty() ? text::Json() : text::Json(text::Joined(copies, ", "))},
        {"typeLibrary", "type library", text::Json()},
    };
    installation.registration = {
        {"registry", "registry", "not on this platform: a program that links the library can create the class"},
        {"progId", "QMV.QMVCalculator.1 creates it", IsCreatableByName(QMVCalculatorProgId)},
        {"versionIndependentProgId", "QMV.QMVCalculator creates it",
         IsCreatableByName(QMVCalculatorVersionIndependentProgId)},
    };
    if (version.Text() != nullptr && *version.Text() != QMV40_VERSION) {
        installation.findings.push_back(
            FindingAbout({}, "version-differs", Severity::Warning,
                         "The component is version " + *version.Text() + " and this tool version " QMV40_VERSION,
                         "Install both from one package, or unset LD_LIBRARY_PATH."));
    }
    return installation;
}

std::string OwnFile() {
    std::error_code error;
    const std::filesystem::path file = std::filesystem::read_symlink("/proc/self/exe", error);
    return error ? "" : file.string();
}

} // namespace qmv40::settings
