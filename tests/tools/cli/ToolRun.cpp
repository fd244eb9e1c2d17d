#include "tests/tools/cli/ToolRun.h"

#include "tests/support/SourceFolders.h"
#include "tools/cli/Tool.h"
#include "tools/text/Text.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <set>
#include <sstream>
#include <stdexcept>

using namespace qmv40;

namespace {

std::string DifferenceBetweenNumbers(double expected, double actual, double tolerance, const std::string& where) {
    const double allowed = tolerance * std::max(1.0, std::abs(expected));
    if (std::abs(expected - actual) <= allowed) return {};
    std::ostringstream text;
    text.imbue(std::locale::classic());
    text.precision(17);
    text << where << ": expected " << expected << ", got " << actual;
    return text.str();
}

/// Writes the document to the file that QMV40_DOCUMENTS names: one line for each different document of this process.
/// The test `schemas` compares them with the schemas. Writes nothing when the environment variable is not set.
void KeepDocument(const std::string& document) {
    const char* const fileName = std::getenv("QMV40_DOCUMENTS");
    if (fileName == nullptr) return;
    static std::ofstream file(fileName, std::ios::binary);
    static std::set<std::size_t> kept; // hashes: many tests print the same document, and once is enough
    const Json parsed = Json::parse(document, nullptr, false);
    if (kept.insert(std::hash<std::string>()(document)).second) file << parsed.dump() << std::endl;
}

} // namespace

ToolRun RunQmv40(std::vector<std::string> arguments) {
    std::ostringstream out;
    std::ostringstream err;
    const bool printsDocument =
        std::ranges::count(arguments, "--json") != 0 && std::ranges::count(arguments, "--help") == 0;
    const int exitCode = cli::RunTool(arguments, {out, err, false});
    if (printsDocument) KeepDocument(out.str());
    return {exitCode, out.str(), err.str()};
}

std::string ReadFile(const std::string& fileName) {
    std::ifstream file(text::PathOf(fileName), std::ios::binary);
    if (!file) throw std::runtime_error("cannot read " + fileName);
    return std::string(std::istreambuf_iterator<char>(file), {});
}

std::vector<std::string> Scenario::GeometryArguments(const std::vector<std::string>& more) const {
    std::vector<std::string> arguments{"geometry", "--a-axis", aAxis, "--b-axis", bAxis};
    if (!settings.empty()) arguments = With(arguments, {"--settings", settings});
    return With(arguments, more);
}

Scenario LoadScenario(const std::string& name) {
    const std::filesystem::path folder = std::filesystem::path(ScenariosFolder()) / name;
    const bool hasSettings = std::filesystem::exists(folder / "settings.reg");
    return {name, text::Utf8Name(folder / "a-axis.csv"), text::Utf8Name(folder / "b-axis.csv"),
            hasSettings ? text::Utf8Name(folder / "settings.reg") : "",
            Json::parse(ReadFile(text::Utf8Name(folder / "truth.json")))};
}

std::string PlainGeometryFile(const TemporaryFolder& folder) {
    static const std::string content = [] { // the same for all tests
        const TemporaryFolder ours;
        const std::string fileName = ours.Name("plain.ini");
        const ToolRun run = RunQmv40(LoadScenario("plain").GeometryArguments({"--output", fileName}));
        if (run.exitCode != 0) throw std::runtime_error(run.err);
        return ReadFile(fileName);
    }();
    return folder.Write("plain.ini", content);
}

std::vector<std::string> With(std::vector<std::string> arguments, const std::vector<std::string>& more) {
    arguments.insert(arguments.end(), more.begin(), more.end());
    return arguments;
}

Json PlainHead::PlansThrough(const std::vector<std::string>& positions) const {
    std::vector<std::string> tour{"--from", positions.front()};
    for (std::size_t i = 1; i < positions.size(); ++i) tour = With(tour, {"--to", positions[i]});
    return Document("move", tour)["plans"];
}

bool IsWithin100Columns(const std::string& text) {
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        if (line.size() > 100) return false;
    }
    return true;
}

Json RecordsOf(const Json& moves) {
    Json records = Json::object();
    for (const Json& move : moves) records[move["name"].get<std::string>()] = move["record"];
    return records;
}

Json Edited(Json document, const std::function<void(Json& records)>& edit) {
    Json& moves = document["plans"][0]["moves"];
    Json records = RecordsOf(moves);
    edit(records);
    moves = Json::array();
    for (const auto& record : records.items()) moves.push_back({{"name", record.key()}, {"record", record.value()}});
    return document;
}

std::string DifferenceBetween(const Json& expected, const Json& actual, double tolerance, const std::string& where) {
    if (expected.is_number() && actual.is_number()) {
        return DifferenceBetweenNumbers(expected.get<double>(), actual.get<double>(), tolerance, where);
    }
    if (expected.type() != actual.type() || expected.size() != actual.size())
        return where + ": another type or number of members";
    if (!expected.is_structured()) return expected == actual ? "" : where + ": another value";
    auto other = actual.begin();
    for (auto each = expected.begin(); each != expected.end(); ++each, ++other) {
        const std::string name = expected.is_object() ? each.key() : "item";
        if (expected.is_object() && name != other.key()) return where + ": " + other.key() + " instead of " + name;
        const std::string difference = DifferenceBetween(*each, *other, tolerance, where + "." + name);
        if (!difference.empty()) return difference;
    }
    return {};
}
