#include "cli/Platform.h"
#include "cli/Tool.h"
#include "interface/Identifiers.h"

#include <iostream>

int wmain(int argc, wchar_t** argv) {
    SetConsoleOutputCP(CP_UTF8);
    std::vector<std::string> arguments;
    for (int i = 1; i < argc; ++i) arguments.push_back(ToUtf8(argv[i]));
    const Console console{std::cout, std::cerr, OutputIsTerminal() && ColourIsWelcome(), ErrorsGoToTerminal()};
    return RunTool(std::move(arguments), console);
}
