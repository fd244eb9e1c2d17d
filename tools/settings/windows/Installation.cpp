#include "tools/settings/Installation.h"

#include "formats/AsciiText.h"
#include "interface/IQMVCalculator.h"
#include "interface/Identifiers.h"
#include "platform/ComPointer.h"
#include "tools/text/Text.h"
#include "tools/text/WideText.h"

#include <array>
#include <fstream>
#include <iterator>

namespace qmv40::settings {

namespace {

const std::string classId = "{5B2E9C41-7A3D-4F6E-9B12-3C8D4E7F1A26}";
const std::string serverKey = "CLSID\\" + classId + "\\InprocServer32";
const std::string libraryId = "{8E4F2A17-3B6C-4D59-A2E8-71F0C3B9D645}";
const std::string libraryKey = "TypeLib\\" + libraryId + "\\1.0";
constexpr const char* interfaceKeys[] = {"Interface\\{2C7D91E3-6F4A-4B28-8D35-9E1A7C0B4F52}\\TypeLib",
                                         "Interface\\{6A3E5F82-1D9B-4C47-B6E0-58F2D7A1C93E}\\TypeLib"};
constexpr const wchar_t* componentFile = L"CoQMV40Calculator.dll";
constexpr const char* registerAgain = "As administrator: regsvr32 CoQMV40Calculator.dll, the 64-bit one.";

/// The 64-bit and the 32-bit view of the registry.
enum class View : REGSAM { Wide = KEY_WOW64_64KEY, Narrow = KEY_WOW64_32KEY };

std::optional<std::string> RegisteredText(const std::string& path, const wchar_t* name = nullptr,
                                          View view = View::Wide) {
    HKEY key = nullptr;
    const REGSAM access = KEY_READ | static_cast<REGSAM>(view);
    if (RegOpenKeyExW(HKEY_CLASSES_ROOT, text::PathOf(path).c_str(), 0, access, &key) != ERROR_SUCCESS)
        return std::nullopt;
    constexpr std::size_t longestPath = 32768;
    std::wstring text(longestPath, L'\0');
    auto bytes = static_cast<DWORD>(text.size() * sizeof(wchar_t));
    const LSTATUS result = RegQueryValueExW(key, name, nullptr, nullptr, reinterpret_cast<BYTE*>(text.data()), &bytes);
    RegCloseKey(key);
    if (result != ERROR_SUCCESS) return std::nullopt;
    return text::ToUtf8(text.substr(0, text.find(L'\0')));
}

constexpr const char* anotherFile = "another file";

std::filesystem::path FileOfModule(HMODULE module) {
    constexpr std::size_t longestPath = 32768;
    std::wstring file(longestPath, L'\0');
    file.resize(GetModuleFileNameW(module, file.data(), static_cast<DWORD>(file.size())));
    return file;
}

/// The module that contains the class; empty when no object can be created.
std::filesystem::path LoadedModule() {
    qmv40::ComPointer<IUnknown> object;
    if (FAILED(CoCreateInstance(CLSID_QMVCalculator, nullptr, CLSCTX_INPROC_SERVER, IID_IUnknown, object.Receive())))
        return {};
    const void* const code = **reinterpret_cast<void***>(object.Get());
    HMODULE module = nullptr;
    constexpr DWORD flags = GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
    if (GetModuleHandleExW(flags, static_cast<LPCWSTR>(code), &module) == FALSE) return {};
    return FileOfModule(module);
}

/// The version resource of a file: four numbers.
text::Json VersionOf(const std::filesystem::path& file) {
    const DWORD size = GetFileVersionInfoSizeW(file.c_str(), nullptr);
    std::vector<BYTE> block(size);
    if (size == 0 || GetFileVersionInfoW(file.c_str(), 0, size, block.data()) == FALSE) return nullptr;
    void* found = nullptr;
    UINT length = 0;
    if (VerQueryValueW(block.data(), L"\\", &found, &length) == FALSE) return nullptr;
    const auto& version = *static_cast<const VS_FIXEDFILEINFO*>(found);
    return std::to_string(HIWORD(version.dwFileVersionMS)) + '.' + std::to_string(LOWORD(version.dwFileVersionMS)) +
           '.' + std::to_string(HIWORD(version.dwFileVersionLS));
}

/// The machine type in the header of a program file: "64-bit", "32-bit", or empty.
std::string BitnessOf(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    std::array<char, 4096> head{};
    stream.read(head.data(), static_cast<std::streamsize>(head.size()));
    const auto wordAt = [&](std::size_t at) -> unsigned {
        if (at + 1 >= head.size()) return 0;
        return static_cast<unsigned char>(head[at]) | static_cast<unsigned>(static_cast<unsigned char>(head[at + 1]))
                                                          << 8U;
    };
    constexpr std::size_t placeOfHeader = 0x3C;
    const unsigned machine = wordAt(wordAt(placeOfHeader) + 4);
    if (machine == IMAGE_FILE_MACHINE_AMD64) return "64-bit";
    if (machine == IMAGE_FILE_MACHINE_I386) return "32-bit";
    return "";
}

std::string ContentOf(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

/// The difference between two files, in a word for people.
std::string Comparison(const std::filesystem::path& one, const std::filesystem::path& other) {
    std::error_code error;
    if (std::filesystem::equivalent(one, other, error)) return "the same file";
    return ContentOf(one) == ContentOf(other) ? "a copy of it" : anotherFile;
}

/// Collects the facts, and findings where they contradict each other.
class Examination {
public:
    Installation Result() && { return std::move(installation); }

    void ExamineLoaded() {
        const std::filesystem::path file = LoadedModule();
        AddComponent("file", "file", file.empty() ? text::Json() : text::Json(text::Utf8Name(file)));
        AddComponent("version", "version", file.empty() ? text::Json() : VersionOf(file));
    }

    void ExamineClass() {
        const std::optional<std::string> server = RegisteredText(serverKey);
        const std::optional<std::string> model = RegisteredText(serverKey, L"ThreadingModel");
        AddRegistration("class", "class registered as", RegisteredText("CLSID\\" + classId));
        AddRegistration("server", "server (64-bit view)", server);
        AddRegistration("threadingModel", "threading model", model);
        AddRegistration("registered", "registered", server.has_value());
        if (!server) return; // a failure to create the component is reported elsewhere: a manifest may still provide it
        ExamineServer(text::PathOf(*server));
        if (model != "Apartment") {
            ReportBroken("threading-model-wrong",
                         "The threading model is not \"Apartment\": the component would be used "
                         "on threads it is not made for");
        }
    }

    void ExamineNames() {
        for (const wchar_t* const progId : {QMVCalculatorProgId, QMVCalculatorVersionIndependentProgId}) {
            const std::string name = text::ToUtf8(progId);
            const std::optional<std::string> id = RegisteredText(name + "\\CLSID");
            AddRegistration(name, name, id);
            if (isRegistered && !ascii::EqualIgnoringCase(id.value_or(""), classId))
                ReportBroken("name-broken", "\"" + name + "\" does not name the component's class");
        }
    }

    void ExamineTypeLibrary() {
        std::optional<std::string> library = RegisteredText(libraryKey + "\\0\\win64");
        if (!library) library = RegisteredText(libraryKey + "\\409\\win64");
        AddRegistration("typeLibrary", "type library", library);
        const std::string consequence = "late binding by other programs and calls across apartments fail";
        if (isRegistered && !library)
            ReportBroken("type-library-missing", "No type library is registered: " + consequence);
        if (library && !Exists(text::PathOf(*library))) {
            ReportBroken("type-library-missing",
                         "The registered type library " + *library + " is not there: " + consequence);
        }
        for (const char* const key : interfaceKeys) {
            if (isRegistered && !ascii::EqualIgnoringCase(RegisteredText(key).value_or(""), libraryId)) {
                ReportBroken("interface-broken",
                             std::string(key).append(" does not name the type library: ").append(consequence));
            }
        }
    }

    void ExamineNarrowView() {
        const std::optional<std::string> server = RegisteredText(serverKey, nullptr, View::Narrow);
        const bool isShared = server && server == RegisteredText(serverKey);
        AddRegistration("server32", "server (32-bit view)", isShared ? text::Json() : text::Json(server));
    }

private:
    static bool Exists(const std::filesystem::path& file) {
        std::error_code ignored;
        return std::filesystem::exists(file, ignored);
    }

    void ExamineServer(const std::filesystem::path& server) {
        isRegistered = true;
        AddRegistration("serverExists", "the file exists", Exists(server));
        if (!Exists(server)) {
            return Report("component-missing", Severity::Fault,
                          "The registered file " + text::Utf8Name(server) + " is not there",
                          "Put it back, or register the component where it is now. " + std::string(registerAgain));
        }
        const std::string bitness = BitnessOf(server);
        AddRegistration("serverBitness", "made for programs of", bitness.empty() ? text::Json() : text::Json(bitness));
        if (bitness != "64-bit") {
            ReportBroken("component-not-64-bit",
                         "The registered file " + text::Utf8Name(server) + " is no 64-bit module");
        }
        CompareWithOwn(server);
    }

    void CompareWithOwn(const std::filesystem::path& server) {
        const std::filesystem::path beside = text::PathOf(OwnFile()).parent_path() / componentFile;
        const text::Json comparison = Exists(beside) ? text::Json(Comparison(server, beside)) : text::Json();
        AddRegistration("besideTheTool", "the one beside this tool is", comparison);
        if (comparison.Text() != nullptr && *comparison.Text() == anotherFile) {
            Report("component-differs", Severity::Warning,
                   "The registered component is another one than that beside this tool",
                   "Programs use the registered one. To use this one instead: regsvr32 \"" + text::Utf8Name(beside) +
                       "\"");
        }
    }

    void AddComponent(std::string key, std::string label, text::Json value) {
        installation.component.push_back({std::move(key), std::move(label), std::move(value)});
    }
    void AddRegistration(std::string key, std::string label, text::Json value) {
        installation.registration.push_back({std::move(key), std::move(label), std::move(value)});
    }
    void Report(std::string name, Severity severity, const std::string& problem, std::string remedy) {
        installation.findings.push_back(FindingAbout({}, std::move(name), severity, problem, std::move(remedy)));
    }
    void ReportBroken(std::string name, const std::string& problem) {
        Report(std::move(name), Severity::Fault, problem, registerAgain);
    }

    Installation installation;
    bool isRegistered = false;
};

} // namespace

Installation ExamineInstallation() {
    Examination examination;
    examination.ExamineLoaded();
    examination.ExamineClass();
    examination.ExamineNames();
    examination.ExamineTypeLibrary();
    examination.ExamineNarrowView();
    return std::move(examination).Result();
}

std::string OwnFile() { return text::Utf8Name(FileOfModule(nullptr)); }

} // namespace qmv40::settings
