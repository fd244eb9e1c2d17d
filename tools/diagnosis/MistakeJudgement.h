#pragma once

#include "tools/diagnosis/Diagnosis.h"

namespace qmv40::diagnosis {

/// What an error that the search found means: which mistake was made, where, and whether it matters. `index`: which of
/// the errors of the model. Nothing for what is of the head itself.
std::optional<Finding> JudgeMistake(const CaptureUnderTest& capture, const HeadModel& model, std::size_t index);

/// What a capture that is right when it is read otherwise means.
Finding JudgeRewriting(const Rewriting& rewriting, const HeadModel& model);

/// With mistakes enough anything is explained: they are believed one for a whole run of points, or three in all.
bool MistakesAreTooMany(const CapturedSets& sets, const HeadModel& model);

/// How far an error moves the points that it concerns, at most.
double DistanceBy(const CapturedSets& sets, const HeadModel& model, const ModelError& error);

} // namespace qmv40::diagnosis
