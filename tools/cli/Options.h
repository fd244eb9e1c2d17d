#pragma once

#include "cli/HeadAngles.h"

#include <CLI/CLI.hpp>
#include <optional>
#include <string>
#include <vector>

/// What every command takes.
struct CommonOptions {
    std::string settings; ///< file name; empty: the machine's own settings
    bool json = false;
};

void AddCommonOptions(CLI::App& command, CommonOptions& options);
void AddGeometryOption(CLI::App& command, std::string& fileName);
void AddFromOption(CLI::App& command, HeadAngles& from);
/// One that may be left out.
void AddFromOption(CLI::App& command, std::optional<HeadAngles>& from);
void AddToOption(CLI::App& command, std::vector<HeadAngles>& targets);
