// Writes the manual page and the completions into the folder that it is given.

#include "cli/Failures.h"
#include "cli/Files.h"
#include "manual/Manual.h"

#include <iostream>

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "usage: qmv40_manual FOLDER\n";
        return exitWrongUsage;
    }
    const std::string folder(argv[1]); // NOLINT(*-pointer-arithmetic)
    try {
        const ManualCommand tool = DescribeTool();
        WriteWholeFile(folder + "/qmv40.1", ManPage(tool));
        WriteWholeFile(folder + "/qmv40.bash", BashCompletion(tool));
        WriteWholeFile(folder + "/_qmv40", ZshCompletion(tool));
    } catch (const InputError& error) {
        std::cerr << error.file << ": " << error.reason << '\n';
        return exitBadFile;
    }
    return exitDone;
}
