#pragma once

#include "tools/cli/CommandLine.h"
#include "tools/model/HeadAngles.h"

#include <optional>
#include <string>
#include <vector>

namespace qmv40::cli {

/// What nearly every command takes.
struct CommonOptions {
    std::string settings; ///< file name; empty: the machine's own settings
    bool json = false;
};

void AddJsonOption(Command& command, bool& json);
/// --json and --settings.
void AddCommonOptions(Command& command, CommonOptions& options);
void AddGeometryOption(Command& command, std::string& fileName);
/// Required.
void AddFromOption(Command& command, model::HeadAngles& from);
/// Not required.
void AddFromOption(Command& command, std::optional<model::HeadAngles>& from);
/// Not required unless the caller says so.
Option AddToOption(Command& command, std::vector<model::HeadAngles>& targets);

} // namespace qmv40::cli
