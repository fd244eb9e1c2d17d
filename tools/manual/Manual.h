#pragma once

#include "tools/cli/Tool.h"

#include <string>

/// Pages and completions, made from the definition of the command line, so that they cannot contradict it.

namespace qmv40::manual {

inline cli::CommandDescription DescribeTool() { return cli::MakeTool()->Describe(); }

/// The page for man, in the man macros.
std::string ManPage(const cli::CommandDescription& tool);

/// A script that teaches bash to complete the tool's command line. It needs nothing but bash.
std::string BashCompletion(const cli::CommandDescription& tool);

/// The same for zsh's completion system: a function file _qmv40.
std::string ZshCompletion(const cli::CommandDescription& tool);

/// The same for PowerShell: a script to be read from the user's profile.
std::string PowerShellCompletion(const cli::CommandDescription& tool);

} // namespace qmv40::manual
