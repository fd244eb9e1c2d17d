#include "tests/tools/cli/ReferenceHead.h"

#include "tests/support/SourceFolders.h"
#include "tools/text/Numbers.h"

#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>
#include <random>

using namespace qmv40;

namespace {

// The tool computes the geometry from the capture itself, in full precision.
constexpr double geometryTolerance = 1e-9;
// Relative to the size of a number. For plans the tool reads the geometry from the file, whose numbers have ten digits:
// a relative error of up to 5e-10.
constexpr double planTolerance = 1e-9;

std::string CaptureText(const Json& rows) {
    std::string text = "APosition,BPosition,XPosition,YPosition,ZPosition\n";
    for (const Json& row : rows) {
        std::string line;
        for (const Json& number : row)
            line.append(line.empty() ? "" : ",").append(text::ExactText(number.get<double>()));
        text += line + "\n";
    }
    return text;
}

std::vector<std::string> WithSettings(const std::vector<std::string>& arguments, const std::string& settings) {
    if (settings.empty()) return With(arguments, {"--json"});
    return With(arguments, {"--settings", settings, "--json"});
}

Json DocumentOf(const std::vector<std::string>& arguments) {
    const ToolRun run = RunQmv40(arguments);
    EXPECT_EQ(0, run.exitCode) << run.out << run.err;
    return run.Document();
}

std::string AnglesArgument(const Json& angles) {
    return text::ExactText(angles[0].get<double>()).append(",").append(text::ExactText(angles[1].get<double>()));
}

} // namespace

std::vector<Json> LoadReferenceDocuments() {
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(TestDataFolder() + "/heads")) {
        if (entry.path().extension() == ".json") files.push_back(entry.path());
    }
    std::ranges::sort(files);
    std::vector<Json> documents;
    for (const std::filesystem::path& file : files) documents.push_back(Json::parse(ReadFile(file.string())));
    return documents;
}

std::string ReferenceGeometryFile(const Json& head, const TemporaryFolder& folder, const std::string& settings) {
    const std::string geometryFile = folder.Name("head.ini");
    // --force: some captures contain a mistake on purpose. Their (wrong) geometry was worked out as well.
    const Json geometry = DocumentOf(
        WithSettings({"geometry", "--a-axis", folder.Write("a.csv", CaptureText(head["aAxisPoints"])), "--b-axis",
                      folder.Write("b.csv", CaptureText(head["bAxisPoints"])), "--output", geometryFile, "--force"},
                     settings));
    const Json& expected = head["expected"];
    const Json centre{
        {"X", expected["headCentre"][0]}, {"Y", expected["headCentre"][1]}, {"Z", expected["headCentre"][2]}};
    EXPECT_EQ("", DifferenceBetween(centre, geometry["headCentre"], geometryTolerance, "headCentre"));
    EXPECT_EQ("", DifferenceBetween(expected["requiredRotationAroundZ"], geometry["requiredRotationAroundZ"],
                                    geometryTolerance, "requiredRotationAroundZ"));
    return geometryFile;
}

void ExpectReferenceHead(const Json& head, const std::string& settings) {
    SCOPED_TRACE(head["name"].get<std::string>());
    const TemporaryFolder folder;
    const std::string geometryFile = ReferenceGeometryFile(head, folder, settings);
    for (const Json& plan : head["expected"]["moves"]) {
        const Json plans = DocumentOf(WithSettings({"move", "--geometry", geometryFile, "--from",
                                                    AnglesArgument(plan["from"]), "--to", AnglesArgument(plan["to"])},
                                                   settings));
        EXPECT_EQ("", DifferenceBetween(plan["moves"], RecordsOf(plans["plans"][0]["moves"]), planTolerance,
                                        plan["to"].dump()));
    }
}

std::string RandomTour(int plans) {
    constexpr int step = 15;
    std::mt19937_64 random(20261122);
    std::uniform_int_distribution<int> a(0, 6);
    std::uniform_int_distribution<int> b(-12, 12);
    std::string text = "A,B\n";
    for (int i = 0; i <= plans; ++i) {
        const int tilt = step * a(random);
        text += std::to_string(tilt) + "," + std::to_string(step * b(random)) + "\n";
    }
    return text;
}

std::string SettingsText(const Json& values) {
    std::string text = "Windows Registry Editor Version 5.00\n\n"
                       "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Hollbeck\\VRX Software\\QMV40Calculator]\n";
    for (const auto& value : values.items()) {
        text += '"' + value.key() + "\"=\"" + value.value().get<std::string>() + "\"\n";
    }
    return text;
}
