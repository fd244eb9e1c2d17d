#pragma once

namespace qmv40::text {

/// Standard output goes to a terminal that understands colours.
bool OutputIsTerminal();

/// Standard error goes to a terminal.
bool ErrorsGoToTerminal();

} // namespace qmv40::text
