#pragma once

#include "cli/Console.h"

namespace CLI {
class App;
}

/// Each adds one command to the tool. The command runs while the command line is parsed, writes to `console` (which
/// must live until then), and throws InputError, UsageError or ComponentError when it cannot do its work.

void AddGeometryCommand(CLI::App& tool, const Console& console);
void AddMoveCommand(CLI::App& tool, const Console& console);
void AddCheckCommand(CLI::App& tool, const Console& console);
void AddViewCommand(CLI::App& tool, const Console& console);
void AddStartCommand(CLI::App& tool, const Console& console);
void AddPoleCommand(CLI::App& tool, const Console& console);
void AddFitCommand(CLI::App& tool, const Console& console);
void AddSettingsCommand(CLI::App& tool, const Console& console);
void AddSelfcheckCommand(CLI::App& tool, const Console& console);
void AddDoctorCommand(CLI::App& tool, const Console& console);
