#pragma once

#include "cli/Console.h"

#include <string>
#include <vector>

/// Runs the tool with the arguments that follow its name (UTF-8) and returns its exit code (Failures.h).
int RunTool(std::vector<std::string> arguments, const Console& console);

/// The user has not asked for plain text by setting NO_COLOR.
bool ColourIsWelcome();
