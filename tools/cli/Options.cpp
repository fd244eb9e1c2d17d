#include "tools/cli/Options.h"

#include "formats/AsciiText.h"
#include "tools/check/HeadFile.h"
#include "tools/component/Calculator.h"
#include "tools/plans/HeadAnglesText.h"
#include "tools/settings/MachineSettings.h"
#include "tools/settings/SettingsReading.h"
#include "tools/text/Failures.h"
#include "tools/text/Numbers.h"

#include <string_view>

namespace qmv40::cli {

namespace {

/// Reads head angles and passes them to `take`. Returns what is wrong with the text.
template <typename Take> std::string ReadAngles(const std::string& value, Take&& take) {
    const auto angles = plans::ParseHeadAngles(value);
    if (!angles) return "'" + value + "' is not two angles in degrees such as 45,-90";
    take(*angles);
    return "";
}

template <typename Angles> Option AddFrom(Command& command, Angles& from, const char* name = "--from") {
    return command.AddValue(name, "A,B", "The position of the head, degrees: A 0 to 90, B -180 to 180, in steps of 15",
                            [&from](const std::string& value) {
                                return ReadAngles(value, [&](const model::HeadAngles& angles) { from = angles; });
                            });
}

std::optional<model::Vector3> ParsePoint(const std::string& text) {
    const std::size_t comma = text.find(',');
    if (comma == std::string::npos) return std::nullopt;
    const text::ParsedNumber x = text::ParseNumber(ascii::Trimmed(std::string_view(text).substr(0, comma)));
    const auto rest = text::ParseNumberPair(text.substr(comma + 1));
    if (x.problem != nullptr || !rest) return std::nullopt;
    return model::Vector3{x.value, rest->first, rest->second};
}

template <typename Point> Option AddPoint(Command& command, const char* name, const char* description, Point& point) {
    return command.AddValue(name, "X,Y,Z", description, [&point](const std::string& value) -> std::string {
        const auto parsed = ParsePoint(value);
        if (!parsed) return "'" + value + "' is not three numbers such as 0,0,-180";
        point = *parsed;
        return "";
    });
}

template <typename Length> Option AddPositiveLength(Command& command, const char* name, const char* unit,
                                                    const char* description, Length& length) {
    return command.AddValue(name, unit, description, [&length](const std::string& value) -> std::string {
        const text::ParsedNumber number = text::ParseNumber(value);
        if (number.problem != nullptr || !(number.value > 0.0)) return "'" + value + "' is not a length above 0";
        length = number.value;
        return "";
    });
}

} // namespace

void AddJsonOption(Command& command, bool& json) {
    command.AddFlag("--json", json, "Print one JSON document instead of text");
}

void AddCommonOptions(Command& command, CommonOptions& options) {
    AddJsonOption(command, options.json);
    command.AddText("--settings", options.settings, "FILE",
                    "Take the head's fixed dimensions from this settings file, in the registry export format");
}

void AddGeometryOption(Command& command, GeometryOption& option) {
    command.AddText("--geometry", option.file, "FILE", "Head geometry file, as `qmv40 geometry --output` writes it")
        .Require();
    command.AddFlag("--force", option.force,
                    "Use the geometry file even with a doubtful entry, as the component reads it");
}

void AddFromOption(Command& command, model::HeadAngles& from) { AddFrom(command, from).Require(); }

void AddFromOption(Command& command, std::optional<model::HeadAngles>& from) { AddFrom(command, from); }

void AddAtOption(Command& command, model::HeadAngles& at) { AddFrom(command, at, "--at").Require(); }

void AddPointOption(Command& command, const char* name, const char* description, model::Vector3& point) {
    AddPoint(command, name, description, point).Require();
}

void AddTipOption(Command& command, model::Vector3& tip) {
    AddPointOption(command, "--tip", "The stylus tip from the head centre, at A 0, B 0: 0,0,-180 is a plain stylus",
                   tip);
}

Option AddPointOption(Command& command, const char* name, const char* description,
                      std::optional<model::Vector3>& point) {
    return AddPoint(command, name, description, point);
}

Option AddPositiveLengthOption(Command& command, const char* name, const char* unit, const char* description,
                               double& length) {
    return AddPositiveLength(command, name, unit, description, length);
}

Option AddPositiveLengthOption(Command& command, const char* name, const char* unit, const char* description,
                               std::optional<double>& length) {
    return AddPositiveLength(command, name, unit, description, length);
}

Option AddToOption(Command& command, std::vector<model::HeadAngles>& targets) {
    return command.AddValues(
        "--to", "A,B",
        "The target, rounded to whole degrees. Given several times: a tour, in which each plan starts where the one "
        "before ended",
        [&targets](const std::string& value) {
            return ReadAngles(value, [&](const model::HeadAngles& angles) { targets.push_back(angles); });
        });
}

settings::GeometryFile ReadGeometryFile(const GeometryOption& option, const text::Console& console) {
    settings::GeometryFile file(option.file);
    try {
        file.RequireNumbers();
    } catch (const text::DoubtfulInput& doubtful) {
        if (!option.force) throw;
        for (const text::InputError& problem : doubtful.problems)
            console.err << "warning: " << text::MessageOf(problem) << '\n';
        // The load fails when an entry is missing; the component's own message is then shown.
        if (file.LacksEntry()) component::Calculator().LoadHeadGeometry(option.file);
    }
    return file;
}

model::HeadModel ReadHead(const GeometryOption& option, const text::Console& console) {
    return check::HeadModelOf(ReadGeometryFile(option, console).Numbers());
}

SettingsInUse::SettingsInUse(const CommonOptions& options, const text::Console& console) : override(options.settings) {
    const settings::MachineSettings machine = settings::ReadMachineSettings();
    if (machine.state == "missing") return; // the built-in values are then in force
    const settings::SettingsReading reading = settings::ReadSettings(machine.stored);
    if (reading.findings.empty()) return;
    console.err << "warning: not all settings in " << machine.place << " are read as they look:\n";
    text::PrintFindings(reading.findings, console.err);
}

} // namespace qmv40::cli
