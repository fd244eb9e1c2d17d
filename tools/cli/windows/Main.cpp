#include "interface/Identifiers.h"
#include "tools/cli/Tool.h"
#include "tools/text/WideText.h"

#include <iostream>

namespace {

/// True when the standard handle is a console. Switches its colour sequences on.
bool UnderstandsColours(DWORD standardHandle) {
    DWORD mode = 0;
    const HANDLE console = GetStdHandle(standardHandle);
    return GetConsoleMode(console, &mode) != 0 &&
           SetConsoleMode(console, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING) != 0;
}

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
    // The calculator can be created only on a thread with COM. A command that needs it reports the failure.
    const bool hasCom = SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED));
    const bool isDoubleClicked = argc == 1 && HasConsoleToItself();
    std::vector<std::string> arguments;
    for (int i = 1; i < argc; ++i) arguments.push_back(qmv40::text::ToUtf8(argv[i]));
    const qmv40::text::Console console{std::cout, std::cerr,
                                       UnderstandsColours(STD_OUTPUT_HANDLE) && qmv40::cli::ColourIsWelcome(),
                                       UnderstandsColours(STD_ERROR_HANDLE)};
    if (isDoubleClicked) arguments = {"--help"};
    const int exitCode = qmv40::cli::RunTool(arguments, console);
    if (isDoubleClicked) WaitForReader();
    if (hasCom) CoUninitialize();
    return exitCode;
}
