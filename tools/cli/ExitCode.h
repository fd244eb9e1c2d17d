#pragma once

namespace qmv40::cli {

/// The exit codes of the tool.
enum ExitCode : int {
    exitDone = 0,
    exitRefused = 1,    ///< the component refused
    exitWrongUsage = 2, ///< the command line makes no sense
    exitBadFile = 3,    ///< a file is missing, malformed or cannot be written
    exitFindings = 4    ///< a check ran and found something wrong
};

/// Thrown by a command that has printed everything; only the exit code remains.
struct CommandEnded {
    ExitCode exitCode;
};

} // namespace qmv40::cli
