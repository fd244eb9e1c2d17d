#pragma once

#include "tools/selfcheck/SelfChecks.h"
#include "tools/text/Console.h"

namespace qmv40::selfcheck {

/// The checks for a person or as one document: expected, got, difference, unit, passed or not.
/// True when all passed.
bool ReportSelfChecks(const std::vector<SelfCheckGroup>& groups, bool asJson, const text::Console& console);

} // namespace qmv40::selfcheck
