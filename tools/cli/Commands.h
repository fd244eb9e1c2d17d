#pragma once

#include "tools/cli/CommandLine.h"
#include "tools/text/Console.h"

namespace qmv40::cli {

/// Each function adds one command to the tool. The command runs while the command line is run, writes to `console`
/// (which must live until then), and throws InputError, UsageError or ComponentError when it cannot do its work.

void AddGeometryCommand(Command tool, const text::Console& console);
void AddMoveCommand(Command tool, const text::Console& console);
void AddExportCommand(Command tool, const text::Console& console);
void AddCheckCommand(Command tool, const text::Console& console);
void AddViewCommand(Command tool, const text::Console& console);
void AddWhereCommand(Command tool, const text::Console& console);
void AddWhichCommand(Command tool, const text::Console& console);
void AddStartCommand(Command tool, const text::Console& console);
void AddPoleCommand(Command tool, const text::Console& console);
void AddRecoverCommand(Command tool, const text::Console& console);
void AddFitCommand(Command tool, const text::Console& console);
void AddSettingsCommand(Command tool, const text::Console& console);
void AddSelfcheckCommand(Command tool, const text::Console& console);
void AddDoctorCommand(Command tool, const text::Console& console);

} // namespace qmv40::cli
