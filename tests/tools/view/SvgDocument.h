#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

/// A drawing as its elements say it is, read by the rules of XML.

struct SvgElement {
    std::string name;
    std::map<std::string, std::string> attributes;
    std::string text; ///< its own, without that of elements within
    std::vector<SvgElement> children;

    std::string Attribute(const std::string& attribute) const;
    double Number(const std::string& attribute) const;
    /// Names in its attribute class.
    bool IsOfClass(std::string_view className) const;
};

struct SvgPoint {
    double x;
    double y;
};

/// Throws std::runtime_error for what is not well-formed: names, quotes, references, nesting, one outermost element.
SvgElement ParseSvg(std::string_view text);

/// All elements of a name within another, at any depth, in their order.
std::vector<const SvgElement*> ElementsOf(const SvgElement& element, const std::string& name);
/// Those of them that have the class.
std::vector<const SvgElement*> ElementsOf(const SvgElement& element, const std::string& name,
                                          std::string_view className);

/// The points of a path of straight lines.
std::vector<SvgPoint> PointsOf(const SvgElement& path);
