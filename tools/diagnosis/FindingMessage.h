#pragma once

#include "tools/diagnosis/Capture.h"
#include "tools/diagnosis/Finding.h"

namespace qmv40::diagnosis {

/// A finding as sentences, and its remedy. Lengths are printed in mm.
struct FindingMessage {
    std::string sentence;
    std::string remedy;
};

/// `tip`: the stylus tip of the fitted head.
FindingMessage MessageFor(const Finding& finding, const CaptureFiles& files, const model::Vector3& tip);

} // namespace qmv40::diagnosis
