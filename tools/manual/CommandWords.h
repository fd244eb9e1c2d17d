#pragma once

#include "tools/cli/CommandLine.h"

#include <string>

/// Shared by the completions of all shells.

namespace qmv40::manual {

/// The words of a command after the tool's name.
inline std::string WordsOf(const cli::CommandDescription& command) {
    const std::size_t blank = command.name.find(' ');
    return blank == std::string::npos ? "" : command.name.substr(blank + 1);
}

inline std::string LastWord(const std::string& name) { return name.substr(name.rfind(' ') + 1); }

/// Calls `visit` for the command and for all commands below it.
template <typename Visit>
void ForEach(const cli::CommandDescription& command, const Visit& visit) { // NOLINT(misc-no-recursion)
    visit(command);
    for (const cli::CommandDescription& each : command.commands) ForEach(each, visit);
}

} // namespace qmv40::manual
