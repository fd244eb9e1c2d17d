#include "tools/text/Csv.h"

#include "tools/text/Failures.h"
#include "tools/text/Files.h"
#include "tools/text/Numbers.h"
#include "tools/text/Text.h"

#include <algorithm>
#include <iterator>

namespace qmv40::text {

namespace {

/// One line of a file and where it stands, for messages.
struct Line {
    const std::string& file;
    std::size_t number;
    std::string_view text;

    [[noreturn]] void Refuse(std::string reason) const { throw InputError{file, number, std::move(reason)}; }
};

/// The content without its byte-order mark. Text in another encoding would fail in the header, and puzzle the user.
std::string_view WithoutMark(const std::string& fileName, std::string_view content) {
    if (content.starts_with("\xFF\xFE") || content.starts_with("\xFE\xFF")) {
        throw InputError{fileName, {}, "is UTF-16 text: save it as UTF-8"};
    }
    if (content.starts_with("\xEF\xBB\xBF")) content.remove_prefix(3);
    return content;
}

/// The lines that say something: neither blank nor a comment.
std::vector<Line> SignificantLines(const std::string& fileName, std::string_view content) {
    std::vector<Line> lines;
    for (std::size_t number = 1; !content.empty(); ++number) {
        const std::size_t end = std::min(content.find('\n'), content.size());
        std::string_view text = content.substr(0, end);
        content.remove_prefix(std::min(end + 1, content.size()));
        if (text.ends_with('\r')) text.remove_suffix(1);
        text = Trimmed(text);
        if (!text.empty() && !text.starts_with('#')) lines.push_back({fileName, number, text});
    }
    return lines;
}

/// Takes a quoted field, and the blanks after it, off the front of `rest`. Two quotes inside stand for one.
std::string TakeQuotedField(const Line& line, std::string_view& rest) {
    std::string field;
    for (std::size_t at = 1; at < rest.size(); ++at) {
        if (rest[at] != '"') {
            field += rest[at];
        } else if (rest.substr(at).starts_with("\"\"")) {
            field += rest[at++];
        } else {
            rest = Trimmed(rest.substr(at + 1));
            if (!rest.empty() && !rest.starts_with(',')) line.Refuse("something follows the closing quote of a field");
            return field;
        }
    }
    line.Refuse("the closing quote of a field is missing");
}

std::string TakePlainField(std::string_view& rest) {
    const std::string_view field = rest.substr(0, rest.find(','));
    rest.remove_prefix(field.size());
    return std::string(Trimmed(field));
}

std::vector<std::string> Fields(const Line& line) {
    std::vector<std::string> fields;
    std::string_view rest = line.text;
    while (true) {
        rest = Trimmed(rest);
        fields.push_back(rest.starts_with('"') ? TakeQuotedField(line, rest) : TakePlainField(rest));
        if (rest.empty()) return fields;
        rest.remove_prefix(1); // the comma: one more field follows, though it be empty
    }
}

/// Where the column `name` stands in the header.
std::size_t ColumnIndex(const Line& line, const std::vector<std::string>& header, std::string_view name) {
    const auto isNamed = [name](const std::string& field) { return SameName(field, name); };
    const auto found = std::ranges::find_if(header, isNamed);
    if (found == header.end()) {
        const bool hasSemicolons = header.size() == 1 && header.front().find(';') != std::string::npos;
        line.Refuse("the header has no column " + std::string(name) +
                    (hasSemicolons ? " (fields are to be separated by commas)" : ""));
    }
    if (std::find_if(std::next(found), header.end(), isNamed) != header.end()) {
        line.Refuse("the header has two columns " + std::string(name));
    }
    return static_cast<std::size_t>(found - header.begin());
}

double Number(const Line& line, const std::string& field, std::string_view column) {
    const ParsedNumber parsed = ParseNumber(field);
    if (parsed.problem != nullptr) line.Refuse(std::string(column) + " '" + field + "' " + parsed.problem);
    return parsed.value;
}

} // namespace

std::vector<NumberRow> ReadNumberColumns(const std::string& fileName, std::span<const std::string_view> names) {
    const std::string content = ReadWholeFile(fileName);
    const std::vector<Line> lines = SignificantLines(fileName, WithoutMark(fileName, content));
    if (lines.empty()) throw InputError{fileName, 1, "there is no header"};

    const std::vector<std::string> header = Fields(lines.front());
    std::vector<std::size_t> columns;
    for (const std::string_view name : names) columns.push_back(ColumnIndex(lines.front(), header, name));

    std::vector<NumberRow> rows;
    for (const Line& line : std::span(lines).subspan(1)) {
        const std::vector<std::string> fields = Fields(line);
        if (fields.size() != header.size()) {
            line.Refuse("there are " + std::to_string(fields.size()) + " fields where the header has " +
                        std::to_string(header.size()));
        }
        NumberRow& row = rows.emplace_back(NumberRow{line.number, {}});
        for (std::size_t i = 0; i < names.size(); ++i) row.values.push_back(Number(line, fields[columns[i]], names[i]));
    }
    return rows;
}

} // namespace qmv40::text
