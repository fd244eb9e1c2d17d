#include "cli/Platform.h"
#include "cli/Tool.h"

#include <iostream>

int main(int argc, char** argv) {
    const Console console{std::cout, std::cerr, OutputIsTerminal() && ColourIsWelcome(), ErrorsGoToTerminal()};
    return RunTool({argv + 1, argv + argc}, console);
}
