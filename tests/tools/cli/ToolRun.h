#pragma once

#include "tests/support/TemporaryFolder.h"

#include <functional>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

/// Documents are read by the library that the tool does not write them with: members keep their order.
using Json = nlohmann::ordered_json;

/// What a run of the tool left behind.
struct ToolRun {
    int exitCode;
    std::string out;
    std::string err;

    /// The one document on standard output; fails by an exception when it is not one.
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

/// A folder of scenarios/ and the head that its points were computed from.
struct Scenario {
    std::string name;
    std::string aAxis; ///< file names
    std::string bAxis;
    std::string settings; ///< empty where the built-in dimensions hold
    Json truth;

    /// Arguments of a geometry command; the settings are among them where there are some.
    std::vector<std::string> GeometryArguments(std::vector<std::string> more = {}) const;
};
Scenario LoadScenario(const std::string& name);

/// The plain scenario's geometry, computed by the tool and saved in `folder`; the file's name.
std::string PlainGeometryFile(const TemporaryFolder& folder);

/// The records of the moves of a plan, by the moves' names.
Json RecordsOf(const Json& moves);

/// The document with the records of its first plan edited. Moves keep a name and a record alone.
Json Edited(Json document, const std::function<void(Json& records)>& edit);

/// Where two documents differ: in their members, in the order of these, or in a number by more than `tolerance` times
/// the larger of 1 and its size. Empty when they do not.
std::string DifferenceBetween(const Json& expected, const Json& actual, double tolerance,
                              const std::string& where = "");
