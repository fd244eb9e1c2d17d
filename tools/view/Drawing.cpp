#include "tools/view/Drawing.h"

#include "tools/check/CheckReport.h"
#include "tools/model/Angles.h"
#include "tools/plans/HeadAnglesText.h"
#include "tools/plans/Moves.h"
#include "tools/text/Numbers.h"
#include "tools/view/DrawnView.h"
#include "tools/view/Markup.h"

#include <algorithm>

namespace qmv40::view {

namespace {

// A4 landscape, millimetres: the views fill three of the four cells; the fourth cell, and a strip beside the side view,
// hold text.
constexpr double sheetWidth = 297.0;
constexpr double sheetHeight = 210.0;
constexpr PaperCell topCell{{6.0, 6.0}, 141.0, 97.0};
constexpr PaperCell frontCell{{6.0, 103.0}, 141.0, 101.0};
constexpr PaperCell sideCell{{147.0, 103.0}, 97.0, 101.0};
constexpr PaperCell titleCell{{244.0, 103.0}, 47.0, 101.0};
constexpr PaperCell tableCell{{147.0, 6.0}, 144.0, 97.0};

constexpr int clearanceDecimals = 2;
constexpr int coordinateDecimals = 3;

const ViewDirection topView{"Top view (from above)", "top", 0, 1, {0.0, 0.0, 1.0}};
const ViewDirection frontView{"Front view (from -Y)", "front", 0, 2, {0.0, -1.0, 0.0}};
const ViewDirection sideView{"Right side view (from +X)", "side", 1, 2, {1.0, 0.0, 0.0}};

constexpr const char* drawingMark = "<!-- qmv40/view drawing -->";

std::string Bold() { return Attribute("font-weight", "bold"); }

/// The largest of the usual scales at which all views fit into their cells.
ViewScale ScaleFor(const DrawnPlan& plan) {
    const auto extent = plan.Extent();
    const PaperCell top = DrawingAreaOf(topCell);
    const PaperCell front = DrawingAreaOf(frontCell);
    const PaperCell side = DrawingAreaOf(sideCell);
    const double least = std::max({extent[0].Size() / std::min(top.width, front.width),
                                   extent[1].Size() / std::min(top.height, side.width),
                                   extent[2].Size() / std::min(front.height, side.height)});
    // Millimetres of the machine for one on paper: from 2:1 to 1:50.
    constexpr double scales[] = {0.5, 1.0, 1.25, 1.5, 2.0, 2.5, 3.0, 4.0, 5.0, 7.5, 10.0, 15.0, 20.0, 30.0, 50.0};
    const auto* const fits = std::ranges::lower_bound(scales, least);
    return {fits == std::end(scales) ? scales[std::size(scales) - 1] : *fits,
            {extent[0].Middle(), extent[1].Middle(), extent[2].Middle()}};
}

std::string ScaleText(double millimetresToOne) {
    return millimetresToOne < 1.0 ? text::ExactText(1.0 / millimetresToOne) + ":1"
                                  : "1:" + text::ExactText(millimetresToOne);
}

std::string ClearanceText(double clearance) { return text::FixedText(clearance, clearanceDecimals) + " mm"; }

/// What the table says about the clearance of a move.
std::string ClearanceOrReason(const check::CheckedPlan& checked, std::size_t move) {
    const auto& findings = checked.report.findings;
    const auto found = std::ranges::find_if(findings, [&](const check::Finding& each) { return each.move == move; });
    if (found != findings.end()) return "finding: see verdict";
    if (move >= checked.report.moves.size()) return "not run";
    const std::string contact = check::ContactOf(checked.plan.moves[move].id);
    if (!contact.empty()) return "must touch the " + contact;
    const check::Clearance& clearance = checked.report.moves[move].clearance;
    return ClearanceText(std::min(clearance.toPoleSphere, clearance.toLevers));
}

/// One row for each move: number, name, what it does, its line, its clearance.
void DrawMoveTable(SvgWriter& svg, const check::CheckedPlan& checked) {
    constexpr double rowHeight = 3.75;
    constexpr double size = 2.4;
    constexpr double left = tableCell.corner.x;
    constexpr double numberEnd = left + 6.0;
    constexpr double name = left + 7.5;
    constexpr double purpose = left + 43.0;
    constexpr double line = left + 101.0;
    constexpr double clearance = left + 112.0;
    double y = tableCell.corner.y + 4.2;
    svg.Text({name, y}, size, "Move", Bold());
    svg.Text({purpose, y}, size, "What the machine does", Bold());
    svg.Text({clearance, y}, size, "Clearance", Bold());
    for (std::size_t i = 0; i < std::min(checked.plan.moves.size(), plans::moveCount); ++i) {
        const plans::Move& move = plans::AllMoves()[plans::IndexOf(checked.plan.moves[i].id)];
        y += rowHeight;
        svg.Text({numberEnd, y}, size, std::to_string(i + 1), Attribute("text-anchor", "end"));
        svg.Text({name, y}, size, move.name);
        svg.Text({purpose, y}, size, move.purpose);
        svg.Line({line, y - 0.8}, {clearance - 2.0, y - 0.8}, LineStyle(LevelOf(checked, i)));
        svg.Text({clearance, y}, size, ClearanceOrReason(checked, i));
    }
}

/// Explains the marks of the views, in rows of marks and words.
class Legend {
public:
    explicit Legend(SvgWriter& theSvg) : svg(theSvg) {}

