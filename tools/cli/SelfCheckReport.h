#pragma once

#include "cli/Console.h"
#include "cli/SelfChecks.h"

/// The checks for a person or as one document: expected, got, difference, unit, passed or not.
/// Throws CommandEnded (exitFindings) after that when one is off.
void ReportSelfChecks(const std::vector<SelfCheckGroup>& groups, bool asJson, const Console& console);
