#include "tools/report/CapturePicture.h"

#include "tools/diagnosis/fit/AxisCircle.h"
#include "tools/model/Angles.h"
#include "tools/text/Numbers.h"
#include "tools/view/Svg.h"

#include <algorithm>
#include <cmath>
#include <set>
#include <span>

namespace qmv40::report {

namespace {

using model::Vector3;
using view::Attribute;
using view::PaperPoint;

constexpr const char* pictureMark = "<!-- qmv40/geometry picture -->";

// Millimetres of paper
constexpr double width = 190.0, height = 140.0;
constexpr double panelWidth = width / 2.0;
constexpr double circleRadius = 26.0;
constexpr double circleMiddle = 58.0; ///< from the top
constexpr double longestStick = 9.0;
constexpr double stripMiddle = 112.0;
constexpr double stripHalf = 9.0;
constexpr double letters = 2.6;

/// Of a set with this many points or more every second, third ... point is drawn, so that at most this many remain, and
/// also the last point and the points that are named.
constexpr std::size_t mostPoints = 1000;
/// Up to this many points have their angle beside them.
constexpr std::size_t mostAngles = 30;
/// Of a finding about more points than this only the first and the last are named: mostly they are the ends of a run.
constexpr std::size_t mostNames = 3;

constexpr const char* pictureStyle =
    ".q-paper{fill:#fff}.q-ink{fill:#1b2631}.q-dim{fill:#5d6d7e}.q-line{stroke:#95a5a6;fill:none}"
    ".q-good{stroke:#1f618d}.q-dot{fill:#1f618d}.q-bad{stroke:#b03a2e}.q-baddot{fill:#b03a2e}"
    "@media (prefers-color-scheme:dark){.q-paper{fill:#17202a}.q-ink{fill:#eaecee}.q-dim{fill:#aeb6bf}"
    ".q-line{stroke:#707b7c}.q-good{stroke:#5dade2}.q-dot{fill:#5dade2}.q-bad{stroke:#f1948a}"
    ".q-baddot{fill:#f1948a}}";

std::string Class(const std::string& name) { return Attribute("class", name); }
std::string Thick(double size) { return Attribute("stroke-width", text::FixedText(size, 3)); }
std::string Anchored(const std::string& where) { return Attribute("text-anchor", where); }

PaperPoint operator+(const PaperPoint& left, const PaperPoint& right) { return {left.x + right.x, left.y + right.y}; }
PaperPoint operator*(double factor, const PaperPoint& point) { return {factor * point.x, factor * point.y}; }

/// What is drawn of one point.
struct Mark {
    PaperPoint outward; ///< on the paper, of unit length
    double radial;      ///< millimetres of the machine
    double outOfPlane;
    double angle; ///< the angle that this set turns
    std::size_t point;
    bool isSuspicious;
    bool isNamed;
};

/// The points of faults and warnings, and which of them have their name in the picture.
struct Suspects {
    explicit Suspects(const PicturedCapture& capture) {
        for (const diagnosis::Finding& finding : capture.findings) {
            if (finding.severity == diagnosis::Severity::Note) continue;
            all.insert(finding.points.begin(), finding.points.end());
            if (finding.points.size() <= mostNames) {
                named.insert(finding.points.begin(), finding.points.end());
            } else {
                named.insert({finding.points.front(), finding.points.back()});
            }
        }
    }

    std::set<std::size_t> all, named;
};

/// The circle of one set as it is seen along its axis.
class Panel {
public:
    Panel(const PicturedCapture& theCapture, const Suspects& theSuspects, bool isOfASet)
        : capture(theCapture), suspects(theSuspects), isA(isOfASet), first(isOfASet ? 0 : capture.files.sets.aCount),
          last(isOfASet ? capture.files.sets.aCount : capture.files.sets.points.size()), middle{isOfASet
                                                                                                    ? 0.5 * panelWidth
                                                                                                    : 1.5 * panelWidth,
                                                                                                circleMiddle} {
        const auto circle = diagnosis::fit::FitAxisCircle(PointsOfTheCircle());
        if (!circle) return;
        isCircle = true;
        Look(*circle);
        factor = FactorOfResiduals();
    }

    void Draw(view::SvgWriter& theSvg) {
        svg = &theSvg;
        DrawTitle();
        if (!isCircle) return;
        DrawCircle();
        DrawStrip();
        DrawScaleBar();
    }

private:
    /// The points that no fault or warning speaks of, if they are enough for a circle: a wrong point then stands out
    /// from it. A circle through three points fits them exactly and shows nothing, so that at least four are needed.
    std::vector<Vector3> PointsOfTheCircle() const {
        constexpr std::size_t enough = 4;
        std::vector<Vector3> sound, all;
        for (std::size_t i = first; i < last; ++i) {
            all.push_back(capture.files.sets.points[i].position);
            if (!suspects.all.contains(i)) sound.push_back(all.back());
        }
        return sound.size() >= enough ? sound : all;
    }

