#include "tools/view/DrawnView.h"

#include "tools/text/Numbers.h"
#include "tools/view/Balloons.h"

#include <algorithm>
#include <cmath>

namespace qmv40::view {

namespace {

// Margins inside a cell, mm on paper
constexpr double nameHeight = 5.5;
constexpr double rulerWidth = 9.0;
constexpr double rulerHeight = 4.5;
constexpr double margin = 2.0;

constexpr double rulerText = 2.0;
constexpr const char* rulerColour = "#555555";
constexpr double axisLength = 9.0;

const char* ColourOf(MoveLevel level) {
    constexpr const char* colours[] = {"#176b3a", "#9a5b00", "#1d4e9e", findingColour};
    return colours[static_cast<int>(level)];
}

class View {
public:
    View(SvgWriter& theSvg, const ViewDirection& theDirection, const PaperCell& theCell, const ViewScale& theScale,
         const DrawnPlan& thePlan)
        : svg(theSvg), direction(theDirection), cell(theCell), area(DrawingAreaOf(theCell)), scale(theScale),
          plan(thePlan), balloons(area.corner, area.width, area.height) {}

    void DrawName() const {
        svg.Rectangle(cell.corner, cell.width, cell.height, CellStyle());
        svg.Text({cell.corner.x + margin, cell.corner.y + 4.2}, 2.9, direction.name, Attribute("font-weight", "bold"));
    }

    void DrawRulers(const model::Vector3& pole) const {
        constexpr double largestCoordinate = 1e5; // there is no space for a longer number
        for (const std::size_t axis : {direction.right, direction.up}) {
            if (std::abs(pole[axis]) <= largestCoordinate) DrawRuler(axis, pole[axis]);
        }
    }

    /// The names of the axes, at the ends of the rulers.
    void DrawAxes() const {
        constexpr const char* names[] = {"X", "Y", "Z"};
        const PaperPoint right{cell.corner.x + cell.width - 4.5, cell.corner.y + cell.height - 1.8};
        const PaperPoint up{cell.corner.x + 2.0, cell.corner.y + nameHeight + 1.0};
        const std::string style = Stroked(inkColour, 0.25);
        const auto draw = [&](const PaperPoint& from, const PaperPoint& tip, const PaperPoint& name, std::size_t axis) {
            svg.Line(from, tip, style);
            DrawArrowhead(svg, tip, from, 2.0, inkColour);
            svg.Text(name, 2.6, names[axis], Attribute("font-weight", "bold"));
        };
        draw({right.x - axisLength + 2.0, right.y}, right, {right.x + 1.0, right.y + 0.9}, direction.right);
        draw({up.x, up.y + axisLength - 2.0}, up, {up.x + 1.2, up.y + 2.2}, direction.up);
    }

    void DrawSphere() const {
        const PaperPoint centre = At({0.0, 0.0, 0.0});
        const double radius = ToPaper(plan.sphereRadius);
        const double arm = radius + 2.0;
        svg.Circle(centre, radius, Attribute("class", "sphere") + Filled("#e3e3e3") + Stroked(inkColour, 0.3));
        svg.Line({centre.x - arm, centre.y}, {centre.x + arm, centre.y}, CentreLineStyle());
        svg.Line({centre.x, centre.y - arm}, {centre.x, centre.y + arm}, CentreLineStyle());
    }

    void DrawSafeHeight() {
        if (!plan.safeHeight || direction.up != 2) return;
        const double y = At({0.0, 0.0, *plan.safeHeight}).y;
        svg.Line({area.corner.x, y}, {area.corner.x + area.width, y}, CentreLineStyle());
        svg.Text({area.corner.x + area.width, y - 0.6}, rulerText, "safe height",
                 Attribute("text-anchor", "end") + Filled(rulerColour));
        balloons.Avoid({{area.corner.x + area.width - 11.0, y - 1.3}, {area.corner.x + area.width, y - 1.3}});
    }

    void DrawHead(const std::optional<DrawnHead>& head, const std::string& style) const {
        if (!head) return;
        const PaperPoint centre = At(head->centre);
        const PaperPoint cup = At(head->driveCup);
        svg.Line(centre, At(head->stylusEnd), style);
        svg.Circle(At(head->stylusEnd), 0.6, Filled(paperColour) + style);
        svg.Line(centre, cup, style);
        for (const DrawnHead::Lever& lever : head->levers) {
            svg.Line(At(lever.pivot), At(lever.ball), style);
            svg.Circle(At(lever.pivot), 0.5, Filled(headColour));
            svg.Circle(At(lever.ball), ToPaper(plan.ballRadius),
                       Filled(paperColour) + Attribute("fill-opacity", "0.6") + style);
        }
        svg.Rectangle({cup.x - 1.1, cup.y - 1.1}, 2.2, 2.2, Filled(paperColour) + style);
        svg.Circle(centre, 1.1, Filled(headColour));
    }

