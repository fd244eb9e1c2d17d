#pragma once

#include "tools/diagnosis/Diagnosis.h"

namespace qmv40::diagnosis {

/// The findings of a diagnosis, the most severe first. `plain` is the head fitted without model errors.
///
/// Each kind of finding has the false alarm rate and the smallest size of Thresholds.h. What a more severe finding
/// explains is not reported beside it.
std::vector<Finding> Judge(const CaptureUnderTest& capture, const fit::HeadFit& plain, const Diagnosis& diagnosis);

} // namespace qmv40::diagnosis
