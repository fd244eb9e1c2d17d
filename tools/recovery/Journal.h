#pragma once

#include "tools/recovery/Stop.h"

#include <string>

/// The journal that a program writes while it drives the machine: one line before and one after each move.
///
///     before 9 from 0,0 to 45,90;
///     after 9 from 0,0 to 45,90;
///
/// Each line says which plan it belongs to, so that the end of a file is enough, and ends with a semicolon and a line
/// end, so that one that the disk has in part alone is recognised.

namespace qmv40::recovery {

struct Journal {
    KnownMove known;     ///< what the last whole line says; nothing for a journal without one
    bool isTorn = false; ///< behind it is a part of another line
};

/// Throws InputError when a line is none of a journal's, when moves are missing, and when the last plan is not the one
/// from `from` to `to`.
Journal ReadJournal(const std::string& fileName, const model::HeadAngles& from, const model::HeadAngles& to);

} // namespace qmv40::recovery
