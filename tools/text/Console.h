#pragma once

#include <ostream>
#include <string>

namespace qmv40::text {

/// The text in red on a terminal.
inline std::string Red(const std::string& text) { return "\x1b[31m" + text + "\x1b[0m"; }

/// Where a command writes: data to `out`, messages to `err`.
struct Console {
    std::ostream& out;
    std::ostream& err;
    bool colour = false;   ///< data on `out` may have terminal colours
    bool progress = false; ///< `err` is a terminal, where a line can be overwritten

    std::string Strong(const std::string& text) const { return colour ? "\x1b[1m" + text + "\x1b[0m" : text; }
};

} // namespace qmv40::text
