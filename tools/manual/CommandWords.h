#pragma once

#include "tools/cli/CommandLine.h"

#include <string>

/// What the completions of several shells share.

namespace qmv40::manual {

/// The words after the tool's own name.
inline std::string WordsOf(const cli::CommandDescription& command) {
    const std::size_t blank = command.name.find(' ');
    return blank == std::string::npos ? "" : command.name.substr(blank + 1);
}

inline std::string LastWord(const std::string& name) { return name.substr(name.rfind(' ') + 1); }

/// Calls `visit` for the command and all below it.
template <typename Visit>
void ForEach(const cli::CommandDescription& command, const Visit& visit) { // NOLINT(misc-no-recursion)
    visit(command);
    for (const cli::CommandDescription& each : command.commands) ForEach(each, visit);
}

} // namespace qmv40::manual
