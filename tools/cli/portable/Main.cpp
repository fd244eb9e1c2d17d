#include "tools/cli/Tool.h"

#include <iostream>
#include <unistd.h>

int main(int argc, char** argv) {
    const qmv40::text::Console console{
        std::cout, std::cerr, isatty(STDOUT_FILENO) != 0 && qmv40::cli::ColourIsWelcome(), isatty(STDERR_FILENO) != 0};
    return qmv40::cli::RunTool({argv + 1, argv + argc}, console);
}
