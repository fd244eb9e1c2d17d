#pragma once

#include "tools/diagnosis/Diagnosis.h"

namespace qmv40::diagnosis {

/// The findings of a diagnosis, the most severe first. `plain` is the head fitted without model errors.
///
/// The false alarm rate of the tests and the smallest sizes of effects that are reported are in Thresholds.h. What a
/// more severe finding explains is not reported beside it.
std::vector<Finding> Judge(const CaptureUnderTest& capture, const fit::HeadFit& plain, const Diagnosis& diagnosis);

} // namespace qmv40::diagnosis
