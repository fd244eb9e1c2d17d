#pragma once

#include "tools/cli/CommandLine.h"

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

/// Each function adds one command to the tool. A command throws InputError, DoubtfulInput, UsageError or ComponentError
/// when it cannot do its work.

void AddGeometryCommand(Command tool);
void AddMoveCommand(Command tool);
void AddExportCommand(Command tool);
void AddCheckCommand(Command tool);
void AddViewCommand(Command tool);
void AddWhereCommand(Command tool);
void AddWhichCommand(Command tool);
void AddStartCommand(Command tool);
void AddPoleCommand(Command tool);
void AddRecoverCommand(Command tool);
void AddFitCommand(Command tool);
void AddSettingsCommand(Command tool);
void AddSelfcheckCommand(Command tool);
void AddDoctorCommand(Command tool);

} // namespace qmv40::cli
