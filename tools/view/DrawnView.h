#pragma once

#include "tools/view/DrawnPlan.h"
#include "tools/view/Svg.h"

namespace qmv40::view {

/// One of the views of a drawing.

/// The direction from which a view is seen. The machine axes `right` and `up` point right and up on paper.
struct ViewDirection {
    const char* name;
    const char* key;   ///< the class of the view's SVG group
    std::size_t right; ///< index of the axis
    std::size_t up;
    model::Vector3 toViewer;
};

/// A part of the sheet in which a view is drawn.
struct PaperCell {
    PaperPoint corner;
    double width;
    double height;
};

/// The part of a cell that is free for drawing: without the view's name and its rulers.
PaperCell DrawingAreaOf(const PaperCell& cell);

/// `millimetresToOne`: millimetres of the machine for one on paper. `middle`: the point in the middle of the cell.
struct ViewScale {
    double millimetresToOne;
    model::Vector3 middle;
};

void DrawView(SvgWriter& svg, const ViewDirection& direction, const PaperCell& cell, const ViewScale& scale,
              const DrawnPlan& plan, const model::Vector3& pole);

// Marks, shared with the legend

/// The line of a move.
std::string LineStyle(MoveLevel level);
void DrawArrowhead(SvgWriter& svg, const PaperPoint& tip, const PaperPoint& from, double length,
                   const std::string& colour);
/// The mark of a move perpendicular to the paper: towards the viewer (positive), away (negative), or of length 0.
void DrawPointOfWay(SvgWriter& svg, const PaperPoint& at, double towardsViewer, MoveLevel level);
void DrawBalloonText(SvgWriter& svg, const PaperPoint& centre, const std::string& text, bool isHead);
std::string StartStyle();
std::string EndStyle();
std::string CentreLineStyle();
std::string CellStyle();

inline constexpr const char* headColour = "#6b6b6b";
inline constexpr const char* paperColour = "#ffffff";
inline constexpr const char* inkColour = "#000000";
inline constexpr const char* findingColour = "#c4001a";

} // namespace qmv40::view
