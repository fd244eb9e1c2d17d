#pragma once

#include "tools/check/CheckedTour.h"
#include "tools/text/Json.h"

namespace qmv40::view {

/// Plans to be looked at, and what they were checked on.
struct ViewedTour {
    std::string name;  ///< of the head: its geometry file's, without folders
    std::string title; ///< name and stops
    model::HeadModel head;
    check::CheckOptions options;
    check::CheckedTour tour;
};

/// A page of more plans than this works its points out from `motion`, and has no drawings: it stays small.
inline constexpr std::size_t mostPlansInFull = 10;

/// The head's name and the stops, in one line: of a long tour only how many plans there are, where it begins and ends.
std::string TitleText(const std::string& name, const std::vector<check::CheckedPlan>& plans);

/// "(0, 0) to (45, 90) to (15, -30)", the head positions one after the other.
std::string StopsText(const std::vector<check::CheckedPlan>& plans);

/// All that a page needs to show the plans without computing a coordinate: machine coordinates, mm and degrees. What it
/// holds docs/qmv40.md tells. Samples are at most a millimetre or a degree apart; a move that could not be run has
/// none, and the moves of more than `mostPlansInFull` plans.
text::Json ViewDocument(const ViewedTour& view);

/// A document as it may stand in a page's script element: nothing in it can end that, or begin another.
std::string EmbeddedDocument(const text::Json& document);

} // namespace qmv40::view
