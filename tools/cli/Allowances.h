#pragma once

#include "tools/check/PlanCheck.h"
#include "tools/cli/CommandLine.h"

namespace qmv40::cli {

/// What the command line says of machine, head and fixtures.
struct Allowances {
    check::CheckOptions options;
    std::optional<double> stylusLength;
    check::Stylus stylus; ///< its diameters; counts when a length was given
    std::vector<std::string> obstacleFiles;

    /// The same with the files of obstacles read. Throws InputError for a file that cannot be used.
    check::CheckOptions Read() const;
};

/// Options of every command that checks plans: sizes of sphere, levers, head and stylus, clearance, table, travel,
/// obstacles.
void AddAllowances(Command& command, Allowances& allowances);

} // namespace qmv40::cli
