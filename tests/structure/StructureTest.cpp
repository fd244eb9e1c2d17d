// Compares the includes of the sources with the table in docs/architecture.md, and checks other rules of the sources.

#include "tests/support/RequiredIdentifiers.h"
#include "tests/support/SourceFolders.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace {

using testing::IsEmpty;

const std::filesystem::path root = SourceRoot();

std::string TextOf(const std::filesystem::path& path) {
    std::ifstream file(path);
    std::stringstream text;
    text << file.rdbuf();
    return text.str();
}

struct SourceFile {
    std::string name;   ///< relative to the root
    std::string folder; ///< its row on the architecture page: "maths", "tools/text", "benchmarks"
    std::string text;
};

/// The text without its comments after //. Those between /* and */ stay.
std::string CodeOf(const std::string& text) {
    static const std::regex comment("//[^\\n]*");
    return std::regex_replace(text, comment, "");
}

/// The table row of a file's folder. Rows of the component are named without "source".
std::string FolderOf(const std::filesystem::path& file) {
    const std::string top = file.begin()->string();
    if (top == "benchmarks") return top;
    const std::string room = std::next(file.begin())->string();
    for (const char* const nested : {"tools/check/obstacles", "tools/diagnosis/fit"})
        if (file.parent_path() == nested) return nested;
    return top == "source" ? room : top + "/" + room;
}

/// The table row of an included file: files of the tool, the bindings and the tests are included from the root, those
/// of the component from source/.
std::string FolderOfInclude(const std::string& include) {
    const std::filesystem::path file(include);
    const std::string top = file.begin()->string();
    const bool isFromTheRoot = top == "tools" || top == "bindings" || top == "tests";
    return isFromTheRoot ? FolderOf(file) : top;
}

bool IsOfTheTool(const SourceFile& file) { return file.folder.starts_with("tools/"); }

std::vector<SourceFile> SourceFiles() {
    std::vector<SourceFile> files;
    for (const char* top : {"source", "bindings", "tools", "benchmarks"}) {
        for (const auto& entry : std::filesystem::recursive_directory_iterator(root / top)) {
            const std::string extension = entry.path().extension().string();
            if (extension != ".h" && extension != ".cpp") continue;
            const auto relative = entry.path().lexically_relative(root);
            files.push_back({relative.generic_string(), FolderOf(relative), TextOf(entry.path())});
        }
    }
    return files;
}

std::vector<std::string> QuotedIncludes(const std::string& text) {
    static const std::regex include("#include \"([^\"]+)\"");
    std::vector<std::string> names;
    for (std::sregex_iterator match(text.begin(), text.end(), include), end; match != end; ++match) {
        names.push_back((*match)[1]);
    }
    return names;
}

/// The rows "| folder | may include |" of the architecture page.
std::map<std::string, std::set<std::string>> AllowedIncludes() {
    static const std::regex row("\\| `([a-z/]+)` \\|([^|]*)\\|");
    static const std::regex word("`([a-z/]+)`");
    std::map<std::string, std::set<std::string>> allowed;
    const std::string page = TextOf(root / "docs" / "architecture.md");
    for (std::sregex_iterator match(page.begin(), page.end(), row), end; match != end; ++match) {
        const std::string targets = (*match)[2];
        std::set<std::string> names;
        for (std::sregex_iterator target(targets.begin(), targets.end(), word); target != end; ++target) {
            names.insert((*target)[1]);
        }
        allowed[(*match)[1]] = names;
    }
    return allowed;
}

} // namespace

TEST(Structure, EveryFolderIncludesOnlyWhatTheArchitecturePageAllows) {
    const auto allowed = AllowedIncludes();
    std::vector<std::string> violations;
    for (const SourceFile& file : SourceFiles()) {
        ASSERT_TRUE(allowed.contains(file.folder)) << file.folder << " has no row on the architecture page";
        for (const std::string& include : QuotedIncludes(file.text)) {
            const std::string folder = FolderOfInclude(include);
            if (folder == file.folder) continue;
            if (!allowed.at(file.folder).contains(folder)) violations.push_back(file.name + " -> " + include);
        }
    }
    EXPECT_THAT(violations, IsEmpty());
}

