// Writes the manual page and the completions into the folder that it is given.

#include "tools/cli/Commands.h"
#include "tools/manual/Manual.h"
#include "tools/text/Failures.h"
#include "tools/text/Files.h"

#include <iostream>

using namespace qmv40;

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "usage: qmv40_manual FOLDER\n";
        return cli::exitWrongUsage;
    }
    const std::string folder(argv[1]); // NOLINT(*-pointer-arithmetic)
    try {
        const cli::CommandDescription tool = manual::DescribeTool();
        text::WriteWholeFile(folder + "/qmv40.1", manual::ManPage(tool));
        text::WriteWholeFile(folder + "/qmv40.bash", manual::BashCompletion(tool));
        text::WriteWholeFile(folder + "/_qmv40", manual::ZshCompletion(tool));
        text::WriteWholeFile(folder + "/qmv40.ps1", manual::PowerShellCompletion(tool));
    } catch (const text::InputError& error) {
        std::cerr << error.file << ": " << error.reason << '\n';
        return cli::exitBadFile;
    }
    return cli::exitDone;
}
