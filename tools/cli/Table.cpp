#include "cli/Table.h"

#include <algorithm>

void Table::Print(const Console& console) const {
    const std::vector<std::size_t> widths = Widths();
    std::vector<std::string> heads;
    for (const Column& column : columns) heads.push_back(column.head);
    if (const std::string line = LineOf(heads, widths); !line.empty()) console.out << console.Strong(line) << '\n';
    for (const std::vector<std::string>& cells : rows) console.out << LineOf(cells, widths) << '\n';
}

std::vector<std::size_t> Table::Widths() const {
    std::vector<std::size_t> widths;
    for (const Column& column : columns) widths.push_back(column.head.size());
    for (const std::vector<std::string>& cells : rows)
        for (std::size_t i = 0; i < cells.size(); ++i) widths[i] = std::max(widths[i], cells[i].size());
    return widths;
}

std::string Table::LineOf(const std::vector<std::string>& cells, const std::vector<std::size_t>& widths) const {
    constexpr const char* gap = "  ";
    std::string line;
    for (std::size_t i = 0; i < cells.size(); ++i) {
        const std::string padding(widths[i] - cells[i].size(), ' ');
        line += gap + (columns[i].align == Align::Left ? cells[i] + padding : padding + cells[i]);
    }
    return line.substr(0, line.find_last_not_of(' ') + 1);
}
