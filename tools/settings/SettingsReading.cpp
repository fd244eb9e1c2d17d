#include "tools/settings/SettingsReading.h"

#include "tools/text/LenientNumber.h"
#include "tools/settings/SettingsFile.h"
#include "tools/text/Text.h"

#include <algorithm>
#include <cmath>

namespace qmv40::settings {

namespace {

constexpr std::size_t firstRoom = 255; ///< bytes, a text's terminator included

std::string Quoted(std::string_view text) { return '\'' + std::string(text) + '\''; }

std::string ComponentKey() { return std::string(machineRoot) + std::string(settingsKeyPath); }

bool IsBelow(std::string_view ancestor, std::string_view path) {
    return path.size() > ancestor.size() && path[ancestor.size()] == '\\' &&
           text::SameName(path.substr(0, ancestor.size()), ancestor);
}

/// Goes through a file as an import does and keeps what stands under the component's key in the end.
class KeyInFile {
public:
    void Take(const RegistryFileKey& key) {
        const std::string ours = ComponentKey();
        const bool isOurs = text::SameName(key.path, ours);
        if (key.isRemoval) {
            if (!isOurs && !IsBelow(key.path, ours)) return;
            result.values.clear();
            result.isKeyThere = false;
        } else if (isOurs) {
            result.isKeyThere = true;
            for (const RegistryLine& line : key.lines) Take(line);
        } else {
            result.isKeyThere = result.isKeyThere || IsBelow(ours, key.path);
            LookForStrays(key);
        }
    }

    StoredSettings Result() && { return std::move(result); }

private:
    void Take(const RegistryLine& line) {
        if (line.kind == RegistryLine::Kind::Nonsense) return Refuse(line);
        const auto isNamed = [&](const StoredValue& value) { return text::SameName(value.name, line.value.name); };
        const auto before = std::ranges::find_if(result.values, isNamed);
        if (line.kind == RegistryLine::Kind::Value && before != result.values.end()) {
            result.complaints.push_back({before->line, before->name,
                                         "is given again in line " + std::to_string(line.line) + ", which counts",
                                         "Remove one of the two lines."});
        }
        if (before != result.values.end()) result.values.erase(before);
        if (line.kind == RegistryLine::Kind::Value) result.values.push_back(line.value);
    }

    void Refuse(const RegistryLine& line) {
        result.complaints.push_back({line.line, "", Quoted(line.text) + " makes no sense here and is passed over",
                                     R"(Write values as "name"="number", the number in quotes too.)"});
    }

    /// The head's settings where the component does not look.
    void LookForStrays(const RegistryFileKey& key) {
        const auto isSetting = [](const RegistryLine& line) {
            return line.kind == RegistryLine::Kind::Value && FindHeadSetting(line.value.name).has_value();
        };
        const auto stray = std::ranges::find_if(key.lines, isSetting);
        if (stray == key.lines.end()) return;
        result.complaints.push_back(
            {key.line, "", "[" + key.path + "] holds settings of the head, and the component does not look there",
             "Put them under [" + ComponentKey() + "]."});
    }

    StoredSettings result;
};

/// Reads the settings of one offset after the other and notes what is odd about each.
class RuleReader {
public:
    explicit RuleReader(SettingsReading& theReading) : reading(theReading) {}

    void Read(std::size_t index) {
        const HeadSetting& setting = AllHeadSettings()[index];
        if (index == 0 || AllHeadSettings()[index - 1].offset != setting.offset) StartOffset();
        SettingReading& read = reading.settings[index];
        read.value = setting.builtIn;
        const std::size_t roomNow = room;
        room = 0;
        if (!read.stored) return Fail(index, "");
        const StoredValue& stored = *read.stored;
        if (stored.bytes.size() > roomNow) return Fail(index, blocker ? BlockedText() : TooLongText(stored));
        if (!TextOf(stored)) {
            return Fail(index, "is " + TypeText(stored.type) + ", and only texts are read: the built-in value counts");
        }
        const bool isEmpty = stored.bytes.empty();
        if (!isEmpty && stored.bytes.find('\0') == std::string::npos) {
            return Fail(index, "is a text without an end: the built-in value counts");
        }
        room = stored.bytes.size();
        before = index;
        const text::LooseNumber number = text::ReadLooseNumber(*TextOf(stored));
        read.value = number.value;
        read.isStoredValue = true;
        if (!number.oddity.empty()) Note(index, number.oddity, EquallyLongRemedy(index));
    }

private:
    void StartOffset() {
        room = firstRoom;
        blocker.reset();
        before.reset();
    }

    void Fail(std::size_t index, const std::string& problem) {
        if (!problem.empty()) Note(index, problem, EquallyLongRemedy(index));
        if (!blocker) blocker = index;
    }

