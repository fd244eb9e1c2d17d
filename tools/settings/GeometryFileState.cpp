#include "tools/settings/GeometryFileState.h"

#include "platform/ProfileFile.h"
#include "tools/component/ComponentError.h"
#include "tools/text/Failures.h"
#include "tools/text/Files.h"
#include "tools/text/LenientNumber.h"
#include "tools/text/Numbers.h"
#include "tools/text/Text.h"
#include "tools/text/WideText.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace qmv40::settings {

namespace {

constexpr const char* computeAfresh = "Compute the geometry afresh with `qmv40 geometry`, or correct the file.";

struct Entry {
    const char* section;
    const char* key;
};
constexpr std::array<Entry, 7> entries{{{"HEADCENTRE", "X"},
                                        {"HEADCENTRE", "Y"},
                                        {"HEADCENTRE", "Z"},
                                        {"SAFEPOSITION", "X"},
                                        {"SAFEPOSITION", "Y"},
                                        {"SAFEPOSITION", "Z"},
                                        {"AlignmentOffset", "RequiredRotationAroundZ"}}};
constexpr std::size_t headCentreZ = 2;
constexpr std::size_t safePositionZ = 5;

std::wstring Wide(const char* ascii) {
    const std::string_view text(ascii);
    return {text.begin(), text.end()};
}

/// The text as the component gets it.
std::optional<std::string> StoredText(const Entry& entry, const std::wstring& fileName) {
    constexpr const char* nothing = "(nothing)"; // no number that anybody would store
    std::array<char, 349> buffer{};
    qmv40::ProfileReader(fileName.c_str()).Read(Wide(entry.section).c_str(), Wide(entry.key).c_str(), nothing, buffer);
    const std::string text(buffer.data());
    return text == nothing ? std::nullopt : std::optional(text);
}

std::string NameOf(const Entry& entry) { return std::string("[") + entry.section + "] " + entry.key; }

/// Finds the lines of the file that count and those that do not.
class LineScan {
public:
    explicit LineScan(std::string_view content) {
        const std::string text = text::DecodedText(content);
        std::string_view rest(text);
        while (!rest.empty()) {
            const std::size_t end = std::min(rest.find_first_of("\r\n"), rest.size());
            ++number;
            Take(text::Trimmed(rest.substr(0, end)));
            rest.remove_prefix(std::min(end + (rest.substr(end).starts_with("\r\n") ? 2 : 1), rest.size()));
        }
    }

    std::optional<std::size_t> LineOf(std::size_t entry) const { return lines[entry]; }
    const std::vector<std::string>& Ignored() const { return ignored; }

private:
    void Take(std::string_view line) {
        if (line.empty() || line.front() == ';') return;
        const std::size_t close = line.rfind(']');
        if (line.front() == '[' && close != std::string_view::npos) {
            TakeSection(text::Trimmed(line.substr(1, close - 1)));
        } else {
            TakeKey(line);
        }
    }

    void TakeSection(std::string_view name) {
        const auto isSame = [&](const std::string& other) { return text::SameName(other, name); };
        isRepeated = std::ranges::any_of(sections, isSame);
        const bool isKnown =
            std::ranges::any_of(entries, [&](const Entry& entry) { return text::SameName(entry.section, name); });
        section = name;
        sections.push_back(section);
        if (isRepeated) Ignore("a second [" + section + "]");
        if (!isKnown) Ignore("section [" + section + "]");
        isIgnored = isRepeated || !isKnown;
    }

    void TakeKey(std::string_view line) {
        if (isIgnored) return;
        const std::string key(text::Trimmed(line.substr(0, line.find('='))));
        const auto isMeant = [&](const Entry& entry) {
            return text::SameName(entry.section, section) && text::SameName(entry.key, key);
        };
        const auto* const entry = std::ranges::find_if(entries, isMeant);
        if (entry == entries.end()) return Ignore("'" + key + "'" + (section.empty() ? "" : " in [" + section + "]"));
        std::optional<std::size_t>& place = lines[static_cast<std::size_t>(entry - entries.begin())];
        if (place) return Ignore("a second " + NameOf(*entry));
        place = number;
    }

    void Ignore(const std::string& what) { ignored.push_back("line " + std::to_string(number) + ": " + what); }

    std::size_t number = 0;
    std::string section;
    std::vector<std::string> sections;
    bool isRepeated = false;
    bool isIgnored = false;
    std::array<std::optional<std::size_t>, entries.size()> lines;
    std::vector<std::string> ignored;
};

void ExamineValue(const Entry& entry, std::optional<std::size_t> line, GeometryFileState& state,
                  const std::wstring& fileName) {
    constexpr double missingMark = 999999999.0;
    GeometryFileValue value{entry.section, entry.key, StoredText(entry, fileName), 0.0};
    if (!value.text) {
        state.complaints.push_back({{}, NameOf(entry), "is missing", computeAfresh});
    } else {
        const text::LooseNumber number = text::ReadLooseNumber(*value.text);
        value.value = number.value;
        if (!number.oddity.empty()) state.complaints.push_back({line, NameOf(entry), number.oddity, computeAfresh});
        if (number.value == missingMark) {
            state.complaints.push_back({line, NameOf(entry), "is 999999999, which counts as missing", computeAfresh});
        }
    }
    state.values.push_back(std::move(value));
}

/// The saved safe height is never used; worth a word where somebody wrote another one there.
void NoteSafeHeight(GeometryFileState& state) {
    constexpr double safeHeight = 35.0;
    constexpr double roundingOfTheFile = 1e-6;
    const double saved = state.values[safePositionZ].value;
    const double used = state.values[headCentreZ].value + safeHeight;
    if (!state.values[safePositionZ].text ||
        std::abs(saved - used) <= roundingOfTheFile * std::max(1.0, std::abs(used)))
        return;
    state.ignored.push_back("[SAFEPOSITION] Z " + text::ExactText(saved) +
                            ": the safe height is always the head centre's Z + 35, " + text::ExactText(used));
}

void Load(const std::string& fileName, component::Calculator& calculator, GeometryFileState& state) {
    try {
        calculator.LoadHeadGeometry(fileName);
        state.state = "loaded";
    } catch (const component::ComponentError& error) {
        state.state = "refused by the component";
        state.complaints.push_back({{},
                                    "",
                                    "The component refuses the file: " + component::CodeText(error.code) + " from " +
                                        error.source + ", " + error.description,
                                    computeAfresh});
    }
}

} // namespace

GeometryFileState ExamineGeometryFile(const std::string& fileName, component::Calculator* calculator) {
    GeometryFileState state{"unreadable", {}, {}, {}};
    try {
        const std::string content = text::ReadWholeFile(fileName);
        const std::wstring name = text::FileNameForComponent(std::filesystem::absolute(text::PathOf(fileName)));
        const LineScan scan(content);
        state.state = "looked at";
        state.ignored = scan.Ignored();
        for (std::size_t i = 0; i < entries.size(); ++i) ExamineValue(entries[i], scan.LineOf(i), state, name);
        NoteSafeHeight(state);
        if (calculator != nullptr) Load(fileName, *calculator, state);
    } catch (const text::InputError& error) {
        std::error_code ignored;
        if (!std::filesystem::exists(text::PathOf(fileName), ignored)) state.state = "missing";
        state.complaints.push_back(
            {{}, "", fileName + ": " + error.reason, "Name the file that `qmv40 geometry --output` wrote."});
    }
    return state;
}

} // namespace qmv40::settings
