#pragma once

#include "tools/selfcheck/SelfChecks.h"
#include "tools/text/Console.h"

namespace qmv40::selfcheck {

/// Prints the checks as a table or as one JSON document: expected, got, difference, unit, passed or not. Returns true
/// when all passed.
bool ReportSelfChecks(const std::vector<SelfCheckGroup>& groups, bool asJson, const text::Console& console);

} // namespace qmv40::selfcheck
