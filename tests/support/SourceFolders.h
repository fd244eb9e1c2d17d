#pragma once

#include <string>

/// Folders of the source tree that tests read: absolute paths with "/" between the names and none at the end.
std::string SourceRoot();
std::string TestDataFolder();
std::string ScenariosFolder();