    void DrawMoves() {
        for (const DrawnMove& move : plan.moves) {
            if (move.way.empty()) continue;
            const PaperWay way = WayOf(move);
            const std::string number = std::to_string(move.index + 1);
            svg.Way(way, Attribute("class", "move") + Attribute("data-move", number) + LineStyle(move.level));
            balloons.Avoid(way);
            constexpr double shortest = 0.8; // mm on paper; a shorter line is not seen
            const double length = LengthOf(way);
            if (length < shortest) {
                const model::Vector3 whole = move.way.back() - move.way.front();
                DrawPointOfWay(svg, way.front(), ToPaper(model::Dot(whole, direction.toViewer)), move.level);
                continue;
            }
            const double arrow = std::min(3.0, length * 0.8);
            const double back = (length - arrow) / length * placeOfNumber;
            DrawArrowhead(svg, PointAlong(way, back + arrow / length), PointAlong(way, back), arrow,
                          ColourOf(move.level));
        }
    }

    void NumberMoves() {
        for (const DrawnMove& move : plan.moves) {
            if (!move.way.empty()) DrawBalloon(WayOf(move), std::to_string(move.index + 1), false);
        }
    }

    void NameHead(const std::optional<DrawnHead>& head, const char* name) {
        if (head) DrawBalloon({At(head->centre)}, name, true);
    }

private:
    double ToPaper(double length) const { return length / scale.millimetresToOne; }
    PaperPoint At(const model::Vector3& place) const {
        const model::Vector3 fromMiddle = place - scale.middle;
        return {area.corner.x + area.width / 2.0 + ToPaper(fromMiddle[direction.right]),
                area.corner.y + area.height / 2.0 - ToPaper(fromMiddle[direction.up])};
    }
    PaperWay WayOf(const DrawnMove& move) const {
        PaperWay way;
        for (const model::Vector3& place : move.way) way.push_back(At(place));
        return way;
    }

    /// A ruler with machine coordinates along an axis of the view.
    void DrawRuler(std::size_t axis, double pole) const {
        const bool isAcross = axis == direction.right;
        const double half = (isAcross ? area.width : area.height) / 2.0 * scale.millimetresToOne;
        constexpr double steps[] = {10.0, 20.0, 50.0, 100.0, 200.0, 500.0};
        constexpr double closest = 12.0; // mm on paper
        const auto* const step = std::ranges::find_if(steps, [&](double each) { return ToPaper(each) >= closest; });
        if (step == std::end(steps)) return;
        const double middle = pole + scale.middle[axis];
        const double nameOfAxis = isAcross ? 14.0 : 10.0; // mm on paper, at the end of the ruler
        const double last = middle + half - nameOfAxis * scale.millimetresToOne;
        const double first = std::ceil((middle - half) / *step) * *step;
        const int ticks = static_cast<int>(std::floor((last - first) / *step)) + 1;
        for (int i = 0; i < ticks; ++i) {
            const double at = first + i * *step;
            model::Vector3 place = scale.middle;
            place[axis] = at - pole;
            DrawTick(isAcross, At(place), text::FixedText(at, 0));
        }
    }

    void DrawTick(bool isAcross, const PaperPoint& place, const std::string& text) const {
        constexpr double length = 1.2;
        const std::string style = Filled(rulerColour);
        if (isAcross) {
            const double y = cell.corner.y + cell.height;
            svg.Line({place.x, y}, {place.x, y - length}, Stroked(headColour, 0.15));
            svg.Text({place.x, y - length - 0.6}, rulerText, text, style + Attribute("text-anchor", "middle"));
        } else {
            const double x = cell.corner.x;
            svg.Line({x, place.y}, {x + length, place.y}, Stroked(headColour, 0.15));
            svg.Text({x + length + 0.4, place.y + rulerText / 3.0}, rulerText, text, style);
        }
    }

