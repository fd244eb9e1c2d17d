#pragma once

#include "tools/cli/CommandLine.h"
#include "tools/recovery/RecoveryReport.h"

#include <optional>
#include <string>

namespace qmv40::cli {

/// What the options, or a journal, say about a plan that was stopped.
struct StopQuestion {
    std::optional<model::Vector3> standing;
    recovery::KnownMove known;
    double positionError = recovery::usualPositionError;
    std::string journal; ///< file name; empty: none
};

/// Adds --standing, --during, --after, --journal and --position-error. --standing is not required unless the caller
/// says so.
Option AddStopQuestion(Command& command, StopQuestion& question);

/// The question, with what the journal says. When the journal ends in a torn line, a message on `console` names it.
/// `question.standing` must be given.
recovery::Question QuestionAbout(const StopQuestion& question, const recovery::StoppedPlan& plan,
                                 const check::CheckOptions& options, const text::Console& console);

} // namespace qmv40::cli
