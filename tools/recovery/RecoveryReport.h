#pragma once

#include "tools/recovery/Recovery.h"
#include "tools/text/Console.h"
#include "tools/text/Json.h"

namespace qmv40::recovery {

/// What was asked, for the words of the answer.
struct Answered {
    const StoppedPlan& plan;
    Question question;
    Recovery recovery;
};

/// What the answer rests on, in sentences: which move it is and how far, why the state is not known and what to look
/// at, why a way out is absent, and which SetCurrentHeadPosition a program needs afterwards.
std::string Why(const Answered& answered);

/// Verdict, ways out as tables, and what to do.
void PrintRecovery(const Answered& answered, const text::Console& console);

/// {"state", "stoppedIn", "A", "B", "finish", "backOut", "why"}; a way out that is not safe is left out.
text::Json RecoveryJson(const Answered& answered);

} // namespace qmv40::recovery
