#pragma once

#include "tools/text/Console.h"

#include <string>
#include <vector>

namespace qmv40::text {

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
    void AddRow(std::vector<std::string> cells) { rows.push_back({std::move(cells), ""}); }
    /// A line that begins at a column and may extend over the following ones.
    void AddNote(std::size_t column, std::string text) {
        rows.push_back({std::vector<std::string>(column), std::move(text)});
    }
    void Print(const Console& console) const;

private:
    struct Row {
        std::vector<std::string> cells;
        std::string note; ///< follows the cells
    };

    std::vector<std::size_t> Widths() const;
    std::string LineOf(const Row& row, const std::vector<std::size_t>& widths) const;

    std::vector<Column> columns;
    std::vector<Row> rows;
};

} // namespace qmv40::text
