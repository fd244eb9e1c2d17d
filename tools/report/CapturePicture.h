#pragma once

#include "tools/captures/CapturedPoint.h"
#include "tools/report/FindingMessage.h"
#include "tools/text/OutputFile.h"

#include <string>
#include <vector>

namespace qmv40::report {

/// A capture that is drawn, and what was found in it.
struct PicturedCapture {
    const captures::CaptureFiles& files;
    const std::vector<diagnosis::Finding>& findings;
};

/// Both circles seen along their axes, with the radial residual of each point as a stick across the circle, and below
/// them the residuals out of the circle's plane over the angle that was turned. Residuals are drawn 1000 times as long:
/// a millimetre is a micrometre. Where half of them would leave the picture, they are drawn 100 times or 10 times as
/// long, or as they are. A stick that leaves the picture all the same ends in an arrow. The points of faults and
/// warnings are marked and named by file and line; of more than three points the first and the last are named. An `svg`
/// element in millimetres of paper, with colours for light and dark surroundings.
std::string CapturePicture(const PicturedCapture& capture);

/// The picture as a file, and the kind of such files.
std::string PictureFileText(const PicturedCapture& capture);
text::FileKind PictureKind();

} // namespace qmv40::report
