#include "tools/text/Csv.h"

#include "formats/AsciiText.h"
#include "formats/EncodedText.h"
#include "tools/text/Failures.h"
#include "tools/text/Files.h"
#include "tools/text/Numbers.h"

#include <algorithm>

namespace qmv40::text {

using ascii::EqualIgnoringCase;
using ascii::Trimmed;

namespace {

/// A line of a file with its place, for messages.
struct Line {
    const std::string& file;
    std::size_t number;
    std::string_view text;

    [[noreturn]] void Refuse(std::string reason) const { throw InputError{file, number, std::move(reason)}; }
};

constexpr std::string_view possibleSeparators{",;\t"};

/// The lines that are neither blank nor a comment.
std::vector<Line> SignificantLines(const std::string& fileName, std::string_view content) {
    std::vector<Line> lines;
    std::size_t number = 0;
    for (std::size_t at = 0; at < content.size();) {
        const ascii::TextLine line = ascii::LineAt(content, at);
        at = line.next;
        ++number;
        const std::string_view text = Trimmed(line.content);
        if (!text.empty() && !text.starts_with('#')) lines.push_back({fileName, number, line.content});
    }
    return lines;
}

/// The fields of a line, or what is wrong with it.
struct Fields {
    std::vector<std::string> texts;
    const char* problem = nullptr; ///< a sentence without its full stop; null when there is none
};

struct FieldSplitter {
    char separator;

    Fields Split(std::string_view line) const {
        Fields fields;
        for (std::string_view rest = line;; rest.remove_prefix(1)) { // there is one more field after a separator
            rest = WithoutBlanksBefore(rest);
            fields.texts.push_back(rest.starts_with('"') ? TakeQuoted(rest, fields.problem) : TakePlain(rest));
            if (rest.empty() || fields.problem != nullptr) return fields;
        }
    }

private:
    /// Blanks before a field are skipped. A tabulator is not a blank where it is the separator.
    std::string_view WithoutBlanksBefore(std::string_view text) const {
        while (!text.empty() && text.front() != separator && ascii::blanks.find(text.front()) != std::string_view::npos)
            text.remove_prefix(1);
        return text;
    }

    /// Takes a quoted field and the blanks after it off the front of `rest`. Two quotes inside it mean one quote.
    std::string TakeQuoted(std::string_view& rest, const char*& problem) const {
        std::string field;
        for (std::size_t at = 1; at < rest.size(); ++at) {
            if (rest[at] != '"') {
                field += rest[at];
            } else if (rest.substr(at).starts_with("\"\"")) {
                field += rest[at++];
            } else {
                rest = WithoutBlanksBefore(rest.substr(at + 1));
                if (!rest.empty() && rest.front() != separator)
                    problem = "something follows the closing quote of a field";
                return field;
            }
        }
        problem = "the closing quote of a field is missing";
        return field;
    }

    std::string TakePlain(std::string_view& rest) const {
        const std::string_view field = rest.substr(0, rest.find(separator));
        rest.remove_prefix(field.size());
        return std::string(Trimmed(field));
    }
};

bool IsOneOf(std::string_view text, std::initializer_list<std::string_view> words) {
    return std::ranges::any_of(words, [&](std::string_view word) { return EqualIgnoringCase(text, word); });
}
bool IsDegree(std::string_view unit) { return IsOneOf(unit, {"deg", "degree", "degrees", "\xC2\xB0", "\xB0"}); }
std::optional<LengthUnit> LengthUnitOf(std::string_view unit) {
    if (IsOneOf(unit, {"mm", "millimetre", "millimetres", "millimeter", "millimeters"})) return LengthUnit::Millimetre;
    return IsOneOf(unit, {"in", "inch", "inches", "\""}) ? std::optional(LengthUnit::Inch) : std::nullopt;
}

/// A field of the header: a name and an optional unit: "X [mm]", "X (mm)", "X/mm".
struct HeaderField {
    explicit HeaderField(std::string_view field) : name(Trimmed(field)) {
        const std::size_t mark = field.find_first_of("[(/");
        if (mark == std::string_view::npos) return;
        std::string_view behind = Trimmed(field.substr(mark + 1));
        const char closing = field[mark] == '[' ? ']' : field[mark] == '(' ? ')' : '\0';
        if (closing != '\0' && !behind.ends_with(closing)) return;
        if (closing != '\0') behind.remove_suffix(1);
        unit = Trimmed(behind);
        name = Trimmed(field.substr(0, mark));
    }