    /// Chooses the direction in which the circle is seen, with machine Z up, or from above with machine Y up. Computes
    /// what is drawn of each point.
    void Look(const diagnosis::fit::AxisCircle& circle) {
        constexpr double steep = 0.7; // the cosine of 45 degrees
        isFromAbove = std::abs(circle.normal.z) > steep;
        const Vector3 normal = isFromAbove && circle.normal.z < 0.0 ? -circle.normal : circle.normal;
        const Vector3 wanted = isFromAbove ? Vector3{0.0, 1.0, 0.0} : Vector3{0.0, 0.0, 1.0};
        const Vector3 up = model::SafeUnit(model::Perpendicular(wanted, normal));
        const Vector3 right = model::Cross(up, normal);
        const std::size_t stride = 1 + (last - first) / mostPoints;
        for (std::size_t i = first; i < last; ++i) {
            const bool isSuspicious = suspects.all.contains(i), isNamed = suspects.named.contains(i);
            if ((i - first) % stride != 0 && i + 1 != last && !isNamed) continue;
            const Vector3 arm = capture.files.sets.points[i].position - circle.centre;
            const Vector3 inPlane = model::Perpendicular(arm, normal);
            const Vector3 outward = model::SafeUnit(inPlane);
            marks.push_back({{model::Dot(outward, right), -model::Dot(outward, up)},
                             model::SafeLength(inPlane) - circle.radius,
                             model::Dot(arm, normal),
                             AngleOf(i),
                             i,
                             isSuspicious,
                             isNamed});
        }
    }
    double AngleOf(std::size_t point) const {
        return isA ? capture.files.sets.points[point].a : capture.files.sets.points[point].b;
    }

    double FactorOfResiduals() const {
        std::vector<double> sizes;
        sizes.reserve(marks.size());
        for (const Mark& mark : marks) sizes.push_back(std::max(std::abs(mark.radial), std::abs(mark.outOfPlane)));
        const auto half = sizes.begin() + static_cast<std::ptrdiff_t>(sizes.size() / 2);
        std::ranges::nth_element(sizes, half);
        double times = 1000.0;
        while (times > 1.0 && *half * times > longestStick) times /= 10.0;
        return times;
    }

    void DrawTitle() {
        const std::string set = isA ? "A" : "B";
        const std::string held = isA ? "B = " + text::ExactText(capture.files.sets.points[first].b)
                                     : "A = " + text::ExactText(capture.files.sets.points[first].a);
        Write({middle.x, 12.0}, set + " set, at " + held + " deg, " + std::to_string(last - first) + " points", "q-ink",
              3.4, Attribute("font-weight", "bold"));
        if (!isCircle) return Write({middle.x, circleMiddle}, "The points form no circle.", "q-ink", 3.4);
        Write({middle.x, 17.0}, isFromAbove ? "seen from above: X to the right, Y up" : "seen along the axis: Z up",
              "q-dim", letters);
    }

    void DrawCircle() {
        svg->Circle(middle, circleRadius, Class("q-line") + Thick(0.2) + Attribute("stroke-dasharray", "1 1"));
        for (const double arm : {-1.5, 1.5}) {
            svg->Line(middle, middle + PaperPoint{arm, 0.0}, Class("q-line") + Thick(0.2));
            svg->Line(middle, middle + PaperPoint{0.0, arm}, Class("q-line") + Thick(0.2));
        }
        for (const Mark& mark : marks) {
            const PaperPoint on = middle + circleRadius * mark.outward;
            DrawStick(on, mark.radial, mark.outward, mark);
            DrawNames(mark);
        }
    }

    /// Draws a residual as a line from a place along a direction.
    void DrawStick(const PaperPoint& from, double residual, const PaperPoint& direction, const Mark& mark) {
        const double whole = residual * factor;
        const double length = std::clamp(whole, -longestStick, longestStick);
        const PaperPoint end = from + length * direction;
        const std::string pen = Class(mark.isSuspicious ? "q-bad" : "q-good") + Thick(mark.isSuspicious ? 0.5 : 0.35);
        svg->Line(from, end, pen);
        if (length != whole) {
            const PaperPoint back = end + (length > 0.0 ? -1.2 : 1.2) * direction;
            const PaperPoint aside{-direction.y, direction.x};
            svg->Way({back + 0.7 * aside, end, back + -0.7 * aside}, pen);
        }
        svg->Circle(from, mark.isSuspicious ? 0.8 : 0.5, Class(mark.isSuspicious ? "q-baddot" : "q-dot"));
    }

