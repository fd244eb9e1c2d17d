#pragma once

#include "tools/cli/ComputedHead.h"
#include "tools/diagnosis/Diagnosis.h"
#include "tools/diagnosis/FindingMessage.h"
#include "tools/record/RecordPage.h"

#include <optional>
#include <string>
#include <vector>

namespace qmv40::cli {

/// What the page of `qmv40 geometry --record` is about.
struct RecordedGeometry {
    const ComputedHead& head;
    const diagnosis::CaptureUnderTest& capture;
    const diagnosis::CaptureFiles& files;
    const std::vector<diagnosis::Finding>& findings;
    const std::optional<diagnosis::Diagnosis>& diagnosis;
    std::string headNumber;   ///< empty: not given
    std::string geometryFile; ///< the geometry file that was written; empty: none
};

/// The page has the time of this moment and the settings in force.
record::Record RecordOf(const RecordedGeometry& geometry);

} // namespace qmv40::cli