    std::string name;
    std::string unit; ///< empty: none
};

/// The places of the wanted columns in a header, under one of their two sets of names.
class Header {
public:
    using NameOfColumn = std::string_view Column::*;

    Header(const std::vector<std::string>& texts, std::span<const Column> theColumns, NameOfColumn theName)
        : columns(theColumns), name(theName), fields(texts.begin(), texts.end()) {
        for (const Column& column : columns) places.push_back(PlaceOf(column));
    }

    std::size_t Found() const {
        return columns.size() - static_cast<std::size_t>(std::ranges::count(places, fields.size()));
    }
    std::size_t Width() const { return fields.size(); }
    std::size_t Place(std::size_t column) const { return places[column]; }
    std::string Name(std::size_t column) const { return std::string(columns[column].*name); }

    /// What is wrong with the header; empty when nothing is.
    std::string Problem() const {
        for (std::size_t i = 0; i < columns.size(); ++i) {
            if (places[i] == fields.size())
                return "the header has no column " + Name(i) + ": write the header " + AllNames();
            if (IsRepeated(columns[i])) return "the header has two columns " + Name(i);
        }
        for (std::size_t i = 0; i < columns.size(); ++i) {
            if (std::string problem = UnitProblem(i); !problem.empty()) return problem;
        }
        return "";
    }

    std::optional<LengthUnit> Unit() const {
        const auto isLength = [](const Column& column) { return column.quantity == Quantity::Length; };
        const auto length = std::ranges::find_if(columns, isLength);
        if (length == columns.end()) return std::nullopt;
        return LengthUnitOf(UnitText(static_cast<std::size_t>(length - columns.begin())));
    }

private:
    bool IsNamed(const HeaderField& field, const Column& column) const {
        return EqualIgnoringCase(field.name, column.*name);
    }

    std::size_t PlaceOf(const Column& column) const {
        const auto found =
            std::ranges::find_if(fields, [&](const HeaderField& field) { return IsNamed(field, column); });
        return static_cast<std::size_t>(found - fields.begin());
    }

    bool IsRepeated(const Column& column) const {
        return std::ranges::count_if(fields, [&](const HeaderField& field) { return IsNamed(field, column); }) > 1;
    }

    const std::string& UnitText(std::size_t column) const { return fields[places[column]].unit; }

    std::string UnitProblem(std::size_t i) const {
        const std::string& unit = UnitText(i);
        const bool isAngle = columns[i].quantity == Quantity::Angle;
        const bool isKnown = unit.empty() || (isAngle ? IsDegree(unit) : LengthUnitOf(unit).has_value());
        if (!isKnown) {
            return "column " + Name(i) + " is in '" + unit +
                   "': " + (isAngle ? "angles are read in deg" : "lengths are read in mm or in");
        }
        if (isAngle || LengthUnitOf(unit) == Unit()) return "";
        return "column " + Name(i) + " has another unit than the lengths before it: give all of them the same unit";
    }

    std::string AllNames() const {
        std::string names;
        for (const Column& column : columns) names += (names.empty() ? "" : ",") + std::string(column.name);
        return names;
    }

    std::span<const Column> columns;
    NameOfColumn name;
    std::vector<HeaderField> fields;
    std::vector<std::size_t> places; ///< of each column in the header; the header's width when it has no such column
};

/// Reads the numbers of one file, which has one decimal mark.
class NumberReader {
public:
    explicit NumberReader(char separator) : isCommaPossible(separator != ',') {}

    double Read(const Line& line, const std::string& field, const std::string& column) {
        const std::size_t mark = field.find_first_of(".,");
        const bool hasComma = mark != std::string::npos && field[mark] == ',';
        std::string text = field;
        if (hasComma && isCommaPossible) text[mark] = '.';
        const ParsedNumber parsed = ParseNumber(text);
        std::string problem = parsed.problem == nullptr ? OtherMark(line, field, mark) : parsed.problem;
        if (parsed.problem != nullptr && hasComma && !isCommaPossible)
            problem += ": the decimal mark is a point where commas separate the fields";
        if (!problem.empty()) line.Refuse(column + " '" + field + "' " + problem);
        return parsed.value;
    }

private:
    /// The message for a number whose decimal mark differs from that of the numbers before it.
    std::string OtherMark(const Line& line, const std::string& field, std::size_t mark) {
        if (mark == std::string::npos) return "";
        if (decimalMark == '\0') {
            decimalMark = field[mark];
            lineOfMark = line.number;
        }
        if (decimalMark == field[mark]) return "";
        return std::string("has '") + field[mark] + "' as its decimal mark, and line " + std::to_string(lineOfMark) +
               " '" + decimalMark + "': use one in the whole file";
    }

