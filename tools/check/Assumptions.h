#pragma once

#include "tools/check/PlanCheck.h"
#include "tools/text/Console.h"
#include "tools/text/Json.h"

/// What a check took for granted: sizes that no geometry file holds, and what stands around. Without it a verdict means
/// nothing.

namespace qmv40::check {

void PrintAssumptions(const CheckOptions& options, const text::Console& console);
text::Json AssumptionsJson(const CheckOptions& options);

/// One line each, "stylus: 180 mm, diameter 4 mm", and the option that says otherwise.
struct AssumptionLine {
    std::string what;
    std::string value;
    std::string option;
};
std::vector<AssumptionLine> AssumptionLines(const CheckOptions& options);

} // namespace qmv40::check
