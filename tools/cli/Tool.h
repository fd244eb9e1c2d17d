#pragma once

#include "cli/Console.h"

#include <string>
#include <vector>

namespace CLI {
class App;
}

/// Gives `tool` its name, its texts and all its commands, which write to `console` (it must live as long).
void MakeTool(CLI::App& tool, const Console& console);

/// Runs the tool with the arguments that follow its name (UTF-8) and returns its exit code (Failures.h).
int RunTool(std::vector<std::string> arguments, const Console& console);

/// The user has not asked for plain text by setting NO_COLOR.
bool ColourIsWelcome();
