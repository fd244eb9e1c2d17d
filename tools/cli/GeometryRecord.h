#pragma once

#include "tools/cli/JudgedCapture.h"
#include "tools/report/RecordPage.h"

#include <string>

namespace qmv40::cli {

/// What the page of `qmv40 geometry --record` is about.
struct RecordedGeometry {
    const JudgedCapture& judged;
    const captures::CaptureFiles& files;
    std::string headNumber;   ///< empty: not given
    std::string geometryFile; ///< the geometry file that was written; empty: none
};

/// The page shows the present time and the settings in force.
report::Record RecordOf(const RecordedGeometry& geometry);

} // namespace qmv40::cli
