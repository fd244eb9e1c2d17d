#include "tools/cli/Options.h"

#include "formats/AsciiText.h"
#include "tools/check/HeadFile.h"
#include "tools/component/Calculator.h"
#include "tools/settings/MachineSettings.h"
#include "tools/settings/SettingsReading.h"
#include "tools/text/Failures.h"
#include "tools/text/Numbers.h"

#include <string_view>

namespace qmv40::cli {

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

void AddTipOption(Command& command, model::Vector3& tip) {
    AddPointOption(command, "--tip", "The stylus tip from the head centre, at A 0, B 0: 0,0,-180 is a plain stylus",
                   tip)
        .Require();
}

Option AddToOption(Command& command, std::vector<model::HeadAngles>& targets) {
    return command.AddValues(
        "--to", "A,B",
        "The target, rounded to whole degrees. Given several times: a tour, in which each plan starts where the one "
        "before ended",
        [&targets](const std::string& value) -> std::string {
            const auto angles = plans::ParseHeadAngles(value);
            if (!angles) return "'" + value + "' " + plans::notTwoAngles;
            targets.push_back(*angles);
            return "";
        });
}

void AddUnits(Command& command, text::LengthUnit& unit, const char* description) {
    command.AddValue("--units", "mm|in", description, [&unit](const std::string& value) -> std::string {
        unit = value == "in" ? text::LengthUnit::Inch : text::LengthUnit::Millimetre;
        return value == "in" || value == "mm" ? "" : "'" + value + "' is neither mm nor in";
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

std::string ReadNumber(const std::string& text, double least, double& number) {
    const text::ParsedNumber parsed = text::ParseNumber(text);
    if (parsed.problem != nullptr) return "'" + text + "' " + parsed.problem;
    if (parsed.value < least) return "'" + text + "' is less than " + text::ExactText(least);
    number = parsed.value;
    return "";
}

std::optional<double> ParsePositiveLength(const std::string& text) {
    const text::ParsedNumber number = text::ParseNumber(text);
    return number.problem == nullptr && number.value > 0.0 ? std::optional(number.value) : std::nullopt;
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
