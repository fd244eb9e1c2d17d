// The arrows between the folders, read from the sources and held against the table that the architecture page shows.

#include "support/RequiredIdentifiers.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

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

const std::filesystem::path root = QMV40_ROOT;

std::string TextOf(const std::filesystem::path& path) {
    std::ifstream file(path);
    std::stringstream text;
    text << file.rdbuf();
    return text.str();
}

struct SourceFile {
    std::string name;   ///< relative to the root
    std::string folder; ///< first folder below source/, "tools" or "benchmarks"
    std::string text;
};

/// The text without its comments.
std::string CodeOf(const std::string& text) {
    static const std::regex comment("//[^\\n]*");
    return std::regex_replace(text, comment, "");
}

std::vector<SourceFile> SourceFiles() {
    std::vector<SourceFile> files;
    for (const char* top : {"source", "tools", "benchmarks"}) {
        for (const auto& entry : std::filesystem::recursive_directory_iterator(root / top)) {
            const std::string extension = entry.path().extension().string();
            if (extension != ".h" && extension != ".cpp") continue;
            const auto relative = entry.path().lexically_relative(root);
            const std::string folder = (top == std::string("source") ? ++relative.begin() : relative.begin())->string();
            files.push_back({relative.generic_string(), folder, TextOf(entry.path())});
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

/// The rows "| folder | may include |" of the architecture page; a row may name several folders.
std::map<std::string, std::set<std::string>> AllowedIncludes() {
    static const std::regex row("\\| `([a-z`, ]+)` \\|([^|]*)\\|");
    static const std::regex word("`([a-z]+)`");
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
            const std::string folder = include.substr(0, include.find('/'));
            if (folder == file.folder) continue;
            if (file.folder == "tools" && std::filesystem::is_directory(root / "tools" / folder)) continue;
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

TEST(Structure, TheCheckerOfPlansHasAModelOfItsOwn) {
    std::vector<std::string> violations;
    for (const SourceFile& file : SourceFiles()) {
        if (!file.name.starts_with("tools/check/")) continue;
        for (const std::string& include : QuotedIncludes(file.text)) {
            const bool isOwn =
                include.starts_with("check/") || include == "maths/CMaVector.h" || include == "interface/Records.h";
            const bool readsNumbers = file.name == "tools/check/HeadFile.cpp" && include == "head/RoundThePole.h";
            if (!isOwn && !readsNumbers) violations.push_back(file.name + " -> " + include);
        }
    }
    EXPECT_THAT(violations, IsEmpty());
}

/// The headers whose names are global: the interface, the platform's vocabulary, and the classes that callers name.
bool MayGiveGlobalNames(const std::string& header) {
    static const std::regex global(
        "source/(interface/.*|platform/(.*/)?Automation|platform/portable/(Activation|ErrorInfo|SafeArray|"
        "Text|Types|Unknown)|errors/QMVObjectHelper|maths/CMa\\w+|maths/CQuaternion|head/RoundThePole|"
        "calculator/CQMVCalculator|server/EntryPoints)\\.h");
    return std::regex_match(header, global);
}

TEST(Structure, HeadersOfTheComponentKeepTheirNamesInANamespace) {
    // A global name of the component could be taken for another one of the same program by the linker.
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
    static const std::regex linked("qmv40_folder\\(([a-z]+)(?: MAY_INCLUDE ([a-z ]+?))?\\s+SOURCES");
    const auto allowed = AllowedIncludes();
    int folders = 0;
    for (const auto& entry : std::filesystem::directory_iterator(root / "source")) {
        if (!entry.is_directory()) continue;
        const std::string text = TextOf(entry.path() / "CMakeLists.txt");
        std::smatch match;
        if (!std::regex_search(text, match, linked)) continue;
        std::istringstream names(match[2].str());
        const std::set<std::string> linkedFolders{std::istream_iterator<std::string>(names), {}};
        EXPECT_EQ(linkedFolders, allowed.at(match[1])) << "links of " << match[1];
        ++folders;
    }
    EXPECT_GE(folders, 9) << "the folders' build files were not found";
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

TEST(Structure, PlatformSwitchesStandInPlatformAndServerAlone) {
    static const std::regex platformSwitch("\\b(_WIN32|__linux__|__MINGW)");
    std::vector<std::string> violations;
    for (const SourceFile& file : SourceFiles()) {
        if (file.folder == "platform" || file.folder == "server") continue;
        if (std::regex_search(file.text, platformSwitch)) violations.push_back(file.name);
    }
    EXPECT_THAT(violations, IsEmpty());
}

TEST(Structure, CodesAreThrownInOnePlaceAndTurnedIntoResultsInOnePlace) {
    static const std::regex throwsCode("\\bthrow\\s+(?!(?:qmv40::)?GeometryError)\\S");
    static const std::regex returnsCode("catch \\(const HRESULT code\\) \\{\\s*return code;");
    std::set<std::string> throwing;
    std::set<std::string> translating;
    for (const SourceFile& file : SourceFiles()) {
        if (file.folder == "tools" || file.folder == "benchmarks") continue;
        if (std::regex_search(CodeOf(file.text), throwsCode)) throwing.insert(file.name);
        if (std::regex_search(file.text, returnsCode)) translating.insert(file.name);
    }
    EXPECT_EQ(throwing, std::set<std::string>{"source/errors/RaiseError.cpp"});
    EXPECT_EQ(translating, std::set<std::string>{"source/errors/Guarded.h"});
}

TEST(Structure, NothingIsOwnedThroughAPlainPointer) {
    static const std::regex nakedOwnership("(^|[^:\\w\"/])(new\\s+[A-Z]\\w*|delete\\s+\\w+)\\s*[;({]");
    std::vector<std::string> violations;
    for (const SourceFile& file : SourceFiles()) {
        if (std::regex_search(CodeOf(file.text), nakedOwnership)) violations.push_back(file.name);
    }
    EXPECT_THAT(violations, IsEmpty());
}
