#pragma once

#include "tools/diagnosis/Capture.h"
#include "tools/diagnosis/Finding.h"
#include "tools/diagnosis/fit/CapturedPoint.h"
#include "tools/model/Vector3.h"

#include <span>
#include <string>

namespace qmv40::diagnosis {

/// Both files of a capture. A point is named by its number: the points of both sets are numbered together, those of the
/// A set first.
struct CaptureFiles {
    CaptureFile aAxis;
    CaptureFile bAxis;

    bool IsOfASet(std::size_t point) const { return point < aAxis.items.size(); }
    const CaptureFile& FileOf(std::size_t point) const { return IsOfASet(point) ? aAxis : bAxis; }
    const HeadAlignmentDataItem& ItemOf(std::size_t point) const;
    std::size_t LineOf(std::size_t point) const;
    /// "file:line", the form in which compilers name places.
    std::string NameOf(std::size_t point) const;
};

/// A finding as sentences, and its remedy. Lengths are printed in mm.
struct FindingMessage {
    std::string sentence;
    std::string remedy;
};

/// `tip`: the stylus tip of the fitted head.
FindingMessage MessageFor(const Finding& finding, const CaptureFiles& files, const model::Vector3& tip);

} // namespace qmv40::diagnosis
