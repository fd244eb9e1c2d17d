#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace qmv40::text {

enum class Quantity { Angle, Length };
enum class LengthUnit { Millimetre, Inch };

/// A column of numbers. A header has either the names of all columns, or the short names of all.
struct Column {
    std::string_view name;
    std::string_view shortName;
    Quantity quantity;
};

/// The columns of captures, lists of points and tours: the head's angles and the machine position.
inline constexpr std::array<Column, 5> positionColumns{{{"APosition", "A", Quantity::Angle},
                                                        {"BPosition", "B", Quantity::Angle},
                                                        {"XPosition", "X", Quantity::Length},
                                                        {"YPosition", "Y", Quantity::Length},
                                                        {"ZPosition", "Z", Quantity::Length}}};
inline constexpr std::span<const Column> angleColumns = std::span(positionColumns).first<2>();
inline constexpr std::span<const Column> coordinateColumns = std::span(positionColumns).last<3>();

/// The numbers of one data line.
struct NumberRow {
    std::size_t line; ///< counted from 1
    std::vector<double> values;
};

struct NumberTable {
    std::vector<NumberRow> rows;
    std::optional<LengthUnit> unit; ///< of the lengths, as the header gives it; the values are not converted
};

/// The columns of a CSV file: one row for each data line, its values in the order of `columns`.
///
/// Blank lines and lines that begin with `#` are skipped. The first other line is the header, or `sep=` with the
/// separator, and then the header. Columns can have any order and letter case; other columns are
/// ignored. A name can be followed by a unit: "X [mm]", "X (in)", "A/deg".
///
/// The separator is a comma, a semicolon or a tabulator, whichever gives the header all columns. The decimal mark is a
/// point whatever the locale; it can be a comma where the separator is another character and no number of the file has
/// a point. Fields can be quoted. The text is UTF-8, with or without a byte-order mark, or UTF-16 with one.
///
/// Throws InputError, with the line, for everything else. A text with two possible meanings is refused.
NumberTable ReadNumberTable(const std::string& fileName, std::span<const Column> columns);

} // namespace qmv40::text
