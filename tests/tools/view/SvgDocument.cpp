#include "tests/tools/view/SvgDocument.h"

#include <charconv>
#include <sstream>
#include <stdexcept>

namespace {

[[noreturn]] void Refuse(const std::string& problem) { throw std::runtime_error("not XML: " + problem); }

double NumberOf(std::string_view text) {
    double number = 0.0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
    if (result.ec != std::errc() || result.ptr != text.data() + text.size()) {
        Refuse("'" + std::string(text) + "' is not a number");
    }
    return number;
}

class Parser {
public:
    explicit Parser(std::string_view text) : rest(text) {}

    SvgElement Document() {
        if (Take("<?xml")) Until("?>");
        if (Take("<!--")) Until("-->");
        Blanks();
        SvgElement outermost = Element();
        Blanks();
        if (!rest.empty()) Refuse("something after the outermost element");
        return outermost;
    }

private:
    bool Take(std::string_view expected) {
        if (!rest.starts_with(expected)) return false;
        rest.remove_prefix(expected.size());
        return true;
    }
    void Expect(std::string_view expected) {
        if (!Take(expected)) Refuse(std::string(expected) + " expected at '" + std::string(rest.substr(0, 30)) + "'");
    }
    void Blanks() {
        while (!rest.empty() && std::string_view(" \n").find(rest.front()) != std::string_view::npos) {
            rest.remove_prefix(1);
        }
    }
    std::string_view Until(std::string_view end) {
        const std::size_t at = rest.find(end);
        if (at == std::string_view::npos) Refuse(std::string(end) + " is missing");
        const std::string_view before = rest.substr(0, at);
        rest.remove_prefix(at + end.size());
        return before;
    }
    std::string Name() {
        std::size_t length = 0;
        while (length < rest.size() &&
               (std::isalnum(static_cast<unsigned char>(rest[length])) || rest[length] == '-' || rest[length] == ':')) {
            ++length;
        }
        if (length == 0) Refuse("no name at '" + std::string(rest.substr(0, 30)) + "'");
        const std::string name(rest.substr(0, length));
        rest.remove_prefix(length);
        return name;
    }

    static std::string Unescaped(std::string_view text) {
        std::string plain;
        while (!text.empty()) {
            if (static_cast<unsigned char>(text.front()) < 0x20 && text.front() != '\n') Refuse("a control character");
            if (text.front() == '<') Refuse("< in a text");
            if (text.front() != '&') {
                plain += text.front();
                text.remove_prefix(1);
                continue;
            }
            plain += Referred(text);
        }
        return plain;
    }
    static char Referred(std::string_view& text) {
        static const std::map<std::string_view, char> characters{
            {"&amp;", '&'}, {"&lt;", '<'}, {"&gt;", '>'}, {"&quot;", '"'}, {"&#39;", '\''}};
        for (const auto& [reference, character] : characters) {
            if (!text.starts_with(reference)) continue;
            text.remove_prefix(reference.size());
            return character;
        }
        Refuse("& without a reference");
    }

    SvgElement Element() { // NOLINT(misc-no-recursion): elements contain elements
        Expect("<");
        SvgElement element{Name(), {}, "", {}};
        while (Blanks(), !rest.starts_with('>') && !rest.starts_with('/')) {
            const std::string name = Name();
            Expect("=\"");
            if (!element.attributes.emplace(name, Unescaped(Until("\""))).second) Refuse(name + " stands twice");
        }
        if (Take("/>")) return element;
        Expect(">");
        while (!rest.starts_with("</")) {
            if (rest.empty()) Refuse(element.name + " does not end");
            if (rest.starts_with('<')) {
                element.children.push_back(Element());
            } else {
                const std::string_view text = rest.substr(0, rest.find('<'));
                element.text += Unescaped(text);
                rest.remove_prefix(text.size());
            }
        }
        Expect("</" + element.name + ">");
        return element;
    }

    std::string_view rest;
};

// NOLINTNEXTLINE(misc-no-recursion): elements contain elements
void Collect(const SvgElement& element, const std::string& name, std::vector<const SvgElement*>& found) {
    for (const SvgElement& child : element.children) {
        if (child.name == name) found.push_back(&child);
        Collect(child, name, found);
    }
}

} // namespace

std::string SvgElement::Attribute(const std::string& attribute) const {
    const auto found = attributes.find(attribute);
    return found == attributes.end() ? "" : found->second;
}

double SvgElement::Number(const std::string& attribute) const { return NumberOf(Attribute(attribute)); }

bool SvgElement::IsOfClass(std::string_view className) const {
    std::istringstream names(Attribute("class"));
    for (std::string each; names >> each;) {
        if (each == className) return true;
    }
    return false;
}

SvgElement ParseSvg(std::string_view text) { return Parser(text).Document(); }

std::vector<const SvgElement*> ElementsOf(const SvgElement& element, const std::string& name) {
    std::vector<const SvgElement*> found;
    Collect(element, name, found);
    return found;
}

std::vector<const SvgElement*> ElementsOf(const SvgElement& element, const std::string& name,
                                          std::string_view className) {
    std::vector<const SvgElement*> found = ElementsOf(element, name);
    std::erase_if(found, [&](const SvgElement* each) { return !each->IsOfClass(className); });
    return found;
}

std::vector<SvgPoint> PointsOf(const SvgElement& path) {
    std::string data = path.Attribute("d");
    if (data.ends_with('Z')) data.pop_back();
    std::vector<SvgPoint> points;
    for (std::string_view rest = data; !rest.empty();) {
        if (!rest.starts_with(points.empty() ? 'M' : 'L')) Refuse("a path with other commands than M and L");
        const std::size_t blank = rest.find(' ');
        const std::size_t end = std::min(rest.find('L', 1), rest.size());
        if (blank >= end) Refuse("a point without its y");
        points.push_back({NumberOf(rest.substr(1, blank - 1)), NumberOf(rest.substr(blank + 1, end - blank - 1))});
        rest.remove_prefix(end);
    }
    return points;
}
