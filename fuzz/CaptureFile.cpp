// Reads any bytes as a capture in CSV. Laws:
// - the result is rows of finite numbers, or a refusal that names the file, a line of it and a reason (no line for a
//   file in inches); reading again gives the same;
// - a correct file reads back to the same bits, with any separator, decimal mark, order and letter case of its header,
//   and with any quotes, blanks, comments, line ends and other columns;
// - if one line of it is spoilt, the refusal has the number of this line.

#include "Support.h"

#include "tools/captures/Capture.h"
#include "tools/text/Failures.h"

#include <algorithm>
#include <span>
#include <variant>
#include <vector>

using namespace qmv40;

namespace {

using Row = std::vector<double>;
using Rows = std::vector<Row>;
using Outcome = std::variant<Rows, text::InputError>;

const std::string& CaptureName() {
    static const TemporaryFolder folder;
    static const std::string name = folder.Name("capture.csv");
    return name;
}

captures::CaptureFile ReadCapture(const std::string& name) {
    return captures::ReadCapture(name, text::LengthUnit::Millimetre);
}
std::vector<model::Vector3> ReadPoints(const std::string& name) {
    return captures::ReadPoints(name, text::LengthUnit::Millimetre);
}

Rows RowsOf(const captures::CaptureFile& file) {
    Rows rows;
    for (const auto& item : file.items) {
        rows.push_back({item.APosition, item.BPosition, item.XPosition, item.YPosition, item.ZPosition});
    }
    return rows;
}

Rows RowsOf(const std::vector<model::Vector3>& points) {
    Rows rows;
    for (const auto& point : points) rows.push_back({point.x, point.y, point.z});
    return rows;
}

template <typename Read> Outcome OutcomeOf(Read read) {
    try {
        return RowsOf(read(CaptureName()));
    } catch (const text::InputError& error) {
        return error;
    }
}

bool SameRows(const Rows& left, const Rows& right) {
    return std::ranges::equal(left, right,
                              [](const Row& a, const Row& b) { return std::ranges::equal(a, b, SameNumber); });
}

void PromiseDefined(const Outcome& outcome, const Outcome& again, std::string_view content) {
    Promise(outcome.index() == again.index(), "the same file is read the same way");
    const auto isLineEnd = [](char c) { return c == '\n' || c == '\r'; };
    const auto lines = static_cast<std::size_t>(std::ranges::count_if(content, isLineEnd)) + 1;
    if (const auto* const rows = std::get_if<Rows>(&outcome)) {
        Promise(SameRows(*rows, std::get<Rows>(again)), "the same file has the same rows");
        Promise(rows->size() < lines, "every row and the header have separate lines");
        for (const Row& row : *rows) {
            Promise(std::ranges::all_of(row, [](double value) { return std::isfinite(value); }), "numbers are finite");
        }
        return;
    }
    const text::InputError& error = std::get<text::InputError>(outcome);
    Promise(error.file == CaptureName() && !error.reason.empty(), "a refusal names the file and a reason");
    Promise(error.line == std::get<text::InputError>(again).line, "the same file is refused at the same line");
    // A file whose lengths are in inches is refused as a whole.
    if (!error.line && error.reason.starts_with("the header gives the coordinates in inches")) return;
    Promise(error.line.has_value(), "a refusal names a line");
    Promise(*error.line >= 1 && *error.line <= lines, "the line of a refusal exists");
}

/// A correct file, line by line, and the numbers that must be read from it.
class CarefulWriter {
public:
    explicit CarefulWriter(FuzzedDataProvider& theInput) : input(theInput) {
        for (std::size_t i = 0; i < columns.size(); ++i) std::swap(order[i], order[i + Below(columns.size() - i)]);
        others = Below(3);
        lineEnd = input.PickValueInArray({"\n", "\r\n", "\r"});
        hasDecimalCommas = separator != ',' && input.ConsumeBool();
        AddNoise();
        if (input.ConsumeBool()) lines.push_back(std::string("sep=") + separator);
        AddNoise();
        const bool isShort = input.ConsumeBool();
        std::vector<std::string> names;
        for (const std::size_t column : order) {
            const std::string_view name = columns[column];
            names.push_back(WithAnyCase(isShort ? name.substr(0, 1) : name));
        }
        for (std::size_t i = 0; i < others; ++i) names.emplace_back(i == 0 ? "Remark" : "Remark, with a \"comma\"");
        AddLine(names);
        const std::size_t count = Below(9);
        for (std::size_t i = 0; i < count; ++i) AddRow();
    }

    const Rows& Expected() const { return rows; }
    std::size_t Lines() const { return lines.size(); }

    /// The file, with one line spoilt if its number is given.
    std::string Content(std::optional<std::size_t> spoilt = {}, std::string_view spoiltText = {}) const {
        std::string content(mark);
        for (std::size_t i = 0; i < lines.size(); ++i)
            content.append(i == spoilt ? spoiltText : lines[i]).append(lineEnd);
        return content;
    }

