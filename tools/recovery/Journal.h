#pragma once

#include "tools/recovery/Stop.h"

#include <string>

/// The journal that a program writes while it drives the machine: one line before and one after each move.
///
///     before 9 from 0,0 to 45,90;
///     after 9 from 0,0 to 45,90;
///
/// Each line says which plan it belongs to, so that the end of a file is enough. It ends with a semicolon and a line
/// end, so that a line that was written in part is recognised.

namespace qmv40::recovery {

struct Journal {
    KnownMove known;     ///< by the last whole line; nothing is known without one
    bool isTorn = false; ///< a part of another line follows
};

/// Throws InputError for a line that does not belong in a journal, when moves are missing, and when the last plan is
/// not the one from `from` to `to`.
Journal ReadJournal(const std::string& fileName, const model::HeadAngles& from, const model::HeadAngles& to);

} // namespace qmv40::recovery
