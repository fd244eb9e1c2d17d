// Reads and writes one entry of a profile file of any bytes, in each encoding that such a file may have. Laws:
// - a read stays within its buffer, terminates it, changes nothing, and gives the same text twice; a smaller buffer
//   gets the beginning of the text that a larger one gets;
// - a write that succeeds reads back; everything else in the file stays byte for byte: at most the old value of the
//   entry and the byte-order mark of UTF-8 are removed, and one piece of text is added;
// - every other entry reads as before; writing the same text again changes nothing;
// - names that a file cannot hold are refused, and the file does not change.
// Input: section\_key\_value\_section\_key\_content, where a backslash and any other character end a text. The last
// byte of the input is not content: it gives the size of the small buffer.

#include "Support.h"

#include "tests/support/ProfileText.h"

#include <algorithm>
#include <vector>

using namespace qmv40;

namespace {

constexpr std::size_t largestInput = 4096;
// Enough room for every text of the largest file: UTF-8 needs at most 1.5 times the bytes of UTF-16.
constexpr std::size_t plenty = 2 * largestInput;

const std::string& ProfileName() {
    static const TemporaryFolder folder;
    static const std::string name = folder.Name("profile.ini");
    return name;
}

std::wstring Widened(const std::string& ascii) { return {ascii.begin(), ascii.end()}; }

const wchar_t* FileArgument() {
    static const std::wstring name = Widened(ProfileName());
    return name.c_str();
}

/// The wide text whose UTF-8 is `bytes`. A byte that belongs to no character becomes a lone surrogate, which names may
/// not contain.
std::wstring WideText(std::string_view bytes) {
    std::wstring wide;
    while (!bytes.empty()) {
        const auto lead = static_cast<unsigned char>(bytes.front());
        const std::size_t length = lead < 0x80 ? 1 : lead < 0xC2 ? 0 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
        wchar_t point = length == 1 ? lead : lead & (0x7F >> length);
        bool isCharacter = length != 0 && length <= bytes.size();
        for (std::size_t i = 1; isCharacter && i < length; ++i) {
            isCharacter = (static_cast<unsigned char>(bytes[i]) & 0xC0) == 0x80;
            point = point << 6 | (static_cast<unsigned char>(bytes[i]) & 0x3F);
        }
        wide += isCharacter ? point : L'\xD800';
        bytes.remove_prefix(isCharacter ? length : 1);
    }
    return wide.substr(0, wide.find(L'\0'));
}

bool IsAllCharacters(const std::wstring& text) {
    return std::ranges::none_of(text, [](wchar_t c) { return (c >= 0xD800 && c < 0xE000) || c > 0x10FFFF; });
}

constexpr std::wstring_view wideBlanks{L" \t\v\f\x1A"};
constexpr std::string_view blanks{" \t\v\f\x1A"};

template <typename Text, typename View> Text Trimmed(const Text& text, View trimmed) {
    const auto first = text.find_first_not_of(trimmed);
    return first == Text::npos ? Text() : text.substr(first, text.find_last_not_of(trimmed) - first + 1);
}

/// The name of an entry, and whether a file can contain such an entry.
struct Name {
    std::wstring section;
    std::wstring key;

    bool HasLineEnd() const { return (section + key).find_first_of(L"\r\n") != std::wstring::npos; }
    /// False for a key that would be read as another one: with an "=", or like a section line or a byte-order mark.
    bool CanBeWritten() const {
        const std::wstring trimmed = Trimmed(key, wideBlanks);
        return !HasLineEnd() && trimmed.find(L'=') == std::wstring::npos && !trimmed.starts_with(L'[') &&
               !trimmed.starts_with(L'\xFEFF');
    }
    bool IsSameAs(const Name& other) const {
        const auto plain = [](const std::wstring& text) {
            std::wstring lower = Trimmed(text, wideBlanks);
            for (wchar_t& c : lower)
                if (c >= L'A' && c <= L'Z') c += L'a' - L'A';
            return lower;
        };
        return plain(section) == plain(other.section) && plain(key) == plain(other.key);
    }
};

std::string Read(const Name& name, const char* defaultText = "", std::size_t room = plenty) {
    std::vector<char> buffer(room, '#'); // on the heap, where the sanitizer detects accesses outside it
    ReadProfileText(name.section.c_str(), name.key.c_str(), defaultText, buffer, FileArgument());
    const auto end = std::ranges::find(buffer, '\0');
    Promise(end != buffer.end(), "a text that was read is terminated");
    return {buffer.begin(), end};
}

/// Read with two defaults: only a missing entry gives both of them.
bool IsThere(const Name& name) { return Read(name, "no") == Read(name, "none"); }

/// The value as Read returns it: without blanks around it, and without one pair of quotes.
std::string AsRead(const std::string& value) {
    const std::string text = Trimmed(value, blanks);
    const bool isQuoted =
        text.size() >= 2 && text.front() == text.back() && (text.front() == '"' || text.front() == '\'');
    return isQuoted ? text.substr(1, text.size() - 2) : text;
}

void PromiseSoundReads(const Name& name, std::size_t room) {
    const std::string before = ReadFile(ProfileName());
    const std::string text = Read(name, " default \t ");
    Promise(text == Read(name, " default \t "), "the same entry has the same text");
    if (room != 0) {
        Promise(Read(name, " default \t ", room) == text.substr(0, room - 1), "a small buffer gets the beginning");
    } else {
        ReadProfileText(name.section.c_str(), name.key.c_str(), "", {}, FileArgument());
    }
    Promise(ReadFile(ProfileName()) == before, "reading changes nothing");
}

/// The content of a file in units: bytes, or the 16-bit units of UTF-16.
struct Units {
    std::string_view mark; ///< the byte-order mark
    std::u16string text;
    std::string rest; ///< the odd byte of a damaged file

