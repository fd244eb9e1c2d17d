#include "cli/Commands.h"
#include "cli/Complaint.h"
#include "cli/Failures.h"
#include "cli/Files.h"
#include "cli/MachineSettings.h"
#include "cli/Numbers.h"
#include "cli/Options.h"
#include "cli/Platform.h"
#include "cli/SettingsFile.h"
#include "cli/SettingsReport.h"
#include "cli/Text.h"

#include <cmath>

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

using ChosenValues = std::array<std::optional<double>, settingCount>;

std::array<double, settingCount> ValuesOf(const SettingsReading& reading) {
    std::array<double, settingCount> values{};
    for (std::size_t i = 0; i < settingCount; ++i) values[i] = reading.settings[i].value;
    return values;
}

void Show(const CommonOptions& options, const Console& console) {
    const SettingsOverride settings(options.settings);
    const MachineSettings machine = ReadMachineSettings();
    const SettingsReading reading = ReadSettings(machine.stored);
    const std::array<double, settingCount> inForce = SettingsInForce();
    if (options.json) {
        return PrintJson({{"place", machine.place},
                          {"state", machine.state},
                          {"settings", SettingsJson(reading, inForce)},
                          {"findings", ComplaintsJson(reading.complaints)}},
                         console.out);
    }
    console.out << console.Strong("Settings of the head") << "\n  " << PlaceText(machine) << "\n\n";
    PrintSettings(reading, inForce, console);
    if (reading.complaints.empty()) return;
    console.out << '\n' << console.Strong("To be looked at") << '\n';
    PrintComplaints(reading.complaints, console.out);
}

void Validate(const ValidateOptions& options, const Console& console) {
    const SettingsReading reading = ReadSettings(SettingsInFile(ReadWholeFile(options.file)));
    const std::array<double, settingCount> values = ValuesOf(reading);
    if (options.json) {
        PrintJson({{"file", options.file},
                   {"settings", SettingsJson(reading, values)},
                   {"findings", ComplaintsJson(reading.complaints)}},
                  console.out);
    } else {
        console.out << console.Strong("What the component would take from " + options.file) << '\n';
        PrintSettings(reading, values, console);
        console.out << '\n'
                    << console.Strong(reading.complaints.empty() ? "Nothing is wrong with it." : "Found") << '\n';
        PrintComplaints(reading.complaints, console.out);
    }
    if (!reading.complaints.empty()) throw CommandEnded{exitFindings};
}

std::size_t SettingOrUsageError(const std::string& name) {
    if (const auto index = FindHeadSetting(Trimmed(name))) return *index;
    const std::string nearest = NearestSettingName(name);
    throw UsageError{
        "--set: '" + name + "' is no setting of the head" +
        (nearest.empty() ? "; `qmv40 settings write --help` lists them" : "; did you mean '" + nearest + "'?")};
}

double NumberOrUsageError(const std::string& text) {
    const ParsedNumber number = ParseNumber(Trimmed(text));
    if (number.problem == nullptr) return number.value;
    const bool hasComma = text.find(',') != std::string::npos;
    throw UsageError{"--set: '" + text + "' " + number.problem + (hasComma ? "; the decimal mark is a point" : "")};
}

void Assign(const std::string& assignment, ChosenValues& values, std::array<bool, settingCount>& isSet) {
    const std::size_t equals = assignment.find('=');
    if (equals == std::string::npos) {
        throw UsageError{"--set: '" + assignment + "' is not a name and a number such as drive-cup-x=-6.95"};
    }
    const std::size_t index = SettingOrUsageError(assignment.substr(0, equals));
    if (isSet[index]) throw UsageError{std::string("--set: '") + AllHeadSettings()[index].name + "' is given twice"};
    isSet[index] = true;
    values[index] = NumberOrUsageError(assignment.substr(equals + 1));
}

/// The stored values of a settings file, as the component would take them.
ChosenValues BaseValues(const std::string& fileName, const Console& console) {
    ChosenValues values;
    if (fileName.empty()) return values;
    const SettingsReading reading = ReadSettings(SettingsInFile(ReadWholeFile(fileName)));
    for (std::size_t i = 0; i < settingCount; ++i) {
        if (reading.settings[i].isStoredValue) values[i] = reading.settings[i].value;
    }
    if (!reading.complaints.empty()) console.err << "In " << fileName << ", which counts as the component reads it:\n";
    PrintComplaints(reading.complaints, console.err);
    return values;
}

