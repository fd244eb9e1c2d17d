#include "tools/view/Svg.h"

#include "tools/text/Numbers.h"
#include "tools/view/Markup.h"

#include <cmath>

namespace qmv40::view {

namespace {

std::string Number(double value) { return text::FixedText(value, 3); }

std::string LengthAttribute(const char* name, double value) { return Attribute(name, Number(value)); }

std::string Pair(const PaperPoint& point) { return Number(point.x) + ' ' + Number(point.y); }

std::string PathData(const PaperWay& points) {
    std::string data;
    for (const PaperPoint& point : points) data += (data.empty() ? "M" : "L") + Pair(point);
    return data;
}

std::string Element(const std::string& name, const std::string& attributes, const std::string& style) {
    return '<' + name + attributes + style + "/>\n";
}

} // namespace

std::string Attribute(const std::string& name, const std::string& value) { return ' ' + name + "=\"" + value + '"'; }

std::string Filled(const std::string& colour) { return Attribute("fill", colour); }

std::string Stroked(const std::string& colour, double width, const std::string& dashes) {
    return Attribute("stroke", colour) + LengthAttribute("stroke-width", width) +
           (dashes.empty() ? "" : Attribute("stroke-dasharray", dashes));
}

double Distance(const PaperPoint& left, const PaperPoint& right) {
    return std::hypot(right.x - left.x, right.y - left.y);
}

void SvgWriter::Open(const std::string& name, const std::string& attributes) {
    written += '<' + name + attributes + ">\n";
}

void SvgWriter::Close(const std::string& name) { written += "</" + name + ">\n"; }

void SvgWriter::Title(const std::string& text) { written += "<title>" + MarkupText(text) + "</title>\n"; }

void SvgWriter::Style(const std::string& rules) { written += "<style>" + rules + "</style>\n"; }

void SvgWriter::Line(const PaperPoint& from, const PaperPoint& to, const std::string& style) { Way({from, to}, style); }

void SvgWriter::Way(const PaperWay& points, const std::string& style) {
    written += Element("path", Filled("none") + Attribute("d", PathData(points)), style);
}

void SvgWriter::Area(const PaperWay& points, const std::string& style) {
    written += Element("path", Attribute("d", PathData(points) + "Z"), style);
}

void SvgWriter::Circle(const PaperPoint& centre, double radius, const std::string& style) {
    written += Element("circle",
                       LengthAttribute("cx", centre.x) + LengthAttribute("cy", centre.y) + LengthAttribute("r", radius),
                       style);
}

void SvgWriter::Rectangle(const PaperPoint& corner, double width, double height, const std::string& style) {
    written += Element("rect",
                       LengthAttribute("x", corner.x) + LengthAttribute("y", corner.y) +
                           LengthAttribute("width", width) + LengthAttribute("height", height),
                       style);
}

void SvgWriter::Text(const PaperPoint& at, double size, const std::string& text, const std::string& style) {
    written += "<text" + LengthAttribute("x", at.x) + LengthAttribute("y", at.y) + LengthAttribute("font-size", size) +
               style + '>' + MarkupText(text) + "</text>\n";
}

} // namespace qmv40::view