TEST(Structure, TheVectorGeometryClassesIncludeNothingOutsideTheirFolder) {
    const std::set<std::string> mayReachErrors = {"source/maths/CQuaternion.h", "source/maths/CQuaternion.cpp",
                                                  "source/maths/RaisingGeometryErrors.h"};
    std::vector<std::string> violations;
    for (const SourceFile& file : SourceFiles()) {
        if (file.folder != "maths" || mayReachErrors.contains(file.name)) continue;
        for (const std::string& include : QuotedIncludes(file.text)) {
            if (!include.starts_with("maths/") || include == "maths/RaisingGeometryErrors.h") {
                violations.push_back(file.name + " -> " + include);
            }
        }
    }
    EXPECT_THAT(violations, IsEmpty());
}

TEST(Structure, OnlyMathsIncludesTheSolverOfItsFits) {
    std::vector<std::string> violations;
    for (const SourceFile& file : SourceFiles()) {
        if (file.folder == "maths") continue;
        for (const std::string& include : QuotedIncludes(file.text))
            if (include.starts_with("maths/fit/")) violations.push_back(file.name + " -> " + include);
    }
    EXPECT_THAT(violations, IsEmpty());
}

TEST(Structure, IncludesOfFoldersFormNoCircle) {
    // Folders that include no remaining folder are removed again and again. If folders remain, there is a circle among
    // them.
    auto waiting = AllowedIncludes();
    std::set<std::string> below;
    for (bool isMoving = true; isMoving;) {
        const auto isReady = [&](const auto& each) {
            return std::ranges::all_of(
                each.second, [&](const std::string& name) { return below.contains(name) || !waiting.contains(name); });
        };
        const auto ready = std::ranges::find_if(waiting, isReady);
        isMoving = ready != waiting.end();
        if (!isMoving) break;
        below.insert(ready->first);
        waiting.erase(ready);
    }
    EXPECT_THAT(waiting, IsEmpty());
    EXPECT_GE(below.size(), 20u) << "the table was not found";
}

TEST(Structure, EveryFileOfTheToolIsInTheNamespaceOfItsFolder) {
    std::vector<std::string> violations;
    for (const SourceFile& file : SourceFiles()) {
        if (!IsOfTheTool(file) || file.name.ends_with("Main.cpp")) continue;
        static const std::regex slash("/");
        const std::string folder = file.folder.substr(std::string("tools/").size());
        const std::string name = "namespace qmv40::" + std::regex_replace(folder, slash, "::");
        if (file.text.find(name) == std::string::npos) violations.push_back(file.name);
    }
    EXPECT_THAT(violations, IsEmpty());
}

TEST(Structure, OneFileIncludesTheParserAndOneTheJsonLibrary) {
    std::set<std::string> parser;
    std::set<std::string> json;
    for (const SourceFile& file : SourceFiles()) {
        if (file.text.find("#include <CLI/") != std::string::npos) parser.insert(file.name);
        if (file.text.find("#include <nlohmann/") != std::string::npos) json.insert(file.name);
    }
    EXPECT_EQ(parser, std::set<std::string>{"tools/cli/CommandLine.cpp"});
    EXPECT_EQ(json, std::set<std::string>{"tools/text/Json.cpp"});
}

/// The headers with global names: the interface, the platform's types, the classes that callers name, and the exports.
bool MayGiveGlobalNames(const std::string& header) {
    static const std::regex global(
        "source/(interface/.*|platform/(.*/)?Automation|platform/portable/(Activation|ErrorInfo|SafeArray|"
        "Text|Types|Unknown)|errors/QMVObjectHelper|maths/CMa\\w+|maths/CQuaternion|head/RoundThePole|"
        "calculator/CQMVCalculator|server/EntryPoints)\\.h");
    return std::regex_match(header, global);
}

TEST(Structure, HeadersOfTheComponentKeepTheirNamesInANamespace) {
    // The linker could confuse a global name of the component with another one of the same program.
    static const std::regex opensNamespace("\\nnamespace qmv40(::\\w+)? \\{");
    std::vector<std::string> global;
    for (const SourceFile& file : SourceFiles()) {
        if (!file.name.starts_with("source/") || !file.name.ends_with(".h")) continue;
        const bool isInside = std::regex_search(file.text, opensNamespace);
        if (!isInside && !MayGiveGlobalNames(file.name)) global.push_back(file.name);
    }
    EXPECT_THAT(global, IsEmpty());
}

