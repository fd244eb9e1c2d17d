#include "tools/settings/GeometryFile.h"

#include "formats/AsciiText.h"
#include "formats/EncodedText.h"
#include "formats/ProfileText.h"
#include "formats/Unicode.h"
#include "tools/component/ComponentError.h"
#include "tools/text/Failures.h"
#include "tools/text/Files.h"
#include "tools/text/LenientNumber.h"
#include "tools/text/Numbers.h"
#include "tools/text/Text.h"
#include "tools/text/WideText.h"

#include <algorithm>
#include <cmath>

namespace qmv40::settings {

namespace {

constexpr const char* computeAfresh = "Compute the geometry afresh with `qmv40 geometry`, or correct the file.";

std::string ProblemOf(const std::optional<std::string>& text, const text::LenientNumber& number) {
    if (!text) return "is missing";
    if (number.value == missingNumber) return std::string("is ") + missingNumberText + ", which counts as missing";
    return number.oddity;
}

GeometryFileEntry ReadEntry(const ProfileReader& file, const HeadGeometryEntry& entry) {
    const std::optional<std::string> text = ReadHeadGeometryText(file, entry);
    const text::LenientNumber number = text::ReadLenientNumber(text.value_or(""));
    return {text::ToUtf8(entry.section), text::ToUtf8(entry.key), text, number.value, ProblemOf(text, number)};
}

bool IsLineOf(const ProfileLine& line, const GeometryFileEntry& entry) {
    return ascii::EqualIgnoringCase(line.section, entry.section) && ascii::EqualIgnoringCase(line.key, entry.key);
}

bool IsGeometrySection(std::string_view name) {
    return std::ranges::any_of(headGeometryEntries, [&](const HeadGeometryEntry& entry) {
        return ascii::EqualIgnoringCase(text::ToUtf8(entry.section), name);
    });
}

/// The lines of a geometry file: which of them hold the entries, and which are not used.
class GeometryFileLines {
public:
    GeometryFileLines(const std::string& fileName, const std::vector<GeometryFileEntry>& theEntries)
        : entries(theEntries), content(text::ReadWholeFile(fileName)), decoded(content),
          lines(ProfileLines(decoded.text)) {}

    bool HasUtf8Mark() const { return content.starts_with("\xEF\xBB\xBF"); }

    /// The number of the line in which the entry is looked for; empty when there is none.
    std::optional<std::size_t> LineOf(const GeometryFileEntry& entry) const {
        const auto isUsed = [&](const ProfileLine& line) { return !line.isHidden && IsLineOf(line, entry); };
        const auto found = std::ranges::find_if(lines, isUsed);
        return found == lines.end() ? std::nullopt : std::optional(found->number);
    }

    /// The lines that are not used. Of a section that is not used, only its section line.
    std::vector<std::string> Ignored() const {
        std::vector<std::string> ignored;
        bool isSectionUsed = true;
        for (const ProfileLine& line : lines) {
            const bool isSection = line.kind == ProfileLine::Kind::Section;
            if (isSection) isSectionUsed = !line.isHidden && IsGeometrySection(line.section);
            const bool isEntry = line.kind > ProfileLine::Kind::Section && isSectionUsed;
            const std::string what = isSection ? WhyUnusedSection(line) : isEntry ? WhyUnusedEntry(line) : "";
            if (!what.empty()) ignored.push_back("line " + std::to_string(line.number) + ": " + what);
        }
        return ignored;
    }

private:
    static std::string WhyUnusedSection(const ProfileLine& line) {
        const std::string name = "[" + std::string(line.section) + "]";
        if (!IsGeometrySection(line.section)) return "section " + name;
        return line.isHidden ? "a second " + name : "";
    }

    std::string WhyUnusedEntry(const ProfileLine& line) const {
        const auto entry = std::ranges::find_if(entries, [&](const auto& each) { return IsLineOf(line, each); });
        if (entry != entries.end()) return line.isHidden ? "a second " + entry->Name() : "";
        const std::string section(line.section);
        return "'" + std::string(line.key) + "'" + (section.empty() ? "" : " in [" + section + "]");
    }

