#pragma once

#include "tools/check/CheckedTour.h"
#include "tools/recovery/Recovery.h"
#include "tools/text/Console.h"
#include "tools/text/Json.h"

namespace qmv40::recovery {

/// The question, and what its answer needs for its texts.
struct Answered {
    const StoppedPlan& plan;
    Question question;
    Recovery recovery;
};

/// The reasons for the answer, in sentences: which move it is and how far it is made, why the state is not known and
/// what to look at, why a way out is absent, and which SetCurrentHeadPosition call a program has to make afterwards.
std::string Why(const Answered& answered);

/// Verdict, ways out as tables, and what to do.
void PrintRecovery(const Answered& answered, const text::Console& console);

/// {"state", "stoppedIn", "A", "B", "finish", "backOut", "why"}; a way out that is not safe is left out.
text::Json RecoveryJson(const Answered& answered);

/// The ways out as checked plans, for viewing: first the rest of the plan, then the way back. A way that is not safe
/// has its finding. When the state is unknown: the plan itself, with the finding that says so.
check::CheckedTour ShownWays(const StoppedPlan& plan, const Question& question, const Recovery& recovery);

} // namespace qmv40::recovery
