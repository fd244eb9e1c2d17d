#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace qmv40::text {

/// The numbers of one data line.
struct NumberRow {
    std::size_t line; ///< counted from 1
    std::vector<double> values;
};

/// The named columns of a CSV file of numbers: one row per data line, its values in the order of `names`.
///
/// The first line that is neither blank nor a comment (`#`) is the header; its columns stand in any order and letter
/// case, and columns that nobody asked for are ignored. `.` is the decimal mark whatever the locale. Fields may be
/// quoted and surrounded by blanks; lines end in LF or CRLF; a UTF-8 byte-order mark is skipped.
/// Throws InputError, with the line, for anything that is not so.
std::vector<NumberRow> ReadNumberColumns(const std::string& fileName, std::span<const std::string_view> names);

} // namespace qmv40::text