void Write(const WriteOptions& options, const Console& console) {
    ChosenValues values = BaseValues(options.base, console);
    for (std::size_t i = 0; i < settingCount; ++i) {
        if (values[i] && !std::isfinite(*values[i])) {
            throw UsageError{"--base: '" + std::string(AllHeadSettings()[i].name) + "' is not a finite number there"};
        }
    }
    std::array<bool, settingCount> isSet{};
    for (const std::string& assignment : options.assignments) Assign(assignment, values, isSet);
    const std::string content = SettingsFileText(values);
    if (!options.output.empty()) WriteWholeFile(options.output, content);

    if (options.json) {
        const SettingsReading reading = ReadSettings(SettingsInFile(content));
        PrintJson({{"file", options.output.empty() ? Json() : Json(options.output)},
                   {"settings", SettingsJson(reading, ValuesOf(reading))},
                   {"content", content}},
                  console.out);
    } else if (options.output.empty()) {
        console.out << content;
    } else {
        console.err << "The settings were written to " << options.output << '\n'
                    << HowToPutInPlace(options.output) << '\n';
    }
}

std::string SettingNames() {
    std::string names;
    for (const HeadSetting& setting : AllHeadSettings()) {
        std::string line = std::string("  ") + setting.shortName;
        line.resize(22, ' ');
        names += line + setting.name + ", " + setting.unit + ", built in " + ExactText(setting.builtIn) + "\n";
    }
    return names;
}

void AddShow(CLI::App& settings, const Console& console) {
    CLI::App& command = *settings.add_subcommand("show", "Show the dimensions in force and where each comes from");
    const auto options = std::make_shared<CommonOptions>();
    AddCommonOptions(command, *options);
    command.footer("Example:\n"
                   "  qmv40 settings show\n"
                   "\n"
                   "A value that is stored but not read, or read as something else than it looks, is pointed out.");
    command.callback([options, &console] { Show(*options, console); });
}

void AddValidate(CLI::App& settings, const Console& console) {
    CLI::App& command =
        *settings.add_subcommand("validate", "Find what the component would not read in a settings file");
    const auto options = std::make_shared<ValidateOptions>();
    command.add_option("file", options->file, "The settings file, in the registry export format")
        ->required()
        ->type_name("FILE");
    command.add_flag("--json", options->json, "Print one JSON document instead of text");
    command.footer(
        "Example:\n"
        "  qmv40 settings validate settings.reg\n"
        "\n"
        "Found are: names that are none, other types than text, a text longer than the one read before it, a\n"
        "missing X before a Y or Z, decimal commas, units and other text after the number, text that reads\n"
        "as 0. Exit code 4 when there is one, 0 when all is well.");
    command.callback([options, &console] { Validate(*options, console); });
}

void AddWrite(CLI::App& settings, const Console& console) {
    CLI::App& command = *settings.add_subcommand("write", "Write a settings file that is ready to be put in place");
    const auto options = std::make_shared<WriteOptions>();
    command.add_option("--set", options->assignments, "A dimension and its number; may be given several times")
        ->required()
        ->type_name("NAME=NUMBER")
        ->allow_extra_args(false);
    command.add_option("--base", options->base, "Keep the other dimensions that this settings file sets")
        ->type_name("FILE");
    command.add_option("--output", options->output, "Write here; without it to standard output")->type_name("FILE");
    command.add_flag("--json", options->json, "Print one JSON document instead of text");
    command.footer("Example:\n"
                   "  qmv40 settings write --set lever-centre-x=31 --set locking-rotation=137.5 --output settings.reg\n"
                   "\n"
                   "An offset of which one dimension is set is written whole, in texts of one length, because the\n"
                   "component reads no text that is longer than the one before it. Dimensions that are not set keep\n"
                   "their built-in values. The file works on Windows (import it) and on Linux (put it in place).\n"
                   "\n"
                   "Names, long or short, in any letter case:\n" +
                   SettingNames());
    command.callback([options, &console] { Write(*options, console); });
}

} // namespace

void AddSettingsCommand(CLI::App& tool, const Console& console) {
    CLI::App& command = *tool.add_subcommand("settings", "Show, check and write the head's fixed dimensions");
    command.require_subcommand(1);
    AddShow(command, console);
    AddValidate(command, console);
    AddWrite(command, console);
    command.footer("Examples:\n"
                   "  qmv40 settings show\n"
                   "  qmv40 settings validate settings.reg\n"
                   "  qmv40 settings write --set lever-centre-x=31 --output settings.reg\n"
                   "  qmv40 settings write --help\n"
                   "\n"
                   "The head's fourteen dimensions are built in; a machine may override them by texts in its registry\n"
                   "or, away from Windows, in a settings file.");
}
