#pragma once

#include "tools/cli/CommandLine.h"
#include "tools/recovery/RecoveryReport.h"

#include <optional>
#include <string>

namespace qmv40::cli {

/// What a person or a journal says about a plan that was stopped.
struct StopQuestion {
    std::optional<model::Vector3> standing;
    recovery::KnownMove known;
    double positionError = recovery::usualPositionError;
    std::string journal; ///< file name; empty: none
};

/// --standing, --during, --after, --journal and --position-error; the first is not required unless the caller says so.
Option AddStopQuestion(Command& command, StopQuestion& question);

/// The question as it is put, with what the journal says; a journal that ends in a torn line is named on `console`.
/// `question.standing` is given.
recovery::Question QuestionAbout(const StopQuestion& question, const recovery::StoppedPlan& plan,
                                 const check::CheckOptions& options, const text::Console& console);

} // namespace qmv40::cli
