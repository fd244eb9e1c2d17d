#pragma once

#include <string>

/// Folders of the source tree that tests read, absolute, with "/" and without one at the end.
std::string SourceRoot();
std::string TestDataFolder();
std::string ScenariosFolder();
