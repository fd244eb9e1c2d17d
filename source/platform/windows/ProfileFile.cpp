#include "platform/ProfileFile.h"

#include "platform/windows/FileContent.h"
#include "platform/windows/NarrowNames.h"
#include "platform/windows/ProfileCopy.h"

#include <cstdio>

namespace qmv40 {

struct ProfileReader::State {
    std::optional<std::string> name;
    FileHandle held;
};

namespace {

/// Opens the file so that no other program can replace it or write into it. A save holds the file for a short time
/// only, so that a few attempts without a pause are enough. If another program has the file open for writing, only the
/// saves of this component are locked out. Nothing if a save was still writing into the file at the last attempt: a
/// part of the old geometry and a part of the new one would be read.
std::optional<FileHandle> Hold(const wchar_t* fileName) {
    constexpr int mostAttempts = 10;
    bool isWrittenInto = false;
    for (const DWORD sharing : {DWORD{FILE_SHARE_READ}, DWORD{FILE_SHARE_READ | FILE_SHARE_WRITE}}) {
        for (int attempt = 0; attempt < mostAttempts; ++attempt) {
            FileHandle file(fileName, GENERIC_READ, sharing);
            if (!file.IsOpen() && !IsInUse(GetLastError())) return FileHandle();
            isWrittenInto = file.IsOpen() && !Claim(ContentRight::toRead, file);
            if (file.IsOpen() && !isWrittenInto) return file;
        }
    }
    return isWrittenInto ? std::nullopt : std::optional(FileHandle());
}

} // namespace

ProfileReader::ProfileReader(const wchar_t* fileName)
    : state(std::make_unique<State>(State{NarrowFileName(fileName), {}})) {
    if (!state->name || !IsAbsolute(fileName)) return;
    std::optional<FileHandle> held = Hold(fileName);
    if (held)
        state->held = std::move(*held);
    else
        state->name.reset(); // then no entry is found
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
    WaitLimit waitLimit;
    return WriteEntries(file, entries, waitLimit);
}

} // namespace qmv40
