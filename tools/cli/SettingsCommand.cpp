#include "formats/AsciiText.h"
#include "tools/cli/Commands.h"
#include "tools/cli/Options.h"
#include "tools/settings/MachineSettings.h"
#include "tools/settings/SettingsFile.h"
#include "tools/settings/SettingsOverride.h"
#include "tools/settings/SettingsReport.h"
#include "tools/text/Failures.h"
#include "tools/text/Files.h"
#include "tools/text/Numbers.h"

#include <cmath>

namespace qmv40::cli {

namespace {

struct ValidateOptions {
    std::string file;
    bool json = false;
};

struct WriteOptions {
    std::vector<std::string> assignments;
    std::string base;   ///< empty: the built-in dimensions
    std::string output; ///< empty: standard output
    bool json = false;
};

using ChosenValues = std::array<std::optional<double>, headSettingCount>;

std::array<double, headSettingCount> ValuesOf(const settings::SettingsReading& reading) {
    std::array<double, headSettingCount> values{};
    for (std::size_t i = 0; i < headSettingCount; ++i) values[i] = reading.settings[i].value;
    return values;
}

void Show(const CommonOptions& options, const text::Console& console) {
    const settings::SettingsOverride settings(options.settings);
    const settings::MachineSettings machine = settings::ReadMachineSettings();
    const settings::SettingsReading reading = settings::ReadSettings(machine.stored);
    const std::array<double, headSettingCount> inForce = settings::SettingsInForce();
    if (options.json) {
        return text::PrintDocument("settings-show",
                                   {{"place", machine.place},
                                    {"state", machine.state},
                                    {"settings", settings::SettingsJson(reading, inForce)},
                                    {"findings", text::FindingsJson(reading.findings)}},
                                   console.out);
    }
    console.out << console.Strong("Settings of the head") << "\n  " << settings::PlaceText(machine) << "\n\n";
    settings::PrintSettings(reading, inForce, console);
    if (reading.findings.empty()) return;
    console.out << '\n' << console.Strong("To be looked at") << '\n';
    text::PrintFindings(reading.findings, console.out, console.colour);
}

void Validate(const ValidateOptions& options, const text::Console& console) {
    const settings::SettingsReading reading =
        settings::ReadSettings(settings::SettingsInFile(text::ReadWholeFile(options.file)));
    const std::array<double, headSettingCount> values = ValuesOf(reading);
    if (options.json) {
        text::PrintDocument("settings-validate",
                            {{"file", options.file},
                             {"settings", settings::SettingsJson(reading, values)},
                             {"findings", text::FindingsJson(reading.findings)}},
                            console.out);
    } else {
        console.out << console.Strong("What the component would take from " + options.file) << '\n';
        settings::PrintSettings(reading, values, console);
        console.out << '\n' << console.Strong(reading.findings.empty() ? "Nothing is wrong with it." : "Found") << '\n';
        text::PrintFindings(reading.findings, console.out, console.colour);
    }
    if (!reading.findings.empty()) throw CommandEnded{exitFindings};
}

std::size_t SettingOrUsageError(const std::string& name) {
    if (const auto index = settings::FindHeadSetting(ascii::Trimmed(name))) return *index;
    throw text::UsageError{"--set: '" + name + "' is no setting of the head; `qmv40 settings write --help` lists them"};
}

double NumberOrUsageError(const std::string& text) {
    const text::ParsedNumber number = text::ParseNumber(ascii::Trimmed(text));
    if (number.problem == nullptr) return number.value;
    const bool hasComma = text.find(',') != std::string::npos;
    throw text::UsageError{"--set: '" + text + "' " + number.problem +
                           (hasComma ? "; the decimal mark is a point" : "")};
}

void Assign(const std::string& assignment, ChosenValues& values, std::array<bool, headSettingCount>& isSet) {
    const std::size_t equals = assignment.find('=');
    if (equals == std::string::npos) {
        throw text::UsageError{"--set: '" + assignment + "' is not a name and a number such as drive-cup-x=-6.95"};
    }
    const std::size_t index = SettingOrUsageError(assignment.substr(0, equals));
    if (isSet[index]) throw text::UsageError{std::string("--set: '") + HeadSettings()[index].name + "' is given twice"};
    isSet[index] = true;
    values[index] = NumberOrUsageError(assignment.substr(equals + 1));
}

/// The stored values of a settings file, as the component would read them.
ChosenValues BaseValues(const std::string& fileName, const text::Console& console) {
    ChosenValues values;
    if (fileName.empty()) return values;
    const settings::SettingsReading reading =
        settings::ReadSettings(settings::SettingsInFile(text::ReadWholeFile(fileName)));
    for (std::size_t i = 0; i < headSettingCount; ++i) {
        if (reading.settings[i].isStoredValue) values[i] = reading.settings[i].value;
    }
    if (!reading.findings.empty()) console.err << "In " << fileName << ", which counts as the component reads it:\n";
    text::PrintFindings(reading.findings, console.err);
    return values;
}

void Write(const WriteOptions& options, const text::Console& console) {
    ChosenValues values = BaseValues(options.base, console);
    for (std::size_t i = 0; i < headSettingCount; ++i) {
        if (values[i] && !std::isfinite(*values[i])) {
            throw text::UsageError{"--base: '" + std::string(HeadSettings()[i].name) +
                                   "' is not a finite number there"};
        }
    }
    std::array<bool, headSettingCount> isSet{};
    for (const std::string& assignment : options.assignments) Assign(assignment, values, isSet);
    const std::string content = settings::SettingsFileText(values);
    if (!options.output.empty()) text::WriteOutput(options.output, content, settings::SettingsFileKind());

    if (options.json) {
        const settings::SettingsReading reading = settings::ReadSettings(settings::SettingsInFile(content));
        text::PrintDocument("settings-write",
                            {{"file", options.output.empty() ? text::Json() : text::Json(options.output)},
                             {"settings", settings::SettingsJson(reading, ValuesOf(reading))},
                             {"content", content}},
                            console.out);
    } else if (options.output.empty()) {
        console.out << content;
    } else {
        console.err << "The settings were written to " << options.output << '\n'
                    << settings::HowToPutInPlace(options.output) << '\n';
    }
}

std::string SettingNames() {
    std::string names;
    for (const HeadSetting& setting : HeadSettings()) {
        std::string line = std::string("  ") + setting.shortName;
        line.resize(22, ' ');
        names += line + setting.name + ", " + setting.unit + ", built in " + text::ExactText(setting.builtIn) + "\n";
    }
    return names;
}

void AddShow(Command& settings) {
    auto [command, options] =
        settings.AddCommand<CommonOptions>("show", "Show the dimensions in force and where each comes from",
                                           "Example:\n"
                                           "  qmv40 settings show\n"
                                           "\n"
                                           "Values that are not read, or are doubtful, are listed as findings.",
                                           Show);
    AddCommonOptions(command, options);
}

void AddValidate(Command& settings) {
    auto [command, options] = settings.AddCommand<ValidateOptions>(
        "validate", "Find what the component would not read in a settings file",
        "Example:\n"
        "  qmv40 settings validate settings.reg\n"
        "\n"
        "It finds unknown names, values that are not text, a text longer than the one read before it, a\n"
        "missing X before a Y or Z, decimal commas, units and other text after the number, and text that reads\n"
        "as 0. Exit code 4 when it finds something, otherwise 0.",
        Validate);
    command.AddText("file", options.file, "FILE", "The settings file, in the registry export format").Require();
    AddJsonOption(command, options.json);
}

void AddWrite(Command& settings) {
    auto [command, options] = settings.AddCommand<WriteOptions>(
        "write", "Write a settings file that is ready to be put in place",
        "Example:\n"
        "  qmv40 settings write --set lever-centre-x=31 --set locking-rotation=137.5 --output settings.reg\n"
        "\n"
        "An offset with one given dimension is written completely, in texts of one length, because the\n"
        "component reads no text that is longer than the one before it. Dimensions that are not set keep\n"
        "their built-in values. The file works on Windows (import it) and on Linux (put it in place).\n"
        "\n"
        "Names, long or short, in any letter case:\n" +
            SettingNames(),
        Write);
    command
        .AddTexts("--set", options.assignments, "NAME=NUMBER", "A dimension and its number; may be given several times")
        .Require();
    command.AddText("--base", options.base, "FILE", "Keep the other dimensions that this settings file sets");
    command.AddText("--output", options.output, "FILE", "Write here; without it to standard output");
    AddJsonOption(command, options.json);
}

} // namespace

void AddSettingsCommand(Command tool) {
    Command command = tool.AddCommand(
        "settings", "Show, check and write the head's fixed dimensions",
        "Examples:\n"
        "  qmv40 settings show\n"
        "  qmv40 settings validate settings.reg\n"
        "  qmv40 settings write --set lever-centre-x=31 --output settings.reg\n"
        "  qmv40 settings write --help\n"
        "\n"
        "The head's fourteen dimensions are built in. A machine can override them by texts in its registry\n"
        "(Windows) or in a settings file (Linux).");
    AddShow(command);
    AddValidate(command);
    AddWrite(command);
}

} // namespace qmv40::cli
