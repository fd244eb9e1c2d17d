#pragma once

#include "tools/cli/CommandLine.h"
#include "tools/text/Console.h"

#include <memory>
#include <string>
#include <vector>

namespace qmv40::cli {

/// The tool's name, texts and commands.
std::unique_ptr<CommandLine> MakeTool();

/// Runs the tool with the arguments after its name (UTF-8) and returns its exit code (Commands.h). On Windows the
/// thread must have COM.
int RunTool(const std::vector<std::string>& arguments, const text::Console& console);

/// True unless the user asked for plain text by setting NO_COLOR.
bool ColourIsWelcome();

} // namespace qmv40::cli
