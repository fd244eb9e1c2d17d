#pragma once

#include "tools/motion/Program.h"
#include "tools/text/Console.h"

namespace qmv40::motion {

/// For people: the way from the end of each plan of a tour to the start of the next, and the length of the whole tour.
void PrintWays(std::span<const Step> program, const text::Console& console);

} // namespace qmv40::motion