    const std::vector<GeometryFileEntry>& entries;
    std::string content;
    EncodedText decoded;
    std::vector<ProfileLine> lines;
};

/// The component never uses the saved safe height, so a different one in the file is reported.
std::optional<std::string> UnusedSafeHeight(const std::vector<GeometryFileEntry>& entries) {
    constexpr double safeHeight = 35.0;
    constexpr double roundingOfTheFile = 1e-6;
    const GeometryFileEntry& saved = entries[safePositionEntry + 2];
    const double used = entries[headCentreEntry + 2].value + safeHeight;
    if (!saved.text || std::abs(saved.value - used) <= roundingOfTheFile * std::max(1.0, std::abs(used))) return {};
    return saved.Name() + " " + text::ExactText(saved.value) +
           ": the safe height is always the head centre's Z + 35, " + text::ExactText(used);
}

void Load(const std::string& fileName, component::Calculator& calculator, GeometryFileState& state) {
    try {
        calculator.LoadHeadGeometry(fileName);
        state.state = "loaded";
    } catch (const component::ComponentError& error) {
        state.state = "refused by the component";
        state.findings.push_back(FindingAbout({}, "geometry-refused", Severity::Fault,
                                              "The component refuses the file: " + component::CodeText(error.code) +
                                                  " from " + error.source + ", " + error.description,
                                              computeAfresh));
    }
}

} // namespace

GeometryFile::GeometryFile(const std::string& fileName) : name(fileName) {
    const std::filesystem::path path = text::PathOf(fileName);
    text::RequireFile(fileName);
    // The profile functions of Windows look for a relative name in the Windows folder.
    const ProfileReader reader(text::FileNameForComponent(std::filesystem::absolute(path)).c_str());
    for (const HeadGeometryEntry& entry : headGeometryEntries) entries.push_back(ReadEntry(reader, entry));
}

bool GeometryFile::LacksEntry() const {
    return std::ranges::any_of(
        entries, [](const GeometryFileEntry& entry) { return !entry.text || entry.value == missingNumber; });
}

std::array<double, headGeometryEntries.size()> GeometryFile::Numbers() const {
    std::array<double, headGeometryEntries.size()> numbers{};
    std::ranges::transform(entries, numbers.begin(), &GeometryFileEntry::value);
    return numbers;
}

void GeometryFile::RequireNumbers() const {
    const auto isRight = [](const GeometryFileEntry& entry) { return entry.problem.empty(); };
    if (std::ranges::all_of(entries, isRight)) return;
    const GeometryFileLines lines(name, entries);
    text::DoubtfulInput doubtful{{}, std::string(computeAfresh) + " --force goes on with what the component reads."};
    for (const GeometryFileEntry& entry : entries) {
        if (entry.problem.empty()) continue;
        doubtful.problems.push_back({name, lines.LineOf(entry), entry.Name() + " " + entry.problem});
    }
    throw doubtful;
}

text::FileKind GeometryFileKind() {
    return {"a head geometry file", [](std::string_view content) {
                const EncodedText decoded(content);
                bool hasSection = false;
                for (const ProfileLine& line : ProfileLines(decoded.text)) {
                    if (line.kind == ProfileLine::Kind::NoValue) return false;
                    hasSection =
                        hasSection || (line.kind == ProfileLine::Kind::Section && IsGeometrySection(line.section));
                }
                return hasSection;
            }};
}

GeometryFileState ExamineGeometryFile(const std::string& fileName, component::Calculator* calculator) {
    GeometryFileState state{"unreadable", {}, {}, {}};
    try {
        const GeometryFile file(fileName);
        const GeometryFileLines lines(fileName, file.Entries());
        state = {"looked at", file.Entries(), lines.Ignored(), {}};
        if (lines.HasUtf8Mark()) {
            state.findings.push_back(
                FindingAbout({1, ""}, "byte-order-mark", Severity::Fault,
                             "The file begins with a UTF-8 byte-order mark: Windows does not find a section in the "
                             "first line then",
                             "Save the file as UTF-8 without a byte-order mark, or as ANSI text."));
        }
        for (const GeometryFileEntry& entry : state.entries) {
            if (entry.problem.empty()) continue;
            state.findings.push_back(FindingAbout({lines.LineOf(entry), entry.Name()}, "entry-doubtful",
                                                  Severity::Fault, entry.problem, computeAfresh));
        }
        if (const auto unused = UnusedSafeHeight(state.entries)) state.ignored.push_back(*unused);
        if (calculator != nullptr) Load(fileName, *calculator, state);
    } catch (const text::InputError& error) {
        std::error_code ignored;
        if (!std::filesystem::exists(text::PathOf(fileName), ignored)) state.state = "missing";
        state.findings.push_back(FindingAbout({}, "geometry-file-unreadable", Severity::Fault,
                                              fileName + ": " + error.reason,
                                              "Name the file that `qmv40 geometry --output` wrote."));
    }
    return state;
}

} // namespace qmv40::settings
