#include "tools/text/Table.h"

#include <algorithm>

namespace qmv40::text {

namespace {

constexpr const char* gap = "  ";

} // namespace

void Table::Print(const Console& console) const {
    const std::vector<std::size_t> widths = Widths();
    Row heads;
    for (const Column& column : columns) heads.cells.push_back(column.head);
    if (const std::string line = LineOf(heads, widths); !line.empty()) console.out << console.Strong(line) << '\n';
    for (const Row& row : rows) console.out << LineOf(row, widths) << '\n';
}

std::vector<std::size_t> Table::Widths() const {
    std::vector<std::size_t> widths;
    widths.reserve(columns.size());
    for (const Column& column : columns) widths.push_back(column.head.size());
    for (const Row& row : rows) {
        for (std::size_t i = 0; i < row.cells.size(); ++i) widths[i] = std::max(widths[i], row.cells[i].size());
    }
    return widths;
}

std::string Table::LineOf(const Row& row, const std::vector<std::size_t>& widths) const {
    std::string line;
    for (std::size_t i = 0; i < row.cells.size(); ++i) {
        const std::string padding(widths[i] - row.cells[i].size(), ' ');
        line += gap;
        line += columns[i].align == Align::Left ? row.cells[i] + padding : padding + row.cells[i];
    }
    line += gap + row.note;
    return line.substr(0, line.find_last_not_of(' ') + 1);
}

} // namespace qmv40::text
