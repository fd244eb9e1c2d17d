#pragma once

#include <filesystem>
#include <string>

namespace qmv40::view {

/// The file of the installed page of a program in this folder. Throws InputError when it is in none of the places.
std::string FindPageTemplate(const std::filesystem::path& programFolder);

} // namespace qmv40::view
