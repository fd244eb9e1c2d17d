#include "tools/settings/SettingsReport.h"

#include "tools/text/Numbers.h"
#include "tools/text/Table.h"

namespace qmv40::settings {

namespace {

std::string StoredText(const SettingReading& setting) {
    if (!setting.stored) return "";
    const std::optional<std::string> text = setting.stored->Text();
    return text ? '"' + *text + '"' : TypeText(setting.stored->value.type);
}

/// The stored text; for a value of another type, the type; null when nothing is stored.
text::Json StoredJson(const SettingReading& setting) {
    if (!setting.stored) return nullptr;
    const std::optional<std::string> text = setting.stored->Text();
    return text ? text::Json(*text) : text::Json{{"type", TypeText(setting.stored->value.type)}};
}

const char* Origin(const SettingReading& setting) {
    if (setting.isStoredValue) return "stored";
    return setting.stored ? "built in: what is stored is not read" : "built in";
}

} // namespace

std::string PlaceText(const MachineSettings& machine) {
    return machine.place + (machine.state == "there" ? "" : ": " + machine.state + ", so the built-in values count");
}

void PrintSettings(const SettingsReading& reading, const std::array<double, headSettingCount>& inForce,
                   const text::Console& console) {
    using enum text::Table::Align;
    text::Table table({{"dimension", Left},
                       {"in force", Right},
                       {"unit", Left},
                       {"built in", Right},
                       {"stored", Left},
                       {"origin", Left}});
    const auto settings = HeadSettings();
    for (std::size_t i = 0; i < headSettingCount; ++i) {
        table.AddRow({settings[i].name, text::ExactText(inForce[i]), settings[i].unit,
                      text::ExactText(settings[i].builtIn), StoredText(reading.settings[i]),
                      Origin(reading.settings[i])});
    }
    table.Print(console);
}

text::Json SettingsJson(const SettingsReading& reading, const std::array<double, headSettingCount>& inForce) {
    text::Json documents = text::Json::Array();
    const auto settings = HeadSettings();
    for (std::size_t i = 0; i < headSettingCount; ++i) {
        const SettingReading& setting = reading.settings[i];
        documents.PushBack({{"name", settings[i].name},
                            {"unit", settings[i].unit},
                            {"inForce", inForce[i]},
                            {"builtIn", settings[i].builtIn},
                            {"origin", setting.isStoredValue ? "stored" : "builtIn"},
                            {"stored", StoredJson(setting)}});
    }
    return documents;
}

} // namespace qmv40::settings