    void DrawLevels() {
        const struct {
            MoveLevel level;
            std::string words;
        } lines[] = {{MoveLevel::Clear, "clear"},
                     {MoveLevel::Tight, "less than " + text::FixedText(tightClearance, 0) + " mm of clearance"},
                     {MoveLevel::Contact, "must touch"},
                     {MoveLevel::Finding, "something is wrong"}};
        for (const auto& each : lines) {
            svg.Line({x, y - 0.8}, {x + 9.0, y - 0.8}, LineStyle(each.level));
            Explain(11.0, each.words);
        }
        BeginRow();
    }

    void DrawPointsOfWay() {
        const std::pair<double, const char*> directions[] = {
            {1.0, "towards you"}, {-1.0, "away from you"}, {0.0, "stays, or comes from anywhere"}};
        for (const auto& [towardsViewer, words] : directions) {
            DrawPointOfWay(svg, {x + 1.0, y - 0.8}, towardsViewer, MoveLevel::Clear);
            Explain(3.0, words);
        }
        BeginRow();
    }

    void DrawHeadParts() {
        svg.Circle({x + 1.1, y - 0.8}, 1.1, Filled(headColour));
        Explain(3.0, "head centre");
        svg.Rectangle({x, y - 1.9}, 2.2, 2.2, Filled(paperColour) + StartStyle());
        Explain(3.0, "drive cup");
        svg.Line({x + 0.5, y - 0.8}, {x + 6.0, y - 0.8}, StartStyle());
        svg.Circle({x + 0.5, y - 0.8}, 0.5, Filled(headColour));
        svg.Circle({x + 5.5, y - 0.8}, 1.3, Filled(paperColour) + StartStyle());
        Explain(8.0, "lever");
        svg.Line({x, y - 0.8}, {x + 5.0, y - 0.8}, StartStyle());
        svg.Circle({x + 5.0, y - 0.8}, 0.6, Filled(paperColour) + StartStyle());
        Explain(7.0, "stylus, of any length");
        BeginRow();
    }

    void DrawHeads(const plans::Plan& plan) {
        DrawHead("S", StartStyle(),
                 "head at the start, A " + text::ExactText(plan.from.a) + ", B " + text::ExactText(plan.from.b));
        DrawHead("E", EndStyle(), "at the end, A " + text::ExactText(plan.to.a) + ", B " + text::ExactText(plan.to.b));
    }

private:
    void DrawHead(const std::string& letter, const std::string& style, const std::string& words) {
        DrawBalloonText(svg, {x + 1.75, y - 0.8}, letter, true);
        svg.Line({x + 4.2, y - 0.8}, {x + 10.0, y - 0.8}, style);
        Explain(11.5, CutText(words, 45));
    }
    void Explain(double after, const std::string& words) {
        constexpr double letterWidth = 1.3; // mm, of the wider sans serif faces at this size
        svg.Text({x + after, y}, size, words);
        x += after + static_cast<double>(words.size()) * letterWidth + 4.0;
    }
    void BeginRow() {
        x = left;
        y += 4.8;
    }

    static constexpr double size = 2.3;
    static constexpr double left = tableCell.corner.x + 3.0;
    SvgWriter& svg;
    double x = left;
    double y = tableCell.corner.y + 80.5;
};

constexpr double textSize = 2.3;
constexpr double smallText = 2.1;

/// The lines of the title block.
class TitleBlock {
public:
    explicit TitleBlock(SvgWriter& theSvg) : svg(theSvg) {}

