#include "interface/Identifiers.h"
#include "tools/cli/Tool.h"
#include "tools/text/Terminal.h"
#include "tools/text/WideText.h"

#include <iostream>

namespace {

/// True for a program that was double-clicked: its console has no other user and closes when the program ends.
bool HasConsoleToItself() {
    DWORD processes[2] = {};
    return GetConsoleProcessList(processes, 2) == 1;
}

void WaitForReader() {
    std::cout << "\nqmv40 is a tool for the command line: it is given its work in words, as above. Open a command "
                 "prompt (Start\n"
                 "menu: CoQMV40Calculator, qmv40 command prompt) and type qmv40 with a command.\n"
                 "\nPress Enter to close this window.\n"
              << std::flush;
    std::cin.get();
}

} // namespace

int wmain(int argc, wchar_t** argv) {
    SetConsoleOutputCP(CP_UTF8);
    const bool isDoubleClicked = argc == 1 && HasConsoleToItself();
    std::vector<std::string> arguments;
    for (int i = 1; i < argc; ++i) arguments.push_back(qmv40::text::ToUtf8(argv[i]));
    const qmv40::text::Console console{std::cout, std::cerr,
                                       qmv40::text::OutputIsTerminal() && qmv40::cli::ColourIsWelcome(),
                                       qmv40::text::ErrorsGoToTerminal()};
    if (isDoubleClicked) arguments = {"--help"};
    const int exitCode = qmv40::cli::RunTool(arguments, console);
    if (isDoubleClicked) WaitForReader();
    return exitCode;
}
