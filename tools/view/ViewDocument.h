#pragma once

#include "tools/check/CheckedTour.h"
#include "tools/text/Json.h"

namespace qmv40::view {

/// Plans for viewing, and what they were checked against.
struct ViewedTour {
    std::string name;  ///< of the head: the name of its geometry file without folders
    std::string title; ///< name and stops
    model::HeadModel head;
    check::CheckOptions options;
    check::CheckedTour tour;
};

/// A page with more plans has no samples and no drawings, so that it stays small: it computes the points of a move from
/// the move's member `motion` in the document.
inline constexpr std::size_t mostPlansInFull = 10;

/// The head's name and the stops in one line. For a long tour only the number of plans, its start and its end.
std::string TitleText(const std::string& name, const std::vector<check::CheckedPlan>& plans);

/// Everything that a page needs to show the plans: machine coordinates, mm and degrees. Up to `mostPlansInFull` plans
/// are shown without computing a coordinate. docs/qmv40.md describes its members. Samples are at most a millimetre or a
/// degree apart. There are none for a move that could not be run, nor in a document of more than `mostPlansInFull`
/// plans.
text::Json ViewDocument(const ViewedTour& view);

/// The document in the form in which a page's script element can hold it: no text in it ends the element or begins
/// another.
std::string EmbeddedDocument(const text::Json& document);

} // namespace qmv40::view