    bool CanSpoil() const { return !dataLines.empty(); }
    struct Damage {
        std::size_t line;
        std::string text;
    };
    /// One of the lines of numbers, spoilt.
    Damage Spoil() {
        const std::size_t line = dataLines[Below(dataLines.size())];
        const std::string& text = lines[line];
        switch (Below(4)) {
        case 0:
            return {line, text + separator + "1"}; // one field too many
        case 1:
            return {line, "7"}; // too few fields
        case 2:
            return {line, text + separator + "\"1"}; // an open quote
        default: {
            std::string wrong;
            const char* const noNumber = input.PickValueInArray(
                {"", "x", "nan", "-inf", "1e999", "0x10", "1 2", "+-1", "1.5.", "--1", "1e", "1;2", "1,5,"});
            wrong = noNumber;
            for (std::size_t i = 1; i < columns.size() + others; ++i) wrong.append(1, separator).append("1");
            return {line, wrong};
        }
        }
    }

private:
    static constexpr std::array<std::string_view, 5> columns{"APosition", "BPosition", "XPosition", "YPosition",
                                                             "ZPosition"};

    std::size_t Below(std::size_t count) { return input.ConsumeIntegralInRange<std::size_t>(0, count - 1); }

    std::string WithAnyCase(std::string_view name) {
        std::string text(name);
        const auto flips = input.ConsumeIntegral<std::uint16_t>();
        for (std::size_t i = 0; i < text.size(); ++i)
            if ((flips >> i & 1U) != 0) text[i] = static_cast<char>(text[i] ^ 0x20);
        return text;
    }

    static std::string Quoted(const std::string& field) {
        std::string quoted = "\"";
        for (const char c : field) quoted.append(c == '"' ? 2 : 1, c);
        return quoted + '"';
    }

    void AddLine(const std::vector<std::string>& fields) {
        std::string line;
        for (const std::string& field : fields) {
            const char* const blanks = input.PickValueInArray({"", "", " ", separator == '\t' ? "  " : "\t "});
            const bool isQuoted = field.find(separator) != std::string::npos || input.ConsumeBool();
            if (&field != &fields.front()) line += separator;
            line.append(blanks);
            line.append(isQuoted ? Quoted(field) : field).append(blanks);
        }
        lines.push_back(line);
    }

    /// Blank lines and comments.
    void AddNoise() {
        while (input.ConsumeIntegralInRange(0, 3) == 3)
            lines.emplace_back(input.PickValueInArray({"", " \t", "# 1,2,3", "  #"}));
    }

    void AddRow() {
        AddNoise();
        Row row(columns.size());
        for (double& value : row) {
            value = TakeDouble(input);
            if (!std::isfinite(value)) value = -0.0;
        }
        std::vector<std::string> fields;
        for (const std::size_t column : order) {
            std::array<char, 40> text{};
            std::snprintf(text.data(), text.size(), input.ConsumeBool() ? "%.17g" : "%+.16E", row[column]);
            fields.emplace_back(text.data());
            if (hasDecimalCommas) std::ranges::replace(fields.back(), '.', ',');
        }
        for (std::size_t i = 0; i < others; ++i) fields.emplace_back("any, \"thing\"");
        dataLines.push_back(lines.size());
        AddLine(fields);
        rows.push_back(row);
    }

    FuzzedDataProvider& input;
    std::array<std::size_t, 5> order{0, 1, 2, 3, 4};
    std::size_t others = 0;
    char separator = input.PickValueInArray({',', ';', '\t'});
    bool hasDecimalCommas = false;
    std::string lineEnd;
    std::string mark = input.ConsumeBool() ? "\xEF\xBB\xBF" : "";
    std::vector<std::string> lines;
    std::vector<std::size_t> dataLines;
    Rows rows;
};

void PromiseRoundTrip(FuzzedDataProvider& input) {
    CarefulWriter writer(input);
    WriteFile(CaptureName(), writer.Content());
    const Outcome outcome = OutcomeOf(ReadCapture);
    Promise(std::holds_alternative<Rows>(outcome), "a correct file is accepted");
    Promise(SameRows(std::get<Rows>(outcome), writer.Expected()), "a correct file reads back to the same bits");
    if (!writer.CanSpoil()) return;

    const auto damage = writer.Spoil();
    WriteFile(CaptureName(), writer.Content(damage.line, damage.text));
    const Outcome spoilt = OutcomeOf(ReadCapture);
    Promise(std::holds_alternative<text::InputError>(spoilt), "a spoilt line is refused");
    Promise(std::get<text::InputError>(spoilt).line == damage.line + 1, "a spoilt line is refused with its number");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view content(reinterpret_cast<const char*>(data), size);
    WriteFile(CaptureName(), content);
    PromiseDefined(OutcomeOf(ReadCapture), OutcomeOf(ReadCapture), content);
    PromiseDefined(OutcomeOf(ReadPoints), OutcomeOf(ReadPoints), content);

    FuzzedDataProvider input(data, size);
    PromiseRoundTrip(input);
    return 0;
}