    std::string BlockedText() const {
        const bool isMissing = !reading.settings[*blocker].stored;
        return "is not read, because " + Quoted(AllHeadSettings()[*blocker].name) + ", which comes before it, " +
               (isMissing ? "is missing" : "cannot be read") + ": the built-in value counts";
    }

    std::string TooLongText(const StoredValue& stored) const {
        const std::string text = TextOf(stored).value_or("");
        if (!before) return "is longer than 254 letters and is not read: the built-in value counts";
        return "is not read, because " + Quoted(text) + " is longer than " +
               Quoted(TextOf(*reading.settings[*before].stored).value_or("")) +
               ", the text before it: the built-in value counts";
    }

    /// The whole offset as it is meant, in texts that are all read.
    std::string EquallyLongRemedy(std::size_t index) const {
        const auto all = AllHeadSettings();
        std::vector<double> meant;
        std::size_t first = index;
        while (first > 0 && all[first - 1].offset == all[index].offset) --first;
        for (std::size_t i = first; i < all.size() && all[i].offset == all[index].offset; ++i) {
            meant.push_back(MeantValue(i));
        }
        const std::vector<std::string> texts = EquallyLongTexts(meant);
        if (texts.size() == 1) return "Store the text \"" + texts[0] + "\".";
        return "Set X, Y and Z of the offset to texts of one length: \"" + texts[0] + "\", \"" + texts[1] + "\", \"" +
               texts[2] + "\".";
    }

    /// The number that whoever stored the value had in mind; the built-in one where that cannot be told.
    double MeantValue(std::size_t index) const {
        const std::optional<StoredValue>& stored = reading.settings[index].stored;
        const std::optional<std::string> text = stored ? TextOf(*stored) : std::nullopt;
        const double builtIn = AllHeadSettings()[index].builtIn;
        if (!text) return builtIn;
        std::string withPoint(*text);
        std::ranges::replace(withPoint, ',', '.');
        const text::LooseNumber number = text::ReadLooseNumber(withPoint);
        // No dimension of a head is that large, or that small.
        constexpr double beyondAnyHead = 1e6;
        constexpr double belowAnyMeaning = 1e-9;
        const double size = std::abs(number.value);
        const bool isPlausible = size == 0.0 || (size < beyondAnyHead && size > belowAnyMeaning);
        return number.isNumber && isPlausible ? number.value : builtIn;
    }

    void Note(std::size_t index, std::string problem, std::string remedy) {
        reading.complaints.push_back({reading.settings[index].stored->line, AllHeadSettings()[index].name,
                                      std::move(problem), std::move(remedy)});
    }

    SettingsReading& reading;
    std::size_t room = 0;
    std::optional<std::size_t> blocker; ///< the first of the offset that could not be read
    std::optional<std::size_t> before;  ///< the last of the offset that was
};

Complaint UnknownName(const StoredValue& value) {
    const std::string nearest = NearestSettingName(value.name);
    const std::optional<std::size_t> known = FindHeadSetting(nearest);
    const std::string name = value.name.empty() ? "(the key's default value)" : value.name;
    return {value.line, name, "is no setting of the head and is ignored",
            known ? "Did you mean \"" + std::string(AllHeadSettings()[*known].name) + "\"?"
                  : "Remove it, or give it the name of the setting that is meant."};
}

} // namespace

StoredSettings SettingsInFile(std::string_view content) {
    const RegistryFile file = ParseRegistryFile(content);
    StoredSettings nothing;
    if (!file.hasFormat) {
        nothing.complaints.push_back({1, "", "The first line does not name the format: nothing of the file is read",
                                      "Let the file begin with: Windows Registry Editor Version 5.00"});
        return nothing;
    }
    KeyInFile key;
    for (const RegistryFileKey& each : file.keys) key.Take(each);
    StoredSettings settings = std::move(key).Result();
    if (!settings.isKeyThere) {
        settings.complaints.push_back({{},
                                       "",
                                       "The file has no key [" + ComponentKey() + "]: nothing of it is read",
                                       "Put the settings under a line with that key."});
    }
    return settings;
}

SettingsReading ReadSettings(StoredSettings stored) {
    SettingsReading reading;
    reading.complaints = std::move(stored.complaints);
    for (StoredValue& value : stored.values) {
        // Short names are the tool's own.
        const std::optional<std::size_t> index = FindHeadSetting(value.name);
        const bool isName = index && text::SameName(value.name, AllHeadSettings()[*index].name);
        if (isName) {
            reading.settings[*index].stored = std::move(value);
        } else {
            reading.complaints.push_back(UnknownName(value));
        }
    }
    RuleReader reader(reading);
    for (std::size_t i = 0; i < settingCount; ++i) reader.Read(i);
    std::ranges::stable_sort(reading.complaints, {}, [](const Complaint& each) { return each.line.value_or(0); });
    return reading;
}

} // namespace qmv40::settings
