#pragma once

#include "tools/text/OutputFile.h"

#include <filesystem>
#include <string>

namespace qmv40::view {

/// The file name of the installed template of the page: share/qmv40/view.html, beside the folder of the program or in
/// it. Throws InputError when it is in neither place.
std::string FindPageTemplate(const std::filesystem::path& programFolder);

/// The page with the mark by which `PageKind` recognises it. The mark comes after the document type, which browsers
/// expect first.
std::string MarkedPage(std::string page);
text::FileKind PageKind();

} // namespace qmv40::view