    void DrawNames(const Mark& mark) {
        // Beyond the longest stick, on the side on which the point lies
        const PaperPoint at = middle + (circleRadius + longestStick + 1.5) * mark.outward + PaperPoint{0.0, 0.9};
        constexpr double upright = 0.3; // the name of a point nearly above or below the centre is centred on it
        const std::string anchor = mark.outward.x > upright ? "start" : mark.outward.x < -upright ? "end" : "middle";
        if (last - first <= mostAngles) {
            svg->Text(middle + (circleRadius - longestStick - 3.0) * mark.outward + PaperPoint{0.0, 0.8}, 2.2,
                      text::ExactText(std::round(mark.angle * 10.0) / 10.0 + 0.0),
                      Class(mark.isSuspicious ? "q-baddot" : "q-dim") + Anchored("middle"));
        }
        if (mark.isNamed) {
            svg->Text(at, letters, ShortName(mark.point), Class("q-baddot") + Anchored(anchor));
        }
    }
    /// The file without its folder, and the line.
    std::string ShortName(std::size_t point) const {
        const std::string name = capture.files.NameOf(point);
        const std::size_t slash = name.find_last_of("/\\");
        const std::string file = slash == std::string::npos ? name : name.substr(slash + 1);
        constexpr std::size_t most = 26;
        return file.size() <= most ? file : "..." + file.substr(file.size() - most + 3);
    }

    void DrawStrip() {
        const auto ends = std::ranges::minmax(marks, {}, &Mark::angle);
        const double left = middle.x - 38.0, right = middle.x + 38.0;
        const double span = std::max(ends.max.angle - ends.min.angle, 1e-9);
        Write({middle.x, stripMiddle - stripHalf - 4.0}, "out of the circle's plane, along its axis", "q-dim", letters);
        svg->Line({left, stripMiddle}, {right, stripMiddle}, Class("q-line") + Thick(0.2));
        const auto along = [&](const Mark& mark) {
            return left + 2.0 + (right - left - 4.0) * (mark.angle - ends.min.angle) / span;
        };
        for (const Mark& mark : marks) DrawStick({along(mark), stripMiddle}, mark.outOfPlane, {0.0, -1.0}, mark);
        for (const Mark& end : {ends.min, ends.max}) {
            Write({along(end), stripMiddle + stripHalf + 4.0},
                  std::string(isA ? "A " : "B ") + text::ExactText(std::round(end.angle * 10.0) / 10.0 + 0.0), "q-dim",
                  letters);
        }
    }

    /// Its length is a round number of micrometres, drawn 6 to 15 mm long.
    void DrawScaleBar() {
        constexpr double shortest = 6.0;
        double micrometres = 1e-3;
        const auto onPaper = [&] { return micrometres / 1000.0 * factor; };
        for (int i = 0; onPaper() < shortest; ++i) micrometres *= i % 3 == 1 ? 2.5 : 2.0;
        const double half = 0.5 * onPaper(), at = height - 11.0;
        const std::string pen = Class("q-good") + Thick(0.4);
        svg->Line({middle.x - half, at}, {middle.x + half, at}, pen);
        for (const double end : {-half, half}) svg->Line({middle.x + end, at - 1.0}, {middle.x + end, at + 1.0}, pen);
        Write({middle.x, at + 4.0},
              text::ExactText(std::round(micrometres * 1000.0) / 1000.0) + " um; residuals " + text::ExactText(factor) +
                  " times as long",
              "q-ink", letters);
    }

    void Write(const PaperPoint& at, const std::string& words, const std::string& colour, double size,
               const std::string& more = "") {
        svg->Text(at, size, words, Class(colour) + Anchored("middle") + more);
    }

    const PicturedCapture& capture;
    const Suspects& suspects;
    bool isA;
    std::size_t first, last;
    PaperPoint middle;
    bool isCircle = false;
    bool isFromAbove = false;
    double factor = 1.0; ///< by which residuals are drawn longer
    std::vector<Mark> marks;
    view::SvgWriter* svg = nullptr;
};

} // namespace

std::string CapturePicture(const PicturedCapture& capture) {
    const Suspects suspects(capture);
    view::SvgWriter svg;
    svg.Open("svg", Attribute("xmlns", "http://www.w3.org/2000/svg") +
                        Attribute("width", text::ExactText(width) + "mm") +
                        Attribute("height", text::ExactText(height) + "mm") +
                        Attribute("viewBox", "0 0 " + text::ExactText(width) + ' ' + text::ExactText(height)) +
                        Attribute("font-family", "sans-serif") + Attribute("role", "img"));
    svg.Title("Residuals of the captured points");
    svg.Style(pictureStyle);
    svg.Rectangle({0.0, 0.0}, width, height, Class("q-paper"));
    for (const bool isOfASet : {true, false}) Panel(capture, suspects, isOfASet).Draw(svg);
    if (!suspects.all.empty()) {
        svg.Text({width / 2.0, 5.0}, letters, "red: the points that the findings speak of",
                 Class("q-baddot") + Anchored("middle"));
    }
    svg.Close("svg");
    return svg.Written();
}

std::string PictureFileText(const PicturedCapture& capture) {
    return std::string(R"(<?xml version="1.0" encoding="UTF-8"?>)") + pictureMark + "\n" + CapturePicture(capture);
}

text::FileKind PictureKind() { return text::KindMarked("a picture of `qmv40 geometry`", pictureMark); }

} // namespace qmv40::report
