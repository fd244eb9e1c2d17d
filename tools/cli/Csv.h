#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

/// The named columns of a CSV file of numbers: one row of values per data line, in the order of `names`.
///
/// The first line that is neither blank nor a comment (`#`) is the header; its columns stand in any order and letter
/// case, and columns that nobody asked for are ignored. `.` is the decimal mark whatever the locale. Fields may be
/// quoted and surrounded by blanks; lines end in LF or CRLF; a UTF-8 byte-order mark is skipped.
/// Throws InputError, with the line, for anything that is not so.
std::vector<std::vector<double>> ReadNumberColumns(const std::string& fileName,
                                                   std::span<const std::string_view> names);
