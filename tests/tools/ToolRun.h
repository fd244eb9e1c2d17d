#pragma once

#include "cli/Json.h"

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

/// What a run of the tool left behind.
struct ToolRun {
    int exitCode;
    std::string out;
    std::string err;

    /// The one document on standard output; fails by an exception when it is not one.
    Json Document() const { return Json::parse(out); }
};

/// Runs the tool in this process, without colours.
ToolRun RunQmv40(std::vector<std::string> arguments);

/// Apart from the folder of that name that other tests share.
namespace tools_tests {

/// A folder of its own, removed with everything in it. Its name holds blanks.
class TemporaryFolder {
public:
    TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder();

    const std::filesystem::path& Path() const noexcept { return path; }
    bool IsEmpty() const { return std::filesystem::is_empty(path); }
    /// The name, in UTF-8, of a file that need not exist.
    std::string Name(const std::string& utf8FileName) const;
    /// Writes a file as it stands, byte for byte, and returns its name.
    std::string Write(const std::string& utf8FileName, std::string_view content) const;

private:
    std::filesystem::path path;
};

} // namespace tools_tests

using tools_tests::TemporaryFolder;

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

/// Where two documents differ: in their members, in the order of these, or in a number by more than `tolerance` times
/// the larger of 1 and its size. Empty when they do not.
std::string DifferenceBetween(const Json& expected, const Json& actual, double tolerance,
                              const std::string& where = "");
