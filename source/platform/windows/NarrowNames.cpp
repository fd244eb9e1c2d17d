#include "platform/windows/NarrowNames.h"

#include <array>

namespace qmv40 {

namespace {

/// Without flags and without a default character, because Windows refuses them for UTF-8 and some other code pages. A
/// character that is not in the code page becomes another character. The comparison in NarrowName finds that.
std::string Converted(const std::wstring& name, UINT codePage, const NameConversions& conversions) {
    const auto length = static_cast<int>(name.size());
    const int size = conversions.narrow(codePage, 0, name.data(), length, nullptr, 0, nullptr, nullptr);
    std::string bytes(size > 0 ? static_cast<std::size_t>(size) : 0, '\0');
    if (size > 0) conversions.narrow(codePage, 0, name.data(), length, bytes.data(), size, nullptr, nullptr);
    return bytes;
}

std::wstring ShortPath(const std::wstring& name, const NameConversions& conversions) {
    std::array<wchar_t, MAX_PATH> path{};
    const DWORD length = conversions.shortPath(name.c_str(), path.data(), MAX_PATH);
    return length < MAX_PATH ? std::wstring(path.data(), length) : std::wstring();
}

/// The short name of a file. For a file that does not exist yet: the folder's short name and the file's name. Empty if
/// there is no short name.
std::wstring ShortName(const std::wstring& name, const NameConversions& conversions) {
    std::wstring whole = ShortPath(name, conversions);
    const std::size_t leaf = name.find_last_of(L"\\/");
    if (!whole.empty() || leaf == std::wstring::npos) return whole;
    const std::wstring folder = ShortPath(name.substr(0, leaf), conversions);
    return folder.empty() ? folder : folder + name.substr(leaf);
}

} // namespace

std::wstring SeenName(const std::string& narrow, const NameConversions& conversions) {
    const auto length = static_cast<int>(narrow.size());
    const int size = conversions.widen(CP_ACP, 0, narrow.data(), length, nullptr, 0);
    std::wstring name(size > 0 ? static_cast<std::size_t>(size) : 0, L'\0');
    if (size > 0) conversions.widen(CP_ACP, 0, narrow.data(), length, name.data(), size);
    return name;
}

std::optional<std::string> NarrowName(const wchar_t* name, const NameConversions& conversions) {
    if (name == nullptr) return std::nullopt;
    for (const UINT codePage : {UINT{CP_THREAD_ACP}, UINT{CP_ACP}}) {
        std::string bytes = Converted(name, codePage, conversions);
        if (SeenName(bytes, conversions) == name) return bytes;
    }
    return std::nullopt;
}

std::optional<std::string> NarrowFileName(const wchar_t* name, const NameConversions& conversions) {
    const std::wstring wide(name == nullptr ? L"" : name);
    if (wide.empty() || wide.size() >= MAX_PATH) return std::nullopt;
    std::optional<std::string> bytes = NarrowName(name, conversions);
    if (bytes) return bytes;
    const std::wstring shortName = ShortName(wide, conversions);
    return shortName.empty() ? std::nullopt : NarrowName(shortName.c_str(), conversions);
}

} // namespace qmv40
