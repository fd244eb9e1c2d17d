#include "cli/SettingsReport.h"

#include "cli/Numbers.h"
#include "cli/Table.h"

namespace {

std::string StoredText(const SettingReading& setting) {
    if (!setting.stored) return "";
    const std::optional<std::string> text = TextOf(*setting.stored);
    return text ? '"' + *text + '"' : TypeText(setting.stored->type);
}

/// The text, or for another kind of value what kind it is; null where nothing is stored.
Json StoredJson(const SettingReading& setting) {
    if (!setting.stored) return nullptr;
    const std::optional<std::string> text = TextOf(*setting.stored);
    return text ? Json(*text) : Json{{"type", TypeText(setting.stored->type)}};
}

const char* Origin(const SettingReading& setting) {
    if (setting.isStoredValue) return "stored";
    return setting.stored ? "built in: what is stored is not read" : "built in";
}

} // namespace

std::string PlaceText(const MachineSettings& machine) {
    return machine.place + (machine.state == "there" ? "" : ": " + machine.state + ", so the built-in values count");
}

void PrintSettings(const SettingsReading& reading, const std::array<double, settingCount>& inForce,
                   const Console& console) {
    using enum Table::Align;
    Table table({{"dimension", Left},
                 {"in force", Right},
                 {"unit", Left},
                 {"built in", Right},
                 {"stored", Left},
                 {"origin", Left}});
    const auto settings = AllHeadSettings();
    for (std::size_t i = 0; i < settingCount; ++i) {
        table.AddRow({settings[i].name, ExactText(inForce[i]), settings[i].unit, ExactText(settings[i].builtIn),
                      StoredText(reading.settings[i]), Origin(reading.settings[i])});
    }
    table.Print(console);
}

Json SettingsJson(const SettingsReading& reading, const std::array<double, settingCount>& inForce) {
    Json documents = Json::array();
    const auto settings = AllHeadSettings();
    for (std::size_t i = 0; i < settingCount; ++i) {
        const SettingReading& setting = reading.settings[i];
        documents.push_back({{"name", settings[i].name},
                             {"unit", settings[i].unit},
                             {"inForce", inForce[i]},
                             {"builtIn", settings[i].builtIn},
                             {"origin", setting.isStoredValue ? "stored" : "builtIn"},
                             {"stored", StoredJson(setting)}});
    }
    return documents;
}
