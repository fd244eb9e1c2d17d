#include "tools/text/Terminal.h"

#include <windows.h>

namespace qmv40::text {

namespace {

/// True when the standard handle is a console. Switches its colour sequences on.
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
