#include "interface/Identifiers.h"
#include "tools/cli/Tool.h"
#include "tools/text/Terminal.h"
#include "tools/text/WideText.h"

#include <iostream>

int wmain(int argc, wchar_t** argv) {
    SetConsoleOutputCP(CP_UTF8);
    std::vector<std::string> arguments;
    for (int i = 1; i < argc; ++i) arguments.push_back(qmv40::text::ToUtf8(argv[i]));
    const qmv40::text::Console console{std::cout, std::cerr,
                                       qmv40::text::OutputIsTerminal() && qmv40::cli::ColourIsWelcome(),
                                       qmv40::text::ErrorsGoToTerminal()};
    return qmv40::cli::RunTool(std::move(arguments), console);
}
