#include "tools/settings/SettingsReading.h"

#include "formats/AsciiText.h"
#include "tools/settings/SettingsFile.h"
#include "tools/text/LenientNumber.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace qmv40::settings {

namespace {

std::string Quoted(std::string_view text) { return '\'' + std::string(text) + '\''; }

std::string ComponentKey() { return std::string(machineRoot) + std::string(keyPath); }

bool IsBelow(std::string_view ancestor, std::string_view path) {
    return path.size() > ancestor.size() && path[ancestor.size()] == '\\' &&
           ascii::StartsWithIgnoringCase(path, ancestor);
}

/// Goes through a file as an import does and keeps the values that the component's key has in the end.
class KeyInFile {
public:
    void Take(const RegistryLine& line) {
        switch (line.kind) {
        case RegistryLine::Kind::Key:
            return TakeKey(line);
        case RegistryLine::Kind::RemovedKey:
            return TakeRemovedKey(line);
        case RegistryLine::Kind::Nonsense:
            return isInKey ? Refuse(line) : void();
        case RegistryLine::Kind::Value:
        case RegistryLine::Kind::RemovedValue:
            return isInKey ? TakeValue(line) : LookForStray(line);
        }
    }

    StoredSettings Result() && { return std::move(result); }

private:
    void TakeKey(const RegistryLine& line) {
        isInKey = ascii::EqualIgnoringCase(line.key, key);
        result.isKeyThere = result.isKeyThere || isInKey || IsBelow(key, line.key);
        otherKey = isInKey ? nullptr : &line;
    }

    void TakeRemovedKey(const RegistryLine& line) {
        isInKey = false;
        otherKey = nullptr;
        if (!ascii::EqualIgnoringCase(line.key, key) && !IsBelow(line.key, key)) return;
        result.values.clear();
        result.isKeyThere = false;
    }

    void TakeValue(const RegistryLine& line) {
        const auto isNamed = [&](const StoredValue& stored) {
            return ascii::EqualIgnoringCase(stored.name, line.name);
        };
        const auto before = std::ranges::find_if(result.values, isNamed);
        if (before != result.values.end()) {
            if (line.value) NoteRepetition(*before, line);
            result.values.erase(before);
        }
        if (line.value) result.values.push_back({line.name, *line.value, line.number});
    }

    void NoteRepetition(const StoredValue& before, const RegistryLine& line) {
        result.findings.push_back(
            FindingAbout({before.line, before.name}, "setting-repeated", Severity::Warning,
                         "is given again in line " + std::to_string(line.number) + ", which counts",
                         "Remove one of the two lines."));
    }

    void Refuse(const RegistryLine& line) {
        result.findings.push_back(FindingAbout({line.number, ""}, "line-ignored", Severity::Warning,
                                               Quoted(line.content) + " makes no sense here and is ignored",
                                               R"(Write values as "name"="number", the number in quotes too.)"));
    }

    /// Reports settings of the head under a key that the component does not read, once for each key.
    void LookForStray(const RegistryLine& line) {
        if (otherKey == nullptr || !line.value || !FindHeadSetting(line.name)) return;
        result.findings.push_back(
            FindingAbout({otherKey->number, ""}, "settings-elsewhere", Severity::Warning,
                         "[" + line.key + "] holds settings of the head, and the component does not look there",
                         "Put them under [" + key + "]."));
        otherKey = nullptr;
    }

    const std::string key = ComponentKey();
    bool isInKey = false;
    const RegistryLine* otherKey = nullptr; ///< the heading of another key; null when it needs no finding
    StoredSettings result;
};

/// Explains each setting as the component's reader has read it.
class Explanation {
public:
    explicit Explanation(SettingsReading& theReading) : reading(theReading) {}

    void Add(std::size_t index, const qmv40::SettingReading& read) {
        SettingReading& setting = reading.settings[index];
        setting.value = read.value;
        setting.isStoredValue = read.source == SettingSource::Stored;
        if (!setting.stored) return;
        const std::string problem = Problem(index, read.source);
        if (problem.empty()) return;
        const char* const name = setting.isStoredValue ? "setting-misread" : "setting-not-read";
        reading.findings.push_back(FindingAbout({setting.stored->line, HeadSettings()[index].name}, name,
                                                Severity::Fault, problem, EquallyLongRemedy(index)));
    }

private:
    std::string Problem(std::size_t index, SettingSource source) const {
        const StoredValue& stored = *reading.settings[index].stored;
        switch (source) {
        case SettingSource::Stored:
            return text::ReadLenientNumber(*stored.Text()).oddity;
        case SettingSource::TooLong:
            return TooLongText(index);
        case SettingSource::WrongType:
            return "is " + TypeText(stored.value.type) + ", and only texts are read: the built-in value counts";
        case SettingSource::NotTerminated:
            return "is a text without an end: the built-in value counts";
        case SettingSource::EarlierUnreadable:
            return BlockedText(index);
        case SettingSource::NoKey:
        case SettingSource::Missing:
            break;
        }
        return "";
    }

    static std::size_t FirstOfOffset(std::size_t index) {
        while (index > 0 && HeadSettings()[index - 1].offset == HeadSettings()[index].offset) --index;
        return index;
    }

    std::string BlockedText(std::size_t index) const {
        std::size_t blocker = FirstOfOffset(index);
        while (reading.settings[blocker].isStoredValue) ++blocker;
        const bool isMissing = !reading.settings[blocker].stored;
        return "is not read, because " + Quoted(HeadSettings()[blocker].name) + ", which comes before it, " +
               (isMissing ? "is missing" : "cannot be read") + ": the built-in value counts";
    }

