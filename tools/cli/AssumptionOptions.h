#pragma once

#include "tools/check/PlanCheck.h"
#include "tools/cli/CommandLine.h"

namespace qmv40::cli {

/// The options for what a check assumes about machine, head and fixtures.
struct AssumptionOptions {
    check::CheckOptions options;
    std::optional<double> stylusLength;
    check::Stylus stylus; ///< its diameters; used when a length was given
    std::vector<std::string> obstacleFiles;

    /// The options of a check, with the obstacle files read. Throws InputError for a file that cannot be used.
    check::CheckOptions Read() const;
};

/// Options of the commands that show the result of a check (`qmv40 export` checks without them): sizes of sphere, stem,
/// levers, head and stylus, clearance, table, travel, obstacles.
void AddAssumptionOptions(Command& command, AssumptionOptions& assumptions);

} // namespace qmv40::cli
