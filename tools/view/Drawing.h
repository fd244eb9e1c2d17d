#pragma once

#include "tools/check/CheckedTour.h"

namespace qmv40::view {

/// A plan as a drawing for paper: A4 lying, top, front and side view in third-angle projection to one scale, the moves
/// numbered, and beside them what each is, legend, figures and verdict. One SVG element without identifiers, scripts or
/// references, so that several can stand in one page; it prints in grey.

struct DrawingOfPlan {
    std::string name;  ///< of the head
    std::string title; ///< of the whole
    const check::CheckedPlan& checked;
    const model::HeadModel& head;
    const check::BallSizes& sizes;
    std::size_t sheet; ///< counted from 1
    std::size_t sheets;
};

std::string ThreeViews(const DrawingOfPlan& drawing);

/// The content of a file of its own.
std::string DrawingFileText(const std::string& drawing);

} // namespace qmv40::view
