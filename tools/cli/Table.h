#pragma once

#include "cli/Console.h"

#include <string>
#include <vector>

/// Text in aligned columns.
class Table {
public:
    enum class Align { Left, Right };
    struct Column {
        std::string head;
        Align align = Align::Right;
    };

    explicit Table(std::vector<Column> theColumns) : columns(std::move(theColumns)) {}

    /// Cells of one row, as many as there are columns or fewer.
    void AddRow(std::vector<std::string> cells) { rows.push_back(std::move(cells)); }
    void Print(const Console& console) const;

private:
    std::vector<std::size_t> Widths() const;
    std::string LineOf(const std::vector<std::string>& cells, const std::vector<std::size_t>& widths) const;

    std::vector<Column> columns;
    std::vector<std::vector<std::string>> rows;
};
