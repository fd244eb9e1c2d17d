#include "tools/cli/Tool.h"
#include "tools/text/Terminal.h"

#include <iostream>

int main(int argc, char** argv) {
    const qmv40::text::Console console{std::cout, std::cerr,
                                       qmv40::text::OutputIsTerminal() && qmv40::cli::ColourIsWelcome(),
                                       qmv40::text::ErrorsGoToTerminal()};
    return qmv40::cli::RunTool({argv + 1, argv + argc}, console);
}
