#pragma once

#include "tools/text/OutputFile.h"

#include <string>

namespace qmv40::view {

/// The two kinds of files that `qmv40 view` writes, each known by a mark in its first line.
text::FileKind PageKind();
text::FileKind DrawingKind();

/// A page with the mark of its kind: behind the document type, because a browser expects that first.
std::string MarkedPage(std::string page);

/// What stands before a drawing in a file of its own: the declaration of XML, and the mark.
std::string DrawingFileStart();

} // namespace qmv40::view
