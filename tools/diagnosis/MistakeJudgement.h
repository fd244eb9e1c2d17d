#pragma once

#include "tools/diagnosis/Diagnosis.h"

namespace qmv40::diagnosis {

/// The meaning of an error that the search has found: which mistake was made, where, and whether it matters. `index`:
/// the number of the error in the model. Empty for an error of the head.
std::optional<Finding> JudgeMistake(const CaptureUnderTest& capture, const fit::HeadModel& model, std::size_t index);

/// The finding for a capture that is right after its columns were rewritten.
Finding JudgeRewriting(const Rewriting& rewriting, const fit::HeadModel& model);

/// Enough mistakes explain any points. Accepted are one mistake of a whole run of points, or three mistakes in all.
bool MistakesAreTooMany(const fit::CapturedSets& sets, const fit::HeadModel& model);

/// The largest distance by which an error moves one of its points.
double DistanceBy(const fit::CapturedSets& sets, const fit::HeadModel& model, const fit::ModelError& error);

} // namespace qmv40::diagnosis
