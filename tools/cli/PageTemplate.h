#pragma once

#include <filesystem>
#include <string>

/// Where the page is installed beside a program in this folder. Throws InputError when it is in none of the places.
std::string FindPageTemplate(const std::filesystem::path& programFolder);
