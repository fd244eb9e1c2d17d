#pragma once

#include <string>
#include <vector>

namespace qmv40::view {

/// A place on a sheet of paper: millimetres, x to the right and y down from its upper left corner.
struct PaperPoint {
    double x;
    double y;
};

using PaperWay = std::vector<PaperPoint>;

double Distance(const PaperPoint& left, const PaperPoint& right);

// Attributes of an element; join them with +.
std::string Attribute(const std::string& name, const std::string& value);
std::string Filled(const std::string& colour);
/// `width` and the lengths in `dashes` are mm.
std::string Stroked(const std::string& colour, double width, const std::string& dashes = "");

/// Writes the elements of a drawing in millimetres, to 0.001 mm, with `.` as the decimal mark in every locale. Text is
/// escaped. `style` takes further attributes.
class SvgWriter {
public:
    void Open(const std::string& name, const std::string& attributes = "");
    void Close(const std::string& name);

    /// The name of the element for readers that cannot see it.
    void Title(const std::string& text);

    void Line(const PaperPoint& from, const PaperPoint& to, const std::string& style);
    /// A line through the points.
    void Way(const PaperWay& points, const std::string& style);
    /// The area that the points enclose.
    void Area(const PaperWay& points, const std::string& style);
    void Circle(const PaperPoint& centre, double radius, const std::string& style);
    void Rectangle(const PaperPoint& corner, double width, double height, const std::string& style);
    /// Rules of a style sheet: plain text without markup.
    void Style(const std::string& rules);
    /// Text on a base line through `at`; `size` is the height of the letters.
    void Text(const PaperPoint& at, double size, const std::string& text, const std::string& style = "");

    const std::string& Written() const { return written; }

private:
    std::string written;
};

} // namespace qmv40::view
