#include "tools/cli/Commands.h"
#include "tools/cli/Options.h"
#include "tools/component/Calculator.h"
#include "tools/component/ComponentError.h"
#include "tools/settings/Finding.h"
#include "tools/settings/GeometryFile.h"
#include "tools/settings/Installation.h"
#include "tools/settings/MachineSettings.h"
#include "tools/settings/SettingsOverride.h"
#include "tools/settings/SettingsReport.h"
#include "tools/text/Failures.h"
#include "tools/text/Numbers.h"
#include "tools/text/Table.h"

namespace qmv40::cli {

namespace {

struct DoctorOptions : CommonOptions {
    std::string geometry; ///< empty: no file is examined
};

/// The result of the command.
struct Diagnosis {
    std::vector<settings::Fact> tool;
    settings::Installation installation;
    settings::MachineSettings machine;
    settings::SettingsReading reading;
    std::array<double, headSettingCount> inForce{};
    std::optional<settings::GeometryFileState> geometry;
    std::vector<text::Finding> findings;

    void Add(const std::vector<text::Finding>& more) { findings.insert(findings.end(), more.begin(), more.end()); }
};

/// The component; null, with a finding, when it cannot be created.
std::unique_ptr<component::Calculator> CreateCalculator(std::vector<text::Finding>& findings) {
    try {
        return std::make_unique<component::Calculator>();
    } catch (const component::ComponentError& error) {
        const std::string remedy = component::Remedy(error.code);
        findings.push_back(settings::FindingAbout(
            {}, "component-not-created", text::Severity::Fault,
            "The component cannot be created: " + component::CodeText(error.code) + ", " + error.description,
            remedy.empty() ? "Install and register it again." : remedy));
        return nullptr;
    }
}

Diagnosis Diagnose(const DoctorOptions& options) {
    Diagnosis diagnosis;
    constexpr int bitsOfByte = 8;
    diagnosis.tool = {{"version", "version", QMV40_VERSION},
                      {"file", "file", settings::OwnFile()},
                      {"bits", "bits", static_cast<int>(sizeof(void*)) * bitsOfByte}};
    const std::unique_ptr<component::Calculator> calculator = CreateCalculator(diagnosis.findings);
    diagnosis.installation = settings::ExamineInstallation();
    diagnosis.Add(diagnosis.installation.findings);
    diagnosis.machine = settings::ReadMachineSettings();
    diagnosis.reading = settings::ReadSettings(diagnosis.machine.stored);
    diagnosis.inForce = settings::SettingsInForce();
    diagnosis.Add(diagnosis.reading.findings);
    if (!options.geometry.empty()) {
        diagnosis.geometry = settings::ExamineGeometryFile(options.geometry, calculator.get());
        diagnosis.Add(diagnosis.geometry->findings);
    }
    return diagnosis;
}

text::Json FactsJson(const std::vector<settings::Fact>& facts) {
    text::Json document = text::Json::Object();
    for (const settings::Fact& fact : facts) document[fact.key] = fact.value;
    return document;
}

text::Json GeometryJson(const settings::GeometryFileState& geometry, const std::string& fileName) {
    text::Json values = text::Json::Array();
    for (const settings::GeometryFileEntry& value : geometry.entries) {
        values.PushBack({{"section", value.section},
                         {"key", value.key},
                         {"text", value.text},
                         {"value", value.text ? text::Json(value.value) : text::Json()}});
    }
    return {{"file", fileName}, {"state", geometry.state}, {"values", values}, {"ignored", geometry.ignored}};
}

text::Json DiagnosisJson(const Diagnosis& diagnosis, const DoctorOptions& options) {
    text::Json document{{"tool", FactsJson(diagnosis.tool)},
                        {"component", FactsJson(diagnosis.installation.component)},
                        {"registration", FactsJson(diagnosis.installation.registration)},
                        {"settings",
                         {{"place", diagnosis.machine.place},
                          {"state", diagnosis.machine.state},
                          {"values", settings::SettingsJson(diagnosis.reading, diagnosis.inForce)}}}};
    if (diagnosis.geometry) document["geometry"] = GeometryJson(*diagnosis.geometry, options.geometry);
    document["findings"] = text::FindingsJson(diagnosis.findings);
    return document;
}

std::string FactText(const text::Json& value) {
    if (value.IsNull()) return "none";
    if (value.Flag() != nullptr) return *value.Flag() ? "yes" : "no";
    return value.Text() != nullptr ? *value.Text() : value.Dump();
}

void PrintFacts(const char* title, const std::vector<settings::Fact>& facts, const text::Console& console) {
    text::Table table({{"", text::Table::Align::Left}, {"", text::Table::Align::Left}});
    for (const settings::Fact& fact : facts) table.AddRow({fact.label, FactText(fact.value)});
    console.out << console.Strong(title) << '\n';
    table.Print(console);
    console.out << '\n';
}

void PrintGeometry(const settings::GeometryFileState& geometry, const std::string& fileName,
                   const text::Console& console) {
    console.out << '\n' << console.Strong("Geometry file") << "\n  " << fileName << ": " << geometry.state << '\n';
    for (const settings::GeometryFileEntry& value : geometry.entries) {
        console.out << "  [" << value.section << "] " << value.key << " = "
                    << (value.text ? text::ExactText(value.value) + "  \"" + *value.text + '"' : "(nothing)") << '\n';
    }
    for (const std::string& each : geometry.ignored) console.out << "  not used: " << each << '\n';
}

void Print(const Diagnosis& diagnosis, const DoctorOptions& options, const text::Console& console) {
    PrintFacts("This tool", diagnosis.tool, console);
    PrintFacts("Component", diagnosis.installation.component, console);
    PrintFacts("Registration", diagnosis.installation.registration, console);
    console.out << console.Strong("Settings of the head") << "\n  " << settings::PlaceText(diagnosis.machine) << '\n';
    settings::PrintSettings(diagnosis.reading, diagnosis.inForce, console);
    if (diagnosis.geometry) PrintGeometry(*diagnosis.geometry, options.geometry, console);
    console.out << '\n' << console.Strong(diagnosis.findings.empty() ? "Nothing is wrong." : "Found") << '\n';
    text::PrintFindings(diagnosis.findings, console.out, console.colour);
}

void Run(const DoctorOptions& options, const text::Console& console) {
    const settings::SettingsOverride settings(options.settings);
    const Diagnosis diagnosis = Diagnose(options);
    if (options.json) {
        text::PrintDocument("doctor", DiagnosisJson(diagnosis, options), console.out);
    } else {
        Print(diagnosis, options, console);
    }
    if (!diagnosis.findings.empty()) throw CommandEnded{exitFindings};
}

constexpr const char* doctorFooter =
    "Examples:\n"
    "  qmv40 doctor\n"
    "  qmv40 doctor --geometry head.ini\n"
    "\n"
    "Shown are the component that this tool uses, what is registered, the head's fourteen dimensions\n"
    "with the origin of each, and the seven numbers of the geometry file. Nothing is changed. Exit code 4\n"
    "when something is wrong; each finding says what to do.";

} // namespace

void AddDoctorCommand(Command tool) {
    auto [command, options] = tool.AddCommand<DoctorOptions>(
        "doctor", "Tell where the component and its settings come from, and what is wrong", doctorFooter, Run);
    command.AddText("--geometry", options.geometry, "FILE", "Look at this head geometry file too");
    AddCommonOptions(command, options);
}

} // namespace qmv40::cli
