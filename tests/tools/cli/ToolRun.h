#pragma once

#include "tests/support/TemporaryFolder.h"

#include <functional>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

/// The tests read documents with the library with which the tool writes them. Members keep their order.
using Json = nlohmann::ordered_json;

/// The result of one run of the tool.
struct ToolRun {
    int exitCode;
    std::string out;
    std::string err;

    /// Standard output, parsed. Throws when it is not one JSON document.
    Json Document() const { return Json::parse(out); }
    /// The same without "format" and "version".
    Json Content() const {
        Json content = Document();
        content.erase("format");
        content.erase("version");
        return content;
    }
};

/// Runs the tool in this process, without colours.
ToolRun RunQmv40(std::vector<std::string> arguments);

std::string ReadFile(const std::string& fileName);

/// One folder of scenarios/: the files of a capture, and the head from which its points were computed.
struct Scenario {
    std::string name;
    std::string aAxis; ///< file names
    std::string bAxis;
    std::string settings; ///< file name; empty when the head has the built-in dimensions
    Json truth;           ///< position, mounting and stylus of that head

    /// Arguments of `qmv40 geometry` for this capture, with --settings when the scenario has settings.
    std::vector<std::string> GeometryArguments(const std::vector<std::string>& more = {}) const;
};
Scenario LoadScenario(const std::string& name);

/// Writes the geometry of the scenario "plain", as the tool computes it, into `folder`. Returns the file's name.
std::string PlainGeometryFile(const TemporaryFolder& folder);

/// The arguments with others after them.
std::vector<std::string> With(std::vector<std::string> arguments, const std::vector<std::string>& more);

/// The head of the scenario "plain": its geometry file, in a folder of its own.
class PlainHead {
public:
    /// Runs a command with this geometry.
    ToolRun RunTool(const std::string& command, const std::vector<std::string>& more = {}) const {
        return RunQmv40(With({command, "--geometry", geometry}, more));
    }
    /// The document that it prints. The exit code is not tested.
    Json Document(const std::string& command, const std::vector<std::string>& more) const {
        return RunTool(command, With(more, {"--json"})).Document();
    }
    /// The plans of `qmv40 move` from the first position through the others.
    Json PlansThrough(const std::vector<std::string>& positions) const;

    const TemporaryFolder folder;
    const std::string geometry = PlainGeometryFile(folder);
};

/// True when no line has more than 100 columns.
bool IsWithin100Columns(const std::string& text);

/// The records of the moves of a plan, by the moves' names.
Json RecordsOf(const Json& moves);

/// A copy of a document of plans. `edit` changes the records of the first plan, whose moves keep only name and record.
Json Edited(Json document, const std::function<void(Json& records)>& edit);

/// Describes the first difference between two documents; empty when there is none. Members must have the same names in
/// the same order. Numbers may differ by `tolerance` times the larger of 1 and the size of the expected number.
std::string DifferenceBetween(const Json& expected, const Json& actual, double tolerance,
                              const std::string& where = "");