    bool isCommaPossible;
    char decimalMark = '\0'; ///< of the numbers read so far
    std::size_t lineOfMark = 0;
};

/// The separator that a line such as `sep=;` gives.
std::optional<char> GivenSeparator(std::string_view line) {
    constexpr std::string_view start{"sep="};
    line = ascii::TrimmedLeft(line);
    if (!ascii::StartsWithIgnoringCase(line, start) || line.size() == start.size()) return std::nullopt;
    const char separator = line[start.size()];
    const bool isPossible = possibleSeparators.find(separator) != std::string_view::npos;
    return isPossible && Trimmed(line.substr(start.size() + 1)).empty() ? std::optional(separator) : std::nullopt;
}

/// How to read the fields and the header of a file.
struct Dialect {
    FieldSplitter splitter;
    Header header;
};

/// The dialect that finds most columns in the header; of several, the first.
Dialect DialectOf(const Line& line, std::string_view separators, std::span<const Column> columns) {
    std::optional<Dialect> best;
    std::string problem;
    for (const char separator : separators) {
        const FieldSplitter splitter{separator};
        const Fields fields = splitter.Split(line.text);
        if (problem.empty() && fields.problem != nullptr) problem = fields.problem;
        for (const auto name : {&Column::name, &Column::shortName}) {
            Header header(fields.texts, columns, name);
            const bool isBetter = !best || header.Found() > best->header.Found();
            if (fields.problem == nullptr && isBetter) best.emplace(Dialect{splitter, std::move(header)});
        }
    }
    if (!best) line.Refuse(problem);
    if (const std::string found = best->header.Problem(); !found.empty()) line.Refuse(found);
    return *best;
}

std::vector<std::string> FieldsOf(const Line& line, const Dialect& dialect) {
    Fields fields = dialect.splitter.Split(line.text);
    if (fields.problem != nullptr) line.Refuse(fields.problem);
    if (fields.texts.size() != dialect.header.Width()) {
        const bool maybeDecimalCommas =
            dialect.splitter.separator == ',' && fields.texts.size() > dialect.header.Width() + 1;
        line.Refuse("there are " + std::to_string(fields.texts.size()) + " fields where the header has " +
                    std::to_string(dialect.header.Width()) +
                    (maybeDecimalCommas ? ": numbers with decimal commas need semicolons between the columns" : ""));
    }
    return std::move(fields.texts);
}

NumberTable TableIn(std::span<const Line> lines, const Dialect& dialect, std::size_t columns) {
    NumberTable table{{}, dialect.header.Unit()};
    NumberReader numbers(dialect.splitter.separator);
    for (const Line& line : lines) {
        const std::vector<std::string> fields = FieldsOf(line, dialect);
        NumberRow& row = table.rows.emplace_back(NumberRow{line.number, {}});
        for (std::size_t i = 0; i < columns; ++i) {
            row.values.push_back(numbers.Read(line, fields[dialect.header.Place(i)], dialect.header.Name(i)));
        }
    }
    return table;
}

} // namespace

NumberTable ReadNumberTable(const std::string& fileName, std::span<const Column> columns) {
    const EncodedText content(ReadWholeFile(fileName));
    const std::vector<Line> all = SignificantLines(fileName, content.text);
    std::span<const Line> lines(all);
    const std::optional<char> given = lines.empty() ? std::nullopt : GivenSeparator(lines.front().text);
    if (given) lines = lines.subspan(1);
    if (lines.empty()) throw InputError{fileName, 1, "there is no header"};
    const std::string separators = given ? std::string(1, *given) : std::string(possibleSeparators);
    return TableIn(lines.subspan(1), DialectOf(lines.front(), separators, columns), columns.size());
}

} // namespace qmv40::text