    void DrawBalloon(const PaperWay& line, const std::string& text, bool isHead) {
        const Balloon balloon = balloons.Place(line);
        svg.Line(balloon.anchor, balloon.centre, Stroked(inkColour, 0.12));
        DrawBalloonText(svg, balloon.centre, text, isHead);
    }

    SvgWriter& svg;
    const ViewDirection& direction;
    const PaperCell& cell;
    const PaperCell area;
    const ViewScale& scale;
    const DrawnPlan& plan;
    Balloons balloons;
};

} // namespace

PaperCell DrawingAreaOf(const PaperCell& cell) {
    return {{cell.corner.x + rulerWidth, cell.corner.y + nameHeight},
            cell.width - rulerWidth - margin,
            cell.height - nameHeight - rulerHeight};
}

std::string LineStyle(MoveLevel level) {
    // Levels differ in width and dashes, so that they can be told apart without colour.
    struct Line {
        double width;
        const char* dashes;
    };
    constexpr Line lines[] = {{0.3, ""}, {0.4, "2.6 0.9"}, {0.75, ""}, {1.0, "0.9 0.7"}};
    const Line& line = lines[static_cast<int>(level)];
    return Stroked(ColourOf(level), line.width, line.dashes) + Attribute("stroke-linejoin", "round");
}

std::string StartStyle() { return Stroked(headColour, 0.25); }
std::string EndStyle() { return Stroked(headColour, 0.25, "1.1 0.7"); }
std::string CentreLineStyle() { return Stroked(headColour, 0.15, "4 0.8 0.8 0.8"); }
std::string CellStyle() { return Filled("none") + Stroked("#b0b0b0", 0.15); }

void DrawArrowhead(SvgWriter& svg, const PaperPoint& tip, const PaperPoint& from, double length,
                   const std::string& colour) {
    const double distance = Distance(from, tip);
    if (distance == 0.0) return;
    const PaperPoint back{(from.x - tip.x) / distance * length, (from.y - tip.y) / distance * length};
    constexpr double slenderness = 0.36;
    svg.Area({tip,
              {tip.x + back.x - back.y * slenderness, tip.y + back.y + back.x * slenderness},
              {tip.x + back.x + back.y * slenderness, tip.y + back.y - back.x * slenderness}},
             Filled(colour));
}

void DrawPointOfWay(SvgWriter& svg, const PaperPoint& at, double towardsViewer, MoveLevel level) {
    constexpr double radius = 1.0;
    constexpr double leastDepth = 0.2; // mm on paper
    const std::string colour = ColourOf(level);
    if (std::abs(towardsViewer) < leastDepth) return svg.Circle(at, radius / 2.0, Filled(colour));
    const std::string line = Stroked(colour, 0.25);
    svg.Circle(at, radius, Filled(paperColour) + line);
    if (towardsViewer > 0.0) return svg.Circle(at, radius / 3.0, Filled(colour));
    const double arm = radius * std::sqrt(0.5);
    svg.Line({at.x - arm, at.y - arm}, {at.x + arm, at.y + arm}, line);
    svg.Line({at.x - arm, at.y + arm}, {at.x + arm, at.y - arm}, line);
}

void DrawBalloonText(SvgWriter& svg, const PaperPoint& centre, const std::string& text, bool isHead) {
    constexpr double size = 2.3;
    const std::string colour = isHead ? "#4a4a4a" : paperColour;
    svg.Circle(centre, balloonRadius,
               Attribute("class", "balloon") + Filled(colour) + Stroked(isHead ? colour : inkColour, 0.2));
    svg.Text({centre.x, centre.y + size * 0.36}, size, text,
             Attribute("text-anchor", "middle") +
                 (isHead ? Filled(paperColour) + Attribute("font-weight", "bold") : ""));
}

void DrawView(SvgWriter& svg, const ViewDirection& direction, const PaperCell& cell, const ViewScale& scale,
              const DrawnPlan& plan, const model::Vector3& pole) {
    View view(svg, direction, cell, scale, plan);
    svg.Open("g", Attribute("class", "view " + std::string(direction.key)));
    view.DrawName();
    view.DrawRulers(pole);
    view.DrawSafeHeight();
    view.DrawAxes();
    view.DrawHead(plan.end, EndStyle());
    view.DrawHead(plan.start, StartStyle());
    view.DrawSphere();
    view.DrawMoves();
    view.NumberMoves();
    view.NameHead(plan.start, "S");
    view.NameHead(plan.end, "E");
    svg.Close("g");
}

} // namespace qmv40::view
