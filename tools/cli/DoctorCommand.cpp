#include "cli/Calculator.h"
#include "cli/Commands.h"
#include "cli/Complaint.h"
#include "cli/ComponentError.h"
#include "cli/Failures.h"
#include "cli/GeometryFileState.h"
#include "cli/Installation.h"
#include "cli/MachineSettings.h"
#include "cli/Numbers.h"
#include "cli/Options.h"
#include "cli/Platform.h"
#include "cli/SettingsReport.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>

namespace {

struct DoctorOptions : CommonOptions {
    std::string geometry; ///< empty: no file is looked at
};

/// What is known in the end.
struct Diagnosis {
    std::vector<Fact> tool;
    Installation installation;
    MachineSettings machine;
    SettingsReading reading;
    std::array<double, settingCount> inForce{};
    std::optional<GeometryFileState> geometry;
    std::vector<Complaint> complaints;

    void Add(const std::vector<Complaint>& more) { complaints.insert(complaints.end(), more.begin(), more.end()); }
};

/// The component, if it can be created; what the failure is otherwise.
std::unique_ptr<Calculator> CreateCalculator(std::vector<Complaint>& complaints) {
    try {
        return std::make_unique<Calculator>();
    } catch (const ComponentError& error) {
        const std::string remedy = Remedy(error.code);
        complaints.push_back({{},
                              "",
                              "The component cannot be created: " + CodeText(error.code) + ", " + error.description,
                              remedy.empty() ? "Install and register it again." : remedy});
        return nullptr;
    }
}

bool IsSameNumber(double left, double right) {
    return std::bit_cast<std::uint64_t>(left) == std::bit_cast<std::uint64_t>(right) ||
           (std::isnan(left) && std::isnan(right));
}

/// The rules as this tool explains them against what the component's readers give.
void CompareReadings(Diagnosis& diagnosis) {
    for (std::size_t i = 0; i < settingCount; ++i) {
        const double byTheRules = diagnosis.reading.settings[i].value;
        if (IsSameNumber(byTheRules, diagnosis.inForce[i])) continue;
        diagnosis.complaints.push_back(
            {{},
             AllHeadSettings()[i].name,
             "is " + ExactText(diagnosis.inForce[i]) + " in force, and by the rules it is " + ExactText(byTheRules),
             "Report this with the settings; they may also have changed just now."});
    }
}

Diagnosis Diagnose(const DoctorOptions& options) {
    Diagnosis diagnosis;
    constexpr int bitsOfByte = 8;
    diagnosis.tool = {{"version", "version", QMV40_VERSION},
                      {"file", "file", OwnFile()},
                      {"bits", "bits", static_cast<int>(sizeof(void*)) * bitsOfByte}};
    const std::unique_ptr<Calculator> calculator = CreateCalculator(diagnosis.complaints);
    diagnosis.installation = ExamineInstallation();
    diagnosis.Add(diagnosis.installation.complaints);
    diagnosis.machine = ReadMachineSettings();
    diagnosis.reading = ReadSettings(diagnosis.machine.stored);
    diagnosis.inForce = SettingsInForce();
    diagnosis.Add(diagnosis.reading.complaints);
    CompareReadings(diagnosis);
    if (!options.geometry.empty()) {
        diagnosis.geometry = ExamineGeometryFile(options.geometry, calculator.get());
        diagnosis.Add(diagnosis.geometry->complaints);
    }
    return diagnosis;
}

Json FactsJson(const std::vector<Fact>& facts) {
    Json document = Json::object();
    for (const Fact& fact : facts) document[fact.key] = fact.value;
    return document;
}

Json GeometryJson(const GeometryFileState& geometry, const std::string& fileName) {
    Json values = Json::array();
    for (const GeometryFileValue& value : geometry.values) {
        values.push_back({{"section", value.section},
                          {"key", value.key},
                          {"text", value.text ? Json(*value.text) : Json()},
                          {"value", value.text ? Json(value.value) : Json()}});
    }
    return {{"file", fileName}, {"state", geometry.state}, {"values", values}, {"ignored", geometry.ignored}};
}

Json DiagnosisJson(const Diagnosis& diagnosis, const DoctorOptions& options) {
    Json document{{"tool", FactsJson(diagnosis.tool)},
                  {"component", FactsJson(diagnosis.installation.component)},
                  {"registration", FactsJson(diagnosis.installation.registration)},
                  {"settings",
                   {{"place", diagnosis.machine.place},
                    {"state", diagnosis.machine.state},
                    {"values", SettingsJson(diagnosis.reading, diagnosis.inForce)}}}};
    if (diagnosis.geometry) document["geometry"] = GeometryJson(*diagnosis.geometry, options.geometry);
    document["findings"] = ComplaintsJson(diagnosis.complaints);
    return document;
}

std::string FactText(const Json& value) {
    if (value.is_null()) return "none";
    if (value.is_boolean()) return value.get<bool>() ? "yes" : "no";
    return value.is_string() ? value.get<std::string>() : value.dump();
}

void PrintFacts(const char* title, const std::vector<Fact>& facts, const Console& console) {
    std::size_t width = 0;
    for (const Fact& fact : facts) width = std::max(width, fact.label.size());
    console.out << console.Strong(title) << '\n';
    for (const Fact& fact : facts) {
        console.out << "  " << fact.label << std::string(width - fact.label.size() + 2, ' ') << FactText(fact.value)
                    << '\n';
    }
    console.out << '\n';
}

void PrintGeometry(const GeometryFileState& geometry, const std::string& fileName, const Console& console) {
    console.out << '\n' << console.Strong("Geometry file") << "\n  " << fileName << ": " << geometry.state << '\n';
    for (const GeometryFileValue& value : geometry.values) {
        console.out << "  [" << value.section << "] " << value.key << " = "
                    << (value.text ? ExactText(value.value) + "  \"" + *value.text + '"' : "(nothing)") << '\n';
    }
    for (const std::string& each : geometry.ignored) console.out << "  not used: " << each << '\n';
}

void Print(const Diagnosis& diagnosis, const DoctorOptions& options, const Console& console) {
    PrintFacts("This tool", diagnosis.tool, console);
    PrintFacts("Component", diagnosis.installation.component, console);
    PrintFacts("Registration", diagnosis.installation.registration, console);
    console.out << console.Strong("Settings of the head") << "\n  " << PlaceText(diagnosis.machine) << '\n';
    PrintSettings(diagnosis.reading, diagnosis.inForce, console);
    if (diagnosis.geometry) PrintGeometry(*diagnosis.geometry, options.geometry, console);
    console.out << '\n' << console.Strong(diagnosis.complaints.empty() ? "Nothing is wrong." : "Found") << '\n';
    PrintComplaints(diagnosis.complaints, console.out);
}

void Run(const DoctorOptions& options, const Console& console) {
    const SettingsOverride settings(options.settings);
    const Diagnosis diagnosis = Diagnose(options);
    if (options.json) {
        PrintJson(DiagnosisJson(diagnosis, options), console.out);
    } else {
        Print(diagnosis, options, console);
    }
    if (!diagnosis.complaints.empty()) throw CommandEnded{exitFindings};
}

} // namespace

void AddDoctorCommand(CLI::App& tool, const Console& console) {
    CLI::App& command =
        *tool.add_subcommand("doctor", "Tell where the component and its settings come from, and what is wrong");
    const auto options = std::make_shared<DoctorOptions>();
    command.add_option("--geometry", options->geometry, "Look at this head geometry file too")->type_name("FILE");
    AddCommonOptions(command, *options);
    command.footer(
        "Examples:\n"
        "  qmv40 doctor\n"
        "  qmv40 doctor --geometry head.ini\n"
        "\n"
        "Shown are the component that this tool uses, what is registered, the head's fourteen dimensions\n"
        "with the origin of each, and the seven numbers of the geometry file. Nothing is changed. Exit code 4\n"
        "when something is wrong; each finding says what to do.");
    command.callback([options, &console] { Run(*options, console); });
}
