#pragma once

#include "tools/diagnosis/Capture.h"
#include "tools/diagnosis/CapturedPoint.h"
#include "tools/diagnosis/Finding.h"
#include "tools/model/Vector3.h"

#include <span>
#include <string>

namespace qmv40::diagnosis {

/// A capture as its two files give it, for naming its points to people: counted through, the A set first.
struct CaptureFiles {
    CaptureFile aAxis;
    CaptureFile bAxis;

    bool IsOfASet(std::size_t point) const { return point < aAxis.items.size(); }
    const CaptureFile& FileOf(std::size_t point) const { return IsOfASet(point) ? aAxis : bAxis; }
    const HeadAlignmentDataItem& ItemOf(std::size_t point) const;
    std::size_t LineOf(std::size_t point) const;
    /// As compilers name places: file:line.
    std::string NameOf(std::size_t point) const;
};

/// What was found, in a sentence or two, and what to do about it. Lengths are called mm.
struct FindingWords {
    std::string sentence;
    std::string remedy;
};

/// `tip`: the stylus tip as the whole head was fitted.
FindingWords WordsFor(const Finding& finding, const CaptureFiles& files, const model::Vector3& tip);

} // namespace qmv40::diagnosis
