#pragma once

#include "tools/text/OutputFile.h"

#include <string>

namespace qmv40::view {

/// The two kinds of files that `qmv40 view` writes, each known by a mark in its first line.
text::FileKind PageKind();
text::FileKind DrawingKind();

/// The page with the mark of its kind. The mark comes after the document type, which browsers expect first.
std::string MarkedPage(std::string page);

/// The beginning of a file with a drawing: the XML declaration and the mark.
std::string DrawingFileStart();

} // namespace qmv40::view
