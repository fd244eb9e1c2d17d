#pragma once

#include "tools/captures/Capture.h"
#include "tools/diagnosis/Finding.h"

namespace qmv40::report {

/// A finding as sentences, and its remedy. Lengths are printed in mm.
struct FindingMessage {
    std::string sentence;
    std::string remedy;
};

/// `tip`: the stylus tip of the fitted head.
FindingMessage MessageFor(const diagnosis::Finding& finding, const captures::CaptureFiles& files,
                          const model::Vector3& tip);

} // namespace qmv40::report
