#include "tools/text/Terminal.h"

#include <windows.h>

namespace qmv40::text {

namespace {

/// The standard handle is a console, and from now on it accepts colour sequences.
bool UnderstandsColours(DWORD standardHandle) {
    DWORD mode = 0;
    const HANDLE console = GetStdHandle(standardHandle);
    return GetConsoleMode(console, &mode) != 0 &&
           SetConsoleMode(console, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING) != 0;
}

} // namespace

bool OutputIsTerminal() { return UnderstandsColours(STD_OUTPUT_HANDLE); }

bool ErrorsGoToTerminal() { return UnderstandsColours(STD_ERROR_HANDLE); }

} // namespace qmv40::text
