// Runs qmv40 with any list of arguments, in a folder with good and bad files. Laws:
// - the tool returns one of its exit codes and throws nothing;
// - with --json it prints exactly one document: the result, or the error of the component, of a refused file or of
//   wrong usage;
// - without --json a failure prints nothing on standard output and a reason on standard error; a success prints on
//   standard output, or names on standard error the file that it wrote;
// - the same arguments give the same output, and the settings in the environment do not change;
// - no file changes except those that --output and --svg name, and the page of `view`.
// Input: one argument in each line, an empty line, and the content of the file "given".

#include "Support.h"

#include "tests/head/SavedHead.h"
#include "tests/support/SourceFolders.h"
#include "tools/cli/Tool.h"

#include <algorithm>
#include <map>
#include <nlohmann/json.hpp>
#include <sstream>
#include <vector>

using namespace qmv40;

namespace {

using Arguments = std::vector<std::string>;
using Json = nlohmann::json;

using Files = std::map<std::string, std::string>; ///< name to content

/// The working folder: everything that a run may read or write.
class WorkingFolder {
public:
    WorkingFolder() { std::filesystem::current_path(folder.Path()); }

    /// Empties it and creates these files and the folder "dir".
    void Prepare(const Files& files) {
        if (files == Content() && std::filesystem::is_directory("dir")) return;
        for (const auto& entry : std::filesystem::directory_iterator(folder.Path())) {
            std::filesystem::remove_all(entry.path());
        }
        std::filesystem::create_directory("dir");
        for (const auto& [name, content] : files) WriteFile(name, content);
    }
    static Files Content() {
        Files files;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(".")) {
            if (!entry.is_regular_file()) continue;
            const std::string name = entry.path().lexically_normal();
            files[name] = ReadFile(name);
        }
        return files;
    }

private:
    TemporaryFolder folder;
};

/// Keeps a name inside the working folder: "dir/" is the only folder that it may name.
std::string Confined(std::string argument) {
    argument = argument.substr(0, argument.find('\0')); // an argument ends at its first zero byte
    for (std::size_t at = argument.find('/'); at != std::string::npos; at = argument.find('/', at + 1)) {
        const bool isFolder = at == 3 || (at > 3 && argument[at - 4] == '=');
        if (at < 3 || !isFolder || argument.compare(at - 3, 3, "dir") != 0) argument[at] = '_';
    }
    return argument;
}

Arguments TakeArguments(std::string_view& input) {
    constexpr std::size_t mostArguments = 24;
    Arguments arguments;
    while (!input.empty() && arguments.size() < mostArguments) {
        const std::string_view line = input.substr(0, input.find('\n'));
        input.remove_prefix(std::min(line.size() + 1, input.size()));
        if (line.empty()) break;
        // An empty line ends the arguments, so a line of one blank means an empty argument.
        arguments.push_back(Confined(std::string(line == " " ? "" : line)));
    }
    return arguments;
}

struct Run {
    int exitCode;
    std::string out;
    std::string err;
};

Run RunOnce(const Arguments& arguments) {
    std::ostringstream out;
    std::ostringstream err;
    const int exitCode = cli::RunTool(arguments, {out, err, false});
    return {exitCode, out.str(), err.str()};
}

bool Has(const Arguments& arguments, std::string_view start) {
    return std::ranges::any_of(arguments, [&](const std::string& each) { return each.starts_with(start); });
}

void PromiseDocument(const Run& run) {
    const Json document = Json::parse(run.out, nullptr, false);
    Promise(!document.is_discarded() && document.is_object(), "--json prints exactly one document");
    Promise(document.contains("format") && document.value("version", 0) == 1,
            "a document begins with format and version");
    if (run.exitCode >= 1 && run.exitCode <= 3) {
        Promise(document.contains("error"), "a failure is a document with an error");
        const Json& error = document["error"];
        Promise(error.contains("description") && !error["description"].get<std::string>().empty(),
                "an error document has a description");
        Promise(run.exitCode != 1 || error.contains("code"), "an error of the component has its code");
    }
    Promise(run.exitCode != 0 || !document.contains("error"), "a result is a document without an error");
}

bool MayWrite(const Arguments& arguments) {
    return Has(arguments, "--output") || Has(arguments, "--svg") || Has(arguments, "view");
}

bool IsHelp(const Arguments& arguments, const Run& run) {
    const bool isAskedFor = Has(arguments, "-h") || Has(arguments, "--help") || Has(arguments, "--version");
    return run.exitCode == 0 && isAskedFor;
}

void PromiseOutput(const Arguments& arguments, const Run& run) {
    Promise(run.exitCode >= 0 && run.exitCode <= 4, "the exit code is one of the tool's");
    if (Has(arguments, "--json=")) return; // the parser decides whether the value is true or false
    if (run.exitCode == 2) {
        if (run.out.empty())
            Promise(!run.err.empty(), "wrong usage is reported on standard error");
        else
            PromiseDocument(run);
    } else if (IsHelp(arguments, run)) {
        Promise(!run.out.empty() && run.err.empty(), "help is printed on standard output only");
    } else if (std::ranges::find(arguments, "--json") != arguments.end()) {
        PromiseDocument(run);
    } else if (run.exitCode == 0 || run.exitCode == 4) {
        const bool isWritten = MayWrite(arguments) && !run.err.empty();
        const bool isRefused = run.exitCode == 4 && !run.err.empty();
        Promise(!run.out.empty() || isWritten || isRefused,
                "a success prints something, or names the file that it wrote");
    } else {
        Promise(run.out.empty() && !run.err.empty(), "a failure is reported on standard error only");
    }
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    return ::setenv("QMV40_SETTINGS", "/nonexistent", 1); // the built-in dimensions
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static WorkingFolder folder;
    std::string_view input(reinterpret_cast<const char*>(data), size);
    const Arguments arguments = TakeArguments(input);
    if (Has(arguments, "--all") || Has(arguments, "selfcheck")) return 0; // thousands of plans at a time
    static Files files{{"head.ini", SavedHead{.headCentre = {412.5, -178.25, -655.0}, .rotation = 30.0}.Text()},
                       {"a.csv", ReadFile(ScenariosFolder() + "/turned-30/a-axis.csv")},
                       {"b.csv", ReadFile(ScenariosFolder() + "/turned-30/b-axis.csv")},
                       {"settings.reg", ReadFile(ScenariosFolder() + "/settings-override/settings.reg")}};
    files["given"] = input;
    folder.Prepare(files);

    const Run run = RunOnce(arguments);
    PromiseOutput(arguments, run);
    Promise(std::string_view("/nonexistent") == std::getenv("QMV40_SETTINGS"), "the environment does not change");
    if (MayWrite(arguments)) return 0;
    Promise(WorkingFolder::Content() == files, "no file changes except those to be written");
    const Run again = RunOnce(arguments);
    Promise(again.exitCode == run.exitCode, "the same arguments give the same exit code");
    // The parser names options that exclude each other in the order of their addresses, which differs between runs.
    if (run.exitCode == 2 || IsHelp(arguments, run)) return 0;
    Promise(again.out == run.out && again.err == run.err, "the same arguments give the same output");
    return 0;
}
