#pragma once

#include "tools/check/PlanCheck.h"
#include "tools/text/Console.h"
#include "tools/text/Json.h"

/// What a check assumes: sizes that no geometry file has, and the obstacles around the head. A verdict holds only under
/// these assumptions.

namespace qmv40::check {

void PrintAssumptions(const CheckOptions& options, const text::Console& console);
text::Json AssumptionsJson(const CheckOptions& options);
/// {"length", "diameter", "tipDiameter"}; null without a stylus.
text::Json StylusJson(const std::optional<Stylus>& stylus);

/// One line for each: "stylus", "180 mm long, diameter 4 mm, tip 5 mm", and the options that change it.
struct AssumptionLine {
    std::string what;
    std::string value;
    std::string option;
};
std::vector<AssumptionLine> AssumptionLines(const CheckOptions& options);

} // namespace qmv40::check
