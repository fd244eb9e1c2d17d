#pragma once

#include "tools/motion/Program.h"
#include "tools/text/Console.h"

namespace qmv40::motion {

/// For people: how the machine gets from the end of each plan of a tour to the start of the next, and how long all of
/// it is.
void PrintWays(std::span<const Step> program, const text::Console& console);

} // namespace qmv40::motion
