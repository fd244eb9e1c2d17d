#pragma once

#include "tools/check/CheckedTour.h"
#include "tools/text/OutputFile.h"

namespace qmv40::view {

/// A plan as a drawing for paper: A4 landscape, with top, front and side view in third-angle projection at one scale.
/// The moves are numbered; beside the views are a table of the moves, a legend, figures and the verdict. It is one SVG
/// element without identifiers, scripts or references, so that several can be part of one page. It can be printed in
/// grey.

struct DrawingOfPlan {
    std::string name;  ///< of the head
    std::string title; ///< of the whole tour
    const check::CheckedPlan& checked;
    const model::HeadModel& head;
    const check::BallSizes& sizes;
    std::size_t sheet; ///< counted from 1
    std::size_t sheets;
};

std::string ThreeViews(const DrawingOfPlan& drawing);

/// The content of an SVG file with the drawing, and the kind of these files.
std::string DrawingFileText(const std::string& drawing);
text::FileKind DrawingKind();

} // namespace qmv40::view
