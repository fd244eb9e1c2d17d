#pragma once

#include "tools/view/DrawnPlan.h"
#include "tools/view/Svg.h"

namespace qmv40::view {

/// One of the views of a drawing.

/// From where a view is seen. The machine's axes `right` and `up` are those of the paper.
struct ViewDirection {
    const char* name;
    const char* key;   ///< the class of its group
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

/// The free part of a cell, apart from the view's name and its rulers.
PaperCell DrawingAreaOf(const PaperCell& cell);

/// `millimetresToOne`: of the machine to one on paper. `middle`: what stands in the middle of the cell.
struct ViewScale {
    double millimetresToOne;
    model::Vector3 middle;
};

void DrawView(SvgWriter& svg, const ViewDirection& direction, const PaperCell& cell, const ViewScale& scale,
              const DrawnPlan& plan, const model::Vector3& pole);

// How things are marked, for the legend

/// The line of a move.
std::string LineStyle(MoveLevel level);
void DrawArrowhead(SvgWriter& svg, const PaperPoint& tip, const PaperPoint& from, double length,
                   const std::string& colour);
/// A way that goes straight towards the viewer (positive), or away (negative), or nowhere.
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
