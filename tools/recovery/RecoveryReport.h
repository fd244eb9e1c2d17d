#pragma once

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

} // namespace qmv40::recovery
