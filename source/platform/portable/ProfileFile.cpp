#include "platform/ProfileFile.h"

#include "formats/EncodedText.h"
#include "formats/ProfileText.h"
#include "formats/Unicode.h"
#include "platform/portable/FileReading.h"
#include "platform/portable/FileReplacement.h"

#include <algorithm>
#include <fcntl.h>

namespace qmv40 {

namespace {

/// The default text as Read returns it: without blanks at its end.
std::string_view CleanDefault(const char* text) {
    const std::string_view all(text == nullptr ? "" : text);
    return all.substr(0, all.find_last_not_of(' ') + 1);
}

std::string_view WithoutQuotes(std::string_view text) {
    const bool isQuoted =
        text.size() >= 2 && text.front() == text.back() && (text.front() == '"' || text.front() == '\'');
    return isQuoted ? text.substr(1, text.size() - 2) : text;
}

void CopyCut(std::string_view text, std::span<char> buffer) {
    if (buffer.empty()) return;
    const std::size_t length = std::min(text.size(), buffer.size() - 1);
    std::copy_n(text.begin(), length, buffer.begin());
    buffer[length] = '\0';
}

std::string ContentOf(const std::optional<std::string>& file) {
    return (file ? ReadWhole(OpenFile(*file, O_RDONLY)) : std::nullopt).value_or("");
}

FileEdit EditOf(const ProfileEntry& entry) {
    return [&entry](std::string& content) {
        EncodedText profile(content);
        SetProfileValue(profile.text, *entry.section, *entry.key, entry.text);
        content = profile.Content();
    };
}

} // namespace

struct ProfileReader::State {
    EncodedText profile;
};

ProfileReader::ProfileReader(const wchar_t* fileName)
    : state(std::make_unique<State>(State{EncodedText(ContentOf(NarrowName(fileName)))})) {}

ProfileReader::~ProfileReader() = default;

void ProfileReader::Read(const wchar_t* section, const wchar_t* key, const char* defaultText,
                         std::span<char> buffer) const {
    const auto sectionName = NarrowName(section);
    const auto keyName = NarrowName(key);
    const bool isNamed = sectionName && keyName;
    const auto value = isNamed ? FindProfileValue(state->profile.text, *sectionName, *keyName) : std::nullopt;
    CopyCut(WithoutQuotes(value ? *value : CleanDefault(defaultText)), buffer);
}

void ProfileWriter::Set(const wchar_t* section, const wchar_t* key, std::string_view text) {
    entries.push_back({NarrowName(section), NarrowName(key), std::string(text)});
}

bool ProfileWriter::Commit() {
    const auto fileName = NarrowName(file.c_str());
    std::vector<FileEdit> edits;
    for (const ProfileEntry& entry : entries) {
        if (!entry.section || !entry.key) break;
        edits.push_back(EditOf(entry));
    }
    const bool areAllNamed = edits.size() == entries.size();
    return fileName && EditFile(*fileName, edits) && areAllNamed;
}

} // namespace qmv40
