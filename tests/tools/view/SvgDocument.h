#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

/// An element of a drawing, read by the rules of XML.
struct SvgElement {
    std::string name;
    std::map<std::string, std::string> attributes;
    std::string text; ///< without the text of elements inside it
    std::vector<SvgElement> children;

    std::string Attribute(const std::string& attribute) const;
    double Number(const std::string& attribute) const;
    /// True when the attribute class contains the name.
    bool IsOfClass(std::string_view className) const;
};

struct SvgPoint {
    double x;
    double y;
};

/// Throws std::runtime_error when the text is not well-formed XML with one outermost element.
SvgElement ParseSvg(std::string_view text);

/// All elements with this name inside another, at any depth, in document order.
std::vector<const SvgElement*> ElementsOf(const SvgElement& element, const std::string& name);
/// Those of them that have this class.
std::vector<const SvgElement*> ElementsOf(const SvgElement& element, const std::string& name,
                                          std::string_view className);

/// The points of a path of straight lines.
std::vector<SvgPoint> PointsOf(const SvgElement& path);
