#pragma once

#include <filesystem>
#include <string>

namespace qmv40::view {

/// The name of the installed template of the page. It is searched beside the folder of the program and in it. Throws
/// InputError when it is in neither place.
std::string FindPageTemplate(const std::filesystem::path& programFolder);

} // namespace qmv40::view
