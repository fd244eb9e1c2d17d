#pragma once

#include "tools/motion/Export.h"

#include <string>
#include <vector>

namespace qmv40::motion {

/// The inputs of a program.
struct Origin {
    std::span<const plans::Plan> plans;
    std::string geometry; ///< file names
    std::string settings; ///< empty: the machine's own
    model::Vector3 poleSphere;
    double safeHeight; ///< without the lift
    double lift;
};

/// The lines at the beginning of every file, for the person who runs it.
std::vector<std::string> HeadingOf(std::span<const Step> program, const Origin& origin, const ExportOptions& options);

} // namespace qmv40::motion