TEST(Structure, TheLinkedFoldersAreTheIncludedFolders) {
    static const std::regex linked("qmv40_(tools_)?folder\\(([a-z/]+)\\s+(?:MAY_INCLUDE ([a-z/\\s]+?))?\\s*SOURCES");
    const auto allowed = AllowedIncludes();
    int folders = 0;
    for (const char* const top : {"source", "tools"}) {
        for (const auto& entry : std::filesystem::recursive_directory_iterator(root / top)) {
            if (!entry.is_directory()) continue;
            const std::string text = TextOf(entry.path() / "CMakeLists.txt");
            std::smatch match;
            if (!std::regex_search(text, match, linked)) continue;
            std::istringstream names(match[3].str());
            const std::set<std::string> linkedFolders{std::istream_iterator<std::string>(names), {}};
            const std::string row = (match[1].matched ? "tools/" : "") + match[2].str();
            ASSERT_TRUE(allowed.contains(row)) << row;
            EXPECT_EQ(linkedFolders, allowed.at(row)) << "links of " << row;
            ++folders;
        }
    }
    EXPECT_GE(folders, 21) << "the folders' build files were not found";
}

TEST(Structure, TheTypeLibraryHasTheRequiredIdentifiers) {
    static const std::regex declaration(
        R"(uuid\(([0-9A-F-]+)\)[^\]]*\]\s*(?:library|struct|interface|coclass)\s+(\w+))");
    const std::string idl = TextOf(root / "source" / "server" / "windows" / "CoQMV40Calculator.idl");
    std::map<std::string, std::string> declared;
    for (std::sregex_iterator match(idl.begin(), idl.end(), declaration), end; match != end; ++match)
        declared[match->str(2)] = match->str(1);
    EXPECT_EQ(declared.size(), std::size(requiredIdentifiers));
    for (const auto& [name, text] : requiredIdentifiers) EXPECT_EQ(declared[name], text) << name;
}

TEST(Structure, FilesWithTestsAreNamedAfterTheirSubject) {
    static const std::regex hasTest("\\nTEST(_F|_P)?\\(");
    std::vector<std::string> violations;
    int files = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(root / "tests")) {
        const std::string name = entry.path().filename().string();
        if (!name.ends_with(".cpp") || !std::regex_search(TextOf(entry.path()), hasTest)) continue;
        ++files;
        if (!name.ends_with("Test.cpp")) violations.push_back(entry.path().lexically_relative(root).generic_string());
    }
    EXPECT_THAT(violations, IsEmpty());
    EXPECT_GE(files, 100) << "the tests were not found";
}

TEST(Structure, PlatformSwitchesAreInPlatformAndServerOnly) {
    static const std::regex platformSwitch("\\b(_WIN32|__linux__|__MINGW)");
    std::vector<std::string> violations;
    for (const SourceFile& file : SourceFiles()) {
        if (file.folder == "platform" || file.folder == "server") continue;
        if (std::regex_search(file.text, platformSwitch)) violations.push_back(file.name);
    }
    EXPECT_THAT(violations, IsEmpty());
}

TEST(Structure, CodesAreThrownAndConvertedInOnePlaceEach) {
    static const std::regex throwsCode("\\bthrow\\s+(?!(?:qmv40::)?GeometryError)\\S");
    static const std::regex returnsCode("catch \\(const HRESULT code\\) \\{\\s*return code;");
    std::set<std::string> throwing;
    std::set<std::string> translating;
    for (const SourceFile& file : SourceFiles()) {
        if (!file.name.starts_with("source/")) continue;
        if (std::regex_search(CodeOf(file.text), throwsCode)) throwing.insert(file.name);
        if (std::regex_search(file.text, returnsCode)) translating.insert(file.name);
    }
    EXPECT_EQ(throwing, std::set<std::string>{"source/errors/RaiseError.cpp"});
    EXPECT_EQ(translating, std::set<std::string>{"source/errors/Guarded.h"});
}

TEST(Structure, NoPlainPointerOwnsAnything) {
    static const std::regex nakedOwnership("(^|[^:\\w\"/])(new\\s+[A-Z]\\w*|delete\\s+\\w+)\\s*[;({]");
    std::vector<std::string> violations;
    for (const SourceFile& file : SourceFiles()) {
        if (std::regex_search(CodeOf(file.text), nakedOwnership)) violations.push_back(file.name);
    }
    EXPECT_THAT(violations, IsEmpty());
}