    void Write(double size, const std::string& text, const std::string& style = "") {
        y += size * 1.35;
        svg.Text({left, y}, size, CutText(text, ColumnsOf(size)), style);
    }
    /// In the largest size at which it fits.
    void WriteName(const std::string& name) {
        constexpr double large = 3.0;
        Write(CutText(name, ColumnsOf(large)) == name ? large : smallText, name, Bold());
    }
    void Skip(double height) { y += height; }
    void GoTo(double heightAboveEnd) { y = titleCell.corner.y + titleCell.height - heightAboveEnd; }
    PaperPoint Here() const { return {left, y}; }

private:
    static std::size_t ColumnsOf(double size) {
        constexpr double widthOfLetter = 0.6; // of the wider sans serif faces, bold, relative to the letter size
        return static_cast<std::size_t>((titleCell.width - 4.0) / (size * widthOfLetter));
    }

    static constexpr double left = titleCell.corner.x + 2.5;
    SvgWriter& svg;
    double y = titleCell.corner.y + 1.0;
};

void WriteFindings(TitleBlock& block, const check::CheckedPlan& checked) {
    constexpr std::size_t most = 3; // more do not fit, and the first is to be mended first
    const auto& findings = checked.report.findings;
    for (std::size_t i = 0; i < std::min(findings.size(), most); ++i) {
        const std::string where = findings[i].move ? std::to_string(*findings[i].move + 1) : "plan";
        const std::string amount = check::AmountText(findings[i]);
        block.Write(smallText, where + ": " + check::TextOf(findings[i].kind).name);
        if (!amount.empty()) block.Write(smallText, " by " + amount);
    }
    if (findings.size() > most) block.Write(smallText, "and " + std::to_string(findings.size() - most) + " more");
}

void WriteFigure(TitleBlock& block, const std::string& words, const std::optional<check::WorstFigure>& figure) {
    if (!figure) return;
    block.Write(textSize, words);
    block.Write(textSize, ClearanceText(figure->value) + ", move " + std::to_string(figure->move + 1));
}

void WriteFigures(TitleBlock& block, const check::CheckedPlan& checked) {
    check::Figures figures;
    figures.Take(checked.plan, checked.report);
    WriteFigure(block, "Clearance to pole sphere", figures.clearanceToPoleSphere);
    WriteFigure(block, "Clearance to a lever", figures.clearanceToLevers);
}

void WriteSetup(TitleBlock& block, const DrawingOfPlan& drawing) {
    const model::Vector3& pole = drawing.head.PoleSphere();
    const model::Vector3 right = drawing.head.Mounted({1.0, 0.0, 0.0});
    constexpr const char* axes[] = {"X ", "Y ", "Z "};
    block.Write(textSize, "Pole sphere, radius " + ClearanceText(drawing.sizes.poleSphereRadius));
    for (std::size_t axis = 0; axis < 3; ++axis) {
        block.Write(textSize, axes[axis] + text::FixedText(pole[axis], coordinateDecimals) + " mm");
    }
    block.Write(textSize, "Lever balls, radius " + ClearanceText(drawing.sizes.leverBallRadius));
    block.Write(textSize, "Turned about Z " +
                              text::FixedText(model::ToDegrees(std::atan2(right.y, right.x)), coordinateDecimals) +
                              " deg");
}

void DrawScaleBar(SvgWriter& svg, const PaperPoint& at, double millimetresToOne) {
    const double shown = 20.0 * std::max(1.0, std::round(millimetresToOne)); // mm of the machine
    const double length = shown / millimetresToOne;
    const std::string style = Stroked(inkColour, 0.3);
    svg.Line(at, {at.x + length, at.y}, Attribute("class", "scale-bar") + style);
    for (const double end : {0.0, length}) svg.Line({at.x + end, at.y - 1.0}, {at.x + end, at.y + 1.0}, style);
    svg.Text({at.x + length + 1.5, at.y + 0.8}, textSize, text::FixedText(shown, 0) + " mm");
}

/// The sign of third-angle projection: a cone seen from its end, and to the right from its side.
void DrawProjectionSign(SvgWriter& svg, const PaperPoint& at) {
    const std::string style = Filled("none") + Stroked(inkColour, 0.25);
    constexpr double small = 1.3;
    constexpr double large = 2.6;
    constexpr double length = 6.0;
    const PaperPoint round{at.x + large, at.y};
    svg.Circle(round, small, style);
    svg.Circle(round, large, style);
    const double left = at.x + 2.0 * large + 2.5;
    svg.Area({{left, at.y - small}, {left + length, at.y - large}, {left + length, at.y + large}, {left, at.y + small}},
             style);
    svg.Line({at.x - 1.0, at.y}, {left + length + 1.0, at.y}, CentreLineStyle());
}

bool IsComplete(const DrawnPlan& plan) {
    return std::ranges::all_of(plan.moves, [](const DrawnMove& move) { return move.isComplete; });
}

void DrawTitleBlock(SvgWriter& svg, const DrawingOfPlan& drawing, const DrawnPlan& plan, double millimetresToOne) {
    TitleBlock block(svg);
    const bool isClear = drawing.checked.report.findings.empty();
    block.WriteName(drawing.name);
    block.Write(textSize, plans::HeadAnglesText(drawing.checked.plan.from));
    block.Write(textSize, "to " + plans::HeadAnglesText(drawing.checked.plan.to) + " (deg)");
    if (drawing.sheets > 1) {
        block.Write(textSize, "Sheet " + std::to_string(drawing.sheet) + " of " + std::to_string(drawing.sheets));
    }
    block.Skip(1.0);
    block.Write(3.4, check::VerdictText(drawing.checked.report.findings.size()),
                Bold() + Filled(isClear ? inkColour : findingColour));
    WriteFindings(block, drawing.checked);
    WriteFigures(block, drawing.checked);
    block.Skip(1.0);
    WriteSetup(block, drawing);
    if (!IsComplete(plan)) block.Write(textSize, "Farther than 1 m: not drawn");
    block.GoTo(23.0);
    block.Write(textSize, "Scale " + ScaleText(millimetresToOne) + " on A4", Bold());
    block.Skip(2.6);
    DrawScaleBar(svg, block.Here(), millimetresToOne);
    block.Skip(5.0);
    DrawProjectionSign(svg, {block.Here().x + 1.0, block.Here().y});
    svg.Text({block.Here().x + 19.0, block.Here().y - 0.6}, smallText, "third-angle");
    svg.Text({block.Here().x + 19.0, block.Here().y + 2.0}, smallText, "projection");
    block.Skip(2.0);
    block.Write(smallText, "The way is the head centre's, in");
    block.Write(smallText, "machine coordinates, mm");
    block.Write(smallText, "qmv40 " QMV40_VERSION);
}

} // namespace

std::string ThreeViews(const DrawingOfPlan& drawing) {
    const DrawnPlan plan = DrawnPlanOf(drawing.checked, drawing.head, drawing.sizes);
    const ViewScale scale = ScaleFor(plan);
    SvgWriter svg;
    const std::string width = text::FixedText(sheetWidth, 0);
    const std::string height = text::FixedText(sheetHeight, 0);
    svg.Open("svg", Attribute("xmlns", "http://www.w3.org/2000/svg") + Attribute("width", width + "mm") +
                        Attribute("height", height + "mm") + Attribute("viewBox", "0 0 " + width + ' ' + height) +
                        Attribute("font-family", "Arial, Helvetica, 'Liberation Sans', sans-serif") +
                        Attribute("role", "img"));
    svg.Title(drawing.title);
    svg.Rectangle({0.0, 0.0}, sheetWidth, sheetHeight, Filled(paperColour));
    DrawView(svg, topView, topCell, scale, plan, drawing.head.PoleSphere());
    DrawView(svg, frontView, frontCell, scale, plan, drawing.head.PoleSphere());
    DrawView(svg, sideView, sideCell, scale, plan, drawing.head.PoleSphere());
    svg.Rectangle(tableCell.corner, tableCell.width, tableCell.height, CellStyle());
    svg.Rectangle(titleCell.corner, titleCell.width, titleCell.height, CellStyle());
    DrawMoveTable(svg, drawing.checked);
    Legend legend(svg);
    legend.DrawLevels();
    legend.DrawPointsOfWay();
    legend.DrawHeadParts();
    legend.DrawHeads(drawing.checked.plan);
    DrawTitleBlock(svg, drawing, plan, scale.millimetresToOne);
    svg.Close("svg");
    return svg.Written();
}

std::string DrawingFileText(const std::string& drawing) {
    return std::string(R"(<?xml version="1.0" encoding="UTF-8"?>)") + drawingMark + "\n" + drawing;
}

text::FileKind DrawingKind() { return text::KindMarked("a drawing of `qmv40 view`", drawingMark); }

} // namespace qmv40::view
