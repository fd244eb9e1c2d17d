#include "platform/ProfileFile.h"

#include "formats/AsciiText.h"
#include "formats/ProfileText.h"
#include "formats/Unicode.h"
#include "platform/portable/FileReading.h"
#include "platform/portable/FileReplacement.h"

#include <algorithm>
#include <fcntl.h>
#include <utility>
#include <vector>

using namespace ascii_text;

namespace {

constexpr std::string_view utf8Mark{"\xEF\xBB\xBF"};
constexpr std::string_view utf16Mark{"\xFF\xFE"};
constexpr std::string_view swappedUtf16Mark{"\xFE\xFF"};

/// A file's content, taken apart into what marks its encoding and the text, and put together again.
/// A file without a mark is text as it stands, whatever its bytes mean.
class EncodedText {
public:
    explicit EncodedText(std::string_view content) {
        for (const std::string_view known : {utf8Mark, utf16Mark, swappedUtf16Mark})
            if (content.starts_with(known)) mark = known;
        content.remove_prefix(mark.size());
        if (IsWide() && content.size() % 2 != 0) oddByte = content.back();
        text = IsWide() ? Utf8FromUtf16(content, Order()) : std::string(content);
    }

    std::string Content() const {
        std::string content(mark);
        content += IsWide() ? Utf16FromUtf8(text, Order()) : text;
        if (oddByte) content.push_back(*oddByte);
        return content;
    }

    std::string text;

private:
    bool IsWide() const { return mark.size() == 2; }
    std::endian Order() const { return mark == utf16Mark ? std::endian::little : std::endian::big; }

    std::string_view mark;
    std::optional<char> oddByte; // a damaged file's, kept like everything else
};

/// The default as it is handed out: without trailing blanks.
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

EncodedText ReadFile(const std::optional<std::string>& file) {
    const auto content = file ? ReadWhole(OpenFile(*file, O_RDONLY)) : std::nullopt;
    return EncodedText(content ? *content : "");
}

/// One write, kept until it is its turn.
struct Edit {
    std::string section;
    std::optional<std::string> key;
    std::optional<std::string> text;

    void ApplyTo(std::string& profile) const {
        if (!key)
            RemoveProfileSection(profile, section);
        else if (!text)
            RemoveProfileKey(profile, section, *key);
        else
            SetProfileValue(profile, section, *key, *text);
    }
};

bool Apply(const std::vector<Edit>& edits, const std::string& file) {
    return RewriteFile(file, [&](std::string& content) {
        EncodedText profile(content);
        for (const Edit& edit : edits) edit.ApplyTo(profile.text);
        content = profile.Content();
    });
}

/// What a thread has open: the file's name as the caller wrote it, and what stands for the file.
template <typename Content> struct OpenProfile {
    std::wstring name;
    Content content;
    OpenProfile* outer = nullptr; ///< opened before it

    /// The latest one of `fileName`, or null.
    static OpenProfile* Find(OpenProfile* latest, const wchar_t* fileName) {
        while (latest != nullptr && (fileName == nullptr || latest->name != fileName)) latest = latest->outer;
        return latest;
    }
};
using OpenSnapshot = OpenProfile<EncodedText>;
using OpenBatch = OpenProfile<std::vector<Edit>>;

thread_local OpenSnapshot* latestSnapshot = nullptr;
thread_local OpenBatch* latestBatch = nullptr;

std::wstring NameOrNone(const wchar_t* name) { return name == nullptr ? L"" : name; }

} // namespace

struct ProfileSnapshot::State : OpenSnapshot {};

ProfileSnapshot::ProfileSnapshot(const wchar_t* fileName)
    : state(std::make_unique<State>(State{{NameOrNone(fileName), ReadFile(NarrowName(fileName)), latestSnapshot}})) {
    latestSnapshot = state.get();
}

ProfileSnapshot::~ProfileSnapshot() { latestSnapshot = state->outer; }

struct ProfileBatch::State : OpenBatch {};

ProfileBatch::ProfileBatch(const wchar_t* fileName)
    : state(std::make_unique<State>(State{{NameOrNone(fileName), {}, latestBatch}})) {
    latestBatch = state.get();
}

ProfileBatch::~ProfileBatch() { latestBatch = state->outer; }

bool ProfileBatch::Commit() {
    const auto file = NarrowName(state->name.c_str());
    return file && Apply(std::exchange(state->content, {}), *file);
}

void ReadProfileText(const wchar_t* section, const wchar_t* key, const char* defaultText, std::span<char> buffer,
                     const wchar_t* fileName) {
    const auto sectionName = NarrowName(section);
    const auto keyName = NarrowName(key);
    const OpenSnapshot* const snapshot = OpenSnapshot::Find(latestSnapshot, fileName);
    const EncodedText read = snapshot != nullptr ? EncodedText("") : ReadFile(NarrowName(fileName));
    const EncodedText& profile = snapshot != nullptr ? snapshot->content : read;
    const bool isNamed = sectionName && keyName;
    const auto value = isNamed ? FindProfileValue(profile.text, *sectionName, *keyName) : std::nullopt;
    CopyCut(WithoutQuotes(value ? *value : CleanDefault(defaultText)), buffer);
}

bool WriteProfileText(const wchar_t* section, const wchar_t* key, const char* text, const wchar_t* fileName) {
    const auto sectionName = NarrowName(section);
    const auto file = NarrowName(fileName);
    if (!sectionName || !file) return false;
    Edit edit{*sectionName, NarrowName(key), text == nullptr ? std::nullopt : std::optional<std::string>(text)};
    OpenBatch* const batch = OpenBatch::Find(latestBatch, fileName);
    if (batch == nullptr) return Apply({std::move(edit)}, *file);
    batch->content.push_back(std::move(edit));
    return true;
}
