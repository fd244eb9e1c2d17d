#include "cli/Platform.h"

#include "cli/ComponentError.h"
#include "cli/Failures.h"

namespace {

/// The ANSI code page can express the name: the component hands it to functions that know no other.
bool IsInAnsiCodePage(const std::wstring& name) {
    BOOL usedDefault = FALSE;
    WideCharToMultiByte(CP_THREAD_ACP, WC_NO_BEST_FIT_CHARS, name.c_str(), -1, nullptr, 0, nullptr, &usedDefault);
    return usedDefault == FALSE;
}

/// The standard handle is a console, and now takes what else a terminal takes.
bool UnderstandsColours(DWORD standardHandle) {
    DWORD mode = 0;
    const HANDLE console = GetStdHandle(standardHandle);
    return GetConsoleMode(console, &mode) != 0 &&
           SetConsoleMode(console, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING) != 0;
}

} // namespace

ComponentRuntime::ComponentRuntime() {
    const HRESULT result = CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    if (FAILED(result)) throw TakeComponentError(result, "CoInitializeEx");
}

ComponentRuntime::~ComponentRuntime() { CoUninitialize(); }

struct SettingsOverride::State {};

SettingsOverride::SettingsOverride(const std::string& fileName) {
    if (!fileName.empty()) {
        throw UsageError{"--settings: on Windows the head's dimensions stand in the registry; import " + fileName +
                         " there instead"};
    }
}

SettingsOverride::~SettingsOverride() = default;

std::string ToUtf8(std::wstring_view wide) {
    const std::u8string utf8 = std::filesystem::path(wide).u8string();
    return {utf8.begin(), utf8.end()};
}

std::wstring FileNameForComponent(const std::filesystem::path& path) {
    std::wstring name = path.wstring();
    if (!IsInAnsiCodePage(name)) {
        throw InputError{ToUtf8(name), {}, "the name has letters outside this machine's ANSI code page"};
    }
    return name;
}

bool OutputIsTerminal() { return UnderstandsColours(STD_OUTPUT_HANDLE); }

bool ErrorsGoToTerminal() { return UnderstandsColours(STD_ERROR_HANDLE); }
