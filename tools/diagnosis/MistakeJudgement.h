#pragma once

#include "tools/diagnosis/Diagnosis.h"

namespace qmv40::diagnosis {

/// The meaning of an error that the search has found: which mistake was made, where, and whether it matters. `index`:
/// the number of the error in the model. Empty when the error is a property of the head, and no mistake, and for the
/// second error of a swap: the finding of the first one names both points.
std::optional<Finding> JudgeMistake(const CaptureUnderTest& capture, const fit::HeadModel& model, std::size_t index);

/// The finding for a capture that is right after its columns were rewritten.
Finding JudgeRewriting(const Rewriting& rewriting, const captures::CapturedSets& sets, const fit::HeadModel& model);

/// True when the model has more than one mistake over a run of points, or more than three mistakes in all: with enough
/// mistakes any points can be explained. Mistakes that move their points too little for a fault do not count.
bool MistakesAreTooMany(const captures::CapturedSets& sets, const fit::HeadModel& model);

} // namespace qmv40::diagnosis
