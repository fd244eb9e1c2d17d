#include "formats/ProfileText.h"

#include "formats/AsciiText.h"

namespace qmv40 {

using namespace ascii;

namespace {

/// The lines below a section line, as indices into the text.
struct Section {
    std::size_t begin;
    std::size_t end;
};

/// The line of a key. The views refer to the text. Without a `=` the value is empty and begins at the end of the key.
struct Entry {
    std::string_view key;
    std::string_view value;
    bool hasValue;
};

std::string_view CutAtZero(std::string_view text) { return text.substr(0, text.find('\0')); }

/// The name between the brackets of a section line; nothing for any other line.
std::optional<std::string_view> SectionName(std::string_view line) {
    line = TrimmedLeft(line);
    const std::size_t close = line.rfind(']');
    if (close == std::string_view::npos || line.front() != '[') return std::nullopt;
    return CutAtZero(Trimmed(line.substr(1, close - 1)));
}

std::optional<Section> FindSection(std::string_view text, std::string_view name) {
    bool isFound = name.empty();
    Section section{0, text.size()};
    for (LineReader reader(text); !reader.IsAtEnd();) {
        const TextLine line = reader.Take();
        const std::optional<std::string_view> found = SectionName(line.content);
        if (!found) continue;
        if (isFound) {
            section.end = line.begin;
            return section;
        }
        isFound = EqualIgnoringCase(*found, name);
        if (isFound) section = {line.next, text.size()};
    }
    return isFound ? std::optional(section) : std::nullopt;
}

Entry EntryOf(std::string_view line) {
    const std::size_t equals = line.find('=');
    const bool hasValue = equals != std::string_view::npos;
    const std::string_view key = Trimmed(line.substr(0, equals));
    return {CutAtZero(key), hasValue ? CutAtZero(Trimmed(line.substr(equals + 1))) : key.substr(key.size()), hasValue};
}

std::optional<Entry> FindEntry(std::string_view text, const Section& section, std::string_view key) {
    for (LineReader reader(text.substr(0, section.end), section.begin); !reader.IsAtEnd();) {
        const TextLine line = reader.Take();
        const Entry entry = EntryOf(line.content);
        if (EqualIgnoringCase(entry.key, key) && !Trimmed(line.content).empty()) return entry;
    }
    return std::nullopt;
}

std::string_view PrevailingLineEnd(std::string_view text) {
    std::size_t pairs = 0;
    std::size_t lineFeeds = 0;
    std::size_t returns = 0;
    for (LineReader reader(text); !reader.IsAtEnd();) {
        const TextLine line = reader.Take();
        if (line.next - line.end == 2) ++pairs;
        if (line.next - line.end == 1) ++(text[line.end] == '\n' ? lineFeeds : returns);
    }
    if (pairs >= std::max(lineFeeds, returns)) return "\r\n";
    return lineFeeds >= returns ? "\n" : "\r";
}

/// The index at which a new line of the section is inserted: after its last line that is not blank.
std::size_t EndOfLines(std::string_view text, const Section& section) {
    std::size_t end = section.begin;
    for (LineReader reader(text.substr(0, section.end), section.begin); !reader.IsAtEnd();) {
        const TextLine line = reader.Take();
        if (!Trimmed(line.content).empty()) end = line.next;
    }
    return end;
}

bool EndsInsideLine(std::string_view text) { return !text.empty() && text.back() != '\n' && text.back() != '\r'; }

void ReplaceValue(std::string& text, const Entry& entry, std::string_view value) {
    const auto begin = static_cast<std::size_t>(entry.value.data() - text.data());
    text.replace(begin, entry.value.size(), value);
    if (!entry.hasValue) text.insert(begin, 1, '=');
}

void AddLine(std::string& text, std::size_t at, std::string_view content) {
    const std::string_view lineEnd = PrevailingLineEnd(text);
    std::string line(EndsInsideLine(std::string_view(text).substr(0, at)) ? lineEnd : "");
    line.append(content).append(lineEnd);
    text.insert(at, line);
}

ProfileLine::Kind KindOf(std::string_view line, bool hasValue) {
    line = Trimmed(line);
    if (line.empty()) return ProfileLine::Kind::Blank;
    if (SectionName(line)) return ProfileLine::Kind::Section;
    if (line.front() == ';') return ProfileLine::Kind::Comment;
    return hasValue ? ProfileLine::Kind::Entry : ProfileLine::Kind::NoValue;
}

/// Whether `earlier` has the same section name, or the same section and key, so that `line` is not used.
bool Hides(const ProfileLine& earlier, const ProfileLine& line) {
    const bool isSection = line.kind == ProfileLine::Kind::Section;
    if (isSection != (earlier.kind == ProfileLine::Kind::Section)) return false;
    return EqualIgnoringCase(earlier.section, line.section) && EqualIgnoringCase(earlier.key, line.key);
}

} // namespace

std::optional<std::string_view> FindProfileValue(std::string_view text, std::string_view section,
                                                 std::string_view key) {
    const std::optional<Section> found = FindSection(text, Trimmed(section));
    if (!found) return std::nullopt;
    const std::optional<Entry> entry = FindEntry(text, *found, Trimmed(key));
    if (!entry || !entry->hasValue) return std::nullopt;
    return entry->value;
}

void SetProfileValue(std::string& text, std::string_view section, std::string_view key, std::string_view value) {
    section = Trimmed(section);
    key = Trimmed(key);
    value = TrimmedLeft(value);
    std::optional<Section> found = FindSection(text, section);
    if (!found) {
        AddLine(text, text.size(), std::string{"["}.append(section).append("]"));
        found = Section{text.size(), text.size()};
    }
    if (const std::optional<Entry> entry = FindEntry(text, *found, key)) return ReplaceValue(text, *entry, value);
    AddLine(text, EndOfLines(text, *found), std::string(key).append("=").append(value));
}

std::vector<ProfileLine> ProfileLines(std::string_view text) {
    std::vector<ProfileLine> lines;
    std::string_view section;
    bool isSectionHidden = false;
    for (LineReader reader(text); !reader.IsAtEnd();) {
        const TextLine whole = reader.Take();
        const Entry entry = EntryOf(whole.content);
        ProfileLine line{KindOf(whole.content, entry.hasValue), reader.Number(), section, {}, {}, isSectionHidden};
        if (line.kind == ProfileLine::Kind::Section) line.section = *SectionName(whole.content);
        if (line.kind >= ProfileLine::Kind::Entry) {
            line.key = entry.key;
            line.value = entry.value;
        }
        if (line.kind >= ProfileLine::Kind::Section) {
            const bool isRepeated = std::ranges::any_of(lines, [&](const ProfileLine& e) { return Hides(e, line); });
            if (line.kind == ProfileLine::Kind::Section) {
                // A section line `[]` is never found: the empty name means the text before the first section.
                isSectionHidden = line.isHidden = isRepeated || line.section.empty();
                section = line.section;
            }
            line.isHidden = line.isHidden || isRepeated;
        }
        lines.push_back(line);
    }
    return lines;
}

} // namespace qmv40
