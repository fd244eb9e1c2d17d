#include "platform/ProfileFile.h"

#include "platform/windows/FileHandle.h"
#include "platform/windows/NarrowNames.h"
#include "platform/windows/ProfileCopy.h"

#include <cstdio>

namespace qmv40 {

struct ProfileReader::State {
    std::optional<std::string> name;
    FileHandle held;
};

namespace {

/// Keeps others from replacing the file and from writing into it. A file that a save looks at or replaces at this very
/// moment can be opened at once after that: a few attempts, without a pause. One that another program keeps open for
/// writing is kept from being replaced alone.
FileHandle Hold(const wchar_t* fileName) {
    constexpr int mostAttempts = 10;
    for (const DWORD sharing : {DWORD{FILE_SHARE_READ}, DWORD{FILE_SHARE_READ | FILE_SHARE_WRITE}}) {
        for (int attempt = 0; attempt < mostAttempts; ++attempt) {
            FileHandle file(fileName, GENERIC_READ, sharing);
            if (file.IsOpen() || !IsInUse(GetLastError())) return file;
        }
    }
    return {};
}

} // namespace

ProfileReader::ProfileReader(const wchar_t* fileName)
    : state(std::make_unique<State>(State{NarrowFileName(fileName), {}})) {
    if (state->name && IsAbsolute(fileName)) state->held = Hold(fileName);
}

ProfileReader::~ProfileReader() = default;

void ProfileReader::Read(const wchar_t* section, const wchar_t* key, const char* defaultText,
                         std::span<char> buffer) const {
    const std::optional<std::string> sectionName = NarrowName(section);
    const std::optional<std::string> keyName = NarrowName(key);
    const auto size = static_cast<DWORD>(buffer.size());
    // With a null section or key the platform's function lists names, and with a null file it reads win.ini.
    if (sectionName && keyName && state->name)
        GetPrivateProfileStringA(sectionName->c_str(), keyName->c_str(), defaultText, buffer.data(), size,
                                 state->name->c_str());
    else
        std::snprintf(buffer.data(), buffer.size(), "%s", defaultText == nullptr ? "" : defaultText);
}

void ProfileWriter::Set(const wchar_t* section, const wchar_t* key, std::string_view text) {
    entries.push_back({NarrowName(section), NarrowName(key), std::string(text)});
}

bool ProfileWriter::Commit() {
    Patience patience;
    return WriteEntries(file, entries, patience);
}

} // namespace qmv40
