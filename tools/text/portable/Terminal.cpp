#include "tools/text/Terminal.h"

#include <unistd.h>

namespace qmv40::text {

bool OutputIsTerminal() { return isatty(STDOUT_FILENO) != 0; }

bool ErrorsGoToTerminal() { return isatty(STDERR_FILENO) != 0; }

} // namespace qmv40::text