    std::string TooLongText(std::size_t index) const {
        if (FirstOfOffset(index) == index) {
            return "is longer than 254 letters and is not read: the built-in value counts";
        }
        const auto textAt = [this](std::size_t at) { return reading.settings[at].stored->Text().value_or(""); };
        return "is not read, because " + Quoted(textAt(index)) + " is longer than " + Quoted(textAt(index - 1)) +
               ", the text before it: the built-in value counts";
    }

    /// The remedy for an offset: all its values as texts that are read completely.
    std::string EquallyLongRemedy(std::size_t index) const {
        const auto all = HeadSettings();
        std::vector<double> meant;
        for (std::size_t i = FirstOfOffset(index); i < all.size() && all[i].offset == all[index].offset; ++i) {
            meant.push_back(MeantValue(i));
        }
        const std::vector<std::string> texts = EquallyLongTexts(meant);
        if (texts.size() == 1) return "Store the text \"" + texts[0] + "\".";
        return "Set X, Y and Z of the offset to texts of one length: \"" + texts[0] + "\", \"" + texts[1] + "\", \"" +
               texts[2] + "\".";
    }

    /// The number that the stored value was probably meant to be; the built-in one when it cannot be told.
    double MeantValue(std::size_t index) const {
        const std::optional<StoredValue>& stored = reading.settings[index].stored;
        const std::optional<std::string> text = stored ? stored->Text() : std::nullopt;
        const double builtIn = HeadSettings()[index].builtIn;
        if (!text) return builtIn;
        std::string withPoint(*text);
        std::ranges::replace(withPoint, ',', '.');
        const text::LenientNumber number = text::ReadLenientNumber(withPoint);
        // No dimension of a head is larger than the first, or smaller than the second unless it is 0.
        constexpr double beyondAnyHead = 1e6;
        constexpr double belowAnyMeaning = 1e-9;
        const double size = std::abs(number.value);
        const bool isPlausible = size == 0.0 || (size < beyondAnyHead && size > belowAnyMeaning);
        return number.isNumber && isPlausible ? number.value : builtIn;
    }

    SettingsReading& reading;
};

Finding UnknownName(const StoredValue& value) {
    const std::optional<std::size_t> shortName = FindHeadSetting(value.name);
    return FindingAbout({value.line, value.name.empty() ? "(the key's default value)" : value.name}, "setting-unknown",
                        Severity::Warning, "is no setting of the head and is ignored",
                        shortName ? "Did you mean \"" + std::string(HeadSettings()[*shortName].name) + "\"?"
                                  : "Remove it, or give it the name of the setting that is meant.");
}

/// Answers the component's reader from stored values.
SettingQuery QueryOf(const SettingsReading& reading) {
    return [&reading](const char* name, std::span<char> buffer, DWORD& type, DWORD& length) -> LSTATUS {
        const std::optional<StoredValue>& stored = reading.settings[*FindHeadSetting(name)].stored;
        if (!stored) return ERROR_FILE_NOT_FOUND;
        const std::string& bytes = stored->value.bytes;
        type = static_cast<DWORD>(stored->value.type);
        length = static_cast<DWORD>(bytes.size());
        if (bytes.size() > buffer.size()) return ERROR_MORE_DATA;
        std::ranges::copy(bytes, buffer.begin());
        return ERROR_SUCCESS;
    };
}

} // namespace

std::optional<std::string> StoredValue::Text() const {
    if (value.type != RegistryType::Text && value.type != RegistryType::ExpandableText) return std::nullopt;
    return value.bytes.substr(0, value.bytes.find('\0'));
}

std::string TypeText(RegistryType type) {
    static constexpr std::pair<RegistryType, const char*> names[] = {
        {RegistryType::Text, "a text"},
        {RegistryType::ExpandableText, "a text (hex(2))"},
        {RegistryType::Number, "a number (dword)"},
        {RegistryType::Binary, "bytes (hex)"},
        {RegistryType::TextList, "a list of texts (hex(7))"}};
    for (const auto& [known, name] : names) {
        if (known == type) return name;
    }
    return "of type " + std::to_string(static_cast<std::uint32_t>(type));
}

StoredSettings SettingsInFile(const std::string& content) {
    const RegistryLines file = RegistryLinesIn(content);
    StoredSettings nothing;
    if (!file.hasFormat) {
        nothing.findings.push_back(FindingAbout({1, ""}, "format-missing", Severity::Fault,
                                                "The first line does not name the format: nothing of the file is read",
                                                "Let the file begin with: Windows Registry Editor Version 5.00"));
        return nothing;
    }
    KeyInFile key;
    for (const RegistryLine& line : file.lines) key.Take(line);
    StoredSettings settings = std::move(key).Result();
    if (!settings.isKeyThere) {
        settings.findings.push_back(FindingAbout({}, "key-missing", Severity::Fault,
                                                 "The file has no key [" + ComponentKey() + "]: nothing of it is read",
                                                 "Put the settings under a line with that key."));
    }
    return settings;
}

SettingsReading ReadSettings(StoredSettings stored) {
    SettingsReading reading;
    reading.findings = std::move(stored.findings);
    for (StoredValue& value : stored.values) {
        // The component does not know the short names.
        const std::optional<std::size_t> index = FindHeadSetting(value.name);
        const bool isName = index && ascii::EqualIgnoringCase(value.name, HeadSettings()[*index].name);
        if (isName) {
            reading.settings[*index].stored = std::move(value);
        } else {
            reading.findings.push_back(UnknownName(value));
        }
    }
    const auto readings = ReadHeadSettings(QueryOf(reading));
    Explanation explanation(reading);
    for (std::size_t i = 0; i < headSettingCount; ++i) explanation.Add(i, readings[i]);
    SortByLine(reading.findings);
    return reading;
}

} // namespace qmv40::settings
