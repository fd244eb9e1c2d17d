#include "tools/check/obstacles/StlFile.h"

#include "formats/AsciiText.h"
#include "tools/text/Failures.h"
#include "tools/text/Numbers.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>

namespace qmv40::check::obstacles {

namespace {

using model::Vector3;

// A binary file: 80 bytes that do not matter, the number of triangles, and 50 bytes for each. Numbers are
// little-endian.
constexpr std::size_t headerSize = 84;
constexpr std::size_t countAt = 80;
constexpr std::size_t triangleSize = 50;
constexpr std::size_t cornersAt = 12; // after the normal, which is not needed

std::uint32_t WholeAt(std::string_view content, std::size_t at) {
    std::uint32_t value = 0;
    for (std::size_t i = 4; i-- > 0;) value = (value << 8U) | static_cast<unsigned char>(content[at + i]);
    return value;
}

double NumberAt(std::string_view content, std::size_t at) {
    return static_cast<double>(std::bit_cast<float>(WholeAt(content, at)));
}

Vector3 CornerAt(std::string_view content, std::size_t at) {
    return {NumberAt(content, at), NumberAt(content, at + 4), NumberAt(content, at + 8)};
}

bool IsFinite(const Triangle& triangle) { return IsFinite(triangle.a) && IsFinite(triangle.b) && IsFinite(triangle.c); }

bool IsBinary(std::string_view content) {
    // Some programs begin a binary file with "solid", like a text. The length tells them apart.
    return content.size() >= headerSize && content.size() == headerSize + triangleSize * WholeAt(content, countAt);
}

std::vector<Triangle> BinaryTriangles(const std::string& fileName, std::string_view content) {
    std::vector<Triangle> triangles;
    for (std::size_t at = headerSize; at < content.size(); at += triangleSize) {
        const std::size_t corners = at + cornersAt;
        triangles.push_back(
            {CornerAt(content, corners), CornerAt(content, corners + 12), CornerAt(content, corners + 24)});
        if (!IsFinite(triangles.back())) {
            throw text::InputError{
                fileName, {}, "triangle " + std::to_string(triangles.size()) + " has a corner that is not a number"};
        }
    }
    return triangles;
}

/// The first five words of a line: 'vertex', three numbers, and one that must not be there. A missing word is empty.
std::array<std::string_view, 5> WordsOf(std::string_view line) {
    std::array<std::string_view, 5> words;
    for (std::string_view& word : words) {
        line = ascii::Trimmed(line);
        const std::size_t end = std::min(line.find_first_of(" \t"), line.size());
        word = line.substr(0, end);
        line.remove_prefix(end);
    }
    return words;
}

/// Reads a text, line by line.
class StlText {
public:
    StlText(const std::string& theFileName, std::string_view theContent) : fileName(theFileName), content(theContent) {}

    std::vector<Triangle> Triangles() {
        for (std::size_t at = 0; at < content.size();) {
            const ascii::TextLine text = ascii::LineAt(content, at);
            ++line;
            Take(text.content);
            at = text.next;
        }
        if (!corners.empty()) Refuse("the file ends within a triangle");
        return std::move(triangles);
    }

private:
    [[noreturn]] void Refuse(const std::string& reason) const { throw text::InputError{fileName, line, reason}; }

    void Take(std::string_view text) {
        const auto words = WordsOf(text);
        if (ascii::EqualIgnoringCase(words[0], "vertex")) {
            if (!words[4].empty()) Refuse("more than three numbers follow 'vertex'");
            corners.push_back({NumberOf(words[1]), NumberOf(words[2]), NumberOf(words[3])});
        } else if (ascii::EqualIgnoringCase(words[0], "endfacet")) {
            if (corners.size() != 3) Refuse("a facet with " + std::to_string(corners.size()) + " corners, and not 3");
            triangles.push_back({corners[0], corners[1], corners[2]});
            corners.clear();
        }
    }

    double NumberOf(std::string_view word) const {
        const text::ParsedNumber number = text::ParseNumber(word);
        if (number.problem != nullptr) Refuse("'" + std::string(word) + "' after 'vertex' " + number.problem);
        return number.value;
    }

    const std::string& fileName;
    std::string_view content;
    std::size_t line = 0;
    std::vector<Vector3> corners;
    std::vector<Triangle> triangles;
};

} // namespace

std::vector<Triangle> TrianglesOfStl(const std::string& fileName, std::string_view content) {
    const bool isBinary = IsBinary(content);
    if (!isBinary && !content.starts_with("solid")) {
        throw text::InputError{fileName,
                               {},
                               "is not an STL file: it neither begins with 'solid' nor has the length that a binary "
                               "file states"};
    }
    std::vector<Triangle> triangles =
        isBinary ? BinaryTriangles(fileName, content) : StlText(fileName, content).Triangles();
    if (triangles.empty()) throw text::InputError{fileName, {}, "holds no triangle"};
    return triangles;
}

} // namespace qmv40::check::obstacles