    explicit Units(std::string_view content) {
        for (const std::string_view known : {"\xEF\xBB\xBF", "\xFF\xFE", "\xFE\xFF"})
            if (content.starts_with(known)) mark = known;
        content.remove_prefix(mark.size());
        const auto byte = [&](std::size_t at) { return static_cast<unsigned char>(content[at]); };
        const std::size_t width = IsUtf16() ? 2 : 1;
        const std::size_t high = mark == "\xFE\xFF" ? 0 : 1;
        for (std::size_t at = 0; at + width <= content.size(); at += width) {
            text += static_cast<char16_t>(width == 1 ? byte(at) : byte(at + high) << 8 | byte(at + 1 - high));
        }
        rest = content.substr(content.size() / width * width);
    }

    bool IsUtf16() const { return mark.size() == 2; }
    bool IsUtf8() const { return mark.size() == 3; }

    /// A text in the units of such a file.
    std::u16string Of(const std::string& value) const {
        if (!IsUtf16()) return Units(" " + value).text.substr(1); // so that its beginning is not read as a mark
        std::u16string units;
        for (const wchar_t c : WideText(value)) {
            const auto point = static_cast<char32_t>(c);
            if (point >= 0x10000) units += static_cast<char16_t>(0xD800 + ((point - 0x10000) >> 10));
            units += static_cast<char16_t>(point >= 0x10000 ? 0xDC00 + (point & 0x3FF) : point);
        }
        return units;
    }
};

/// The difference between two texts: one piece of the first is replaced by one piece of the second.
struct Change {
    std::u16string gone;
    std::u16string came;

    Change(std::u16string_view before, std::u16string_view after) {
        const auto start = std::ranges::mismatch(before, after);
        before.remove_prefix(static_cast<std::size_t>(start.in1 - before.begin()));
        after.remove_prefix(static_cast<std::size_t>(start.in2 - after.begin()));
        while (!before.empty() && !after.empty() && before.back() == after.back()) {
            before.remove_suffix(1);
            after.remove_suffix(1);
        }
        gone = before;
        came = after;
    }
};

void PromiseOnlyTheValueChanged(const Units& before, const Units& after, bool wasThere, const std::string& oldValue) {
    Promise((before.mark == after.mark || before.IsUtf8()) && before.rest == after.rest,
            "the encoding and the last byte of a damaged file stay; a UTF-8 mark is removed");
    const std::u16string gone = Change(before.text, after.text).gone;
    Promise(wasThere || gone.empty(), "a new entry removes nothing");
    const std::u16string old = before.Of(oldValue);
    const std::u16string known = u"\"" + old + u"\" '" + old + u"'";
    // Blanks beside the old value can count as removed or as kept: that depends on how the new value begins and ends.
    // So they are not compared.
    Promise(known.find(Trimmed(gone, std::u16string_view(u" \t\v\f\x1A"))) != std::u16string::npos,
            "only the old value of the entry is removed");
}

void PromiseWrite(const Name& name, const std::string& value, const Name& bystander) {
    const std::string before = ReadFile(ProfileName());
    const Units unitsBefore(before);
    // A write removes a UTF-8 mark. The text after it can begin like another mark.
    if (unitsBefore.IsUtf8() && !Units(std::string_view(before).substr(3)).mark.empty()) return;
    const bool wasThere = IsThere(name);
    const std::string oldValue = Read(name);
    const std::string bystanders = Read(bystander, "none");
    const bool isWritten = WriteProfileText(name.section.c_str(), name.key.c_str(), value.c_str(), FileArgument());
    const std::string after = ReadFile(ProfileName());
    if (!IsAllCharacters(name.section + name.key)) {
        Promise(!isWritten && after == before, "a section or key that no file can contain is refused");
        return;
    }
    Promise(isWritten, "a regular file can be written");
    // A text of more than one line cannot be read back.
    if (!name.CanBeWritten()) return;
    if (value.find_first_of("\r\n") != std::string::npos) return;

    Promise(IsThere(name), "a written entry exists");
    // A UTF-16 file cannot contain bytes that are no characters. If a zero byte follows the value, the blanks between
    // them are not at the end of the line, and a read keeps them.
    const bool isHeld = !unitsBefore.IsUtf16() || IsAllCharacters(WideText(value));
    const bool hasZero = unitsBefore.text.find(u'\0') != std::u16string::npos;
    if (isHeld && !(hasZero && blanks.find(value.empty() ? 'x' : value.back()) != std::string_view::npos)) {
        Promise(Read(name) == AsRead(value), "a written value reads back");
    }
    PromiseOnlyTheValueChanged(unitsBefore, Units(after), wasThere, oldValue);
    if (!bystander.IsSameAs(name)) {
        Promise(Read(bystander, "none") == bystanders, "every other entry has its old value");
    }
    if (Trimmed(value, blanks) != value) return; // blanks behind the value would be added each time
    WriteProfileText(name.section.c_str(), name.key.c_str(), value.c_str(), FileArgument());
    Promise(ReadFile(ProfileName()) == after, "writing the same text again changes nothing");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size > largestInput) return 0;
    FuzzedDataProvider input(data, size);
    const auto takeText = [&] { return input.ConsumeRandomLengthString(); };
    const Name name{WideText(takeText()), WideText(takeText())};
    std::string value = takeText();
    value = value.substr(0, value.find('\0'));
    const Name bystander{WideText(takeText()), WideText(takeText())};
    const auto room = input.ConsumeIntegralInRange<std::size_t>(0, 64);
    WriteFile(ProfileName(), input.ConsumeRemainingBytesAsString());

    PromiseSoundReads(name, room);
    PromiseWrite(name, value, bystander);
    PromiseSoundReads(name, room);
    return 0;
}
