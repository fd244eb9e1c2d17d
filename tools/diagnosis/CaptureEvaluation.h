#pragma once

#include "tools/diagnosis/Diagnosis.h"

namespace qmv40::diagnosis {

/// What the figures of a diagnosis mean, the gravest first. `plain` is the head fitted without any error.
///
/// Each kind of finding has the false alarm rate and the least size of Thresholds.h. What a graver finding explains is
/// not reported beside it.
std::vector<Finding> Judge(const CaptureUnderTest& capture, const HeadFit& plain, const Diagnosis& diagnosis);

} // namespace qmv40::diagnosis
