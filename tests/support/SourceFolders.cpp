#include "tests/support/SourceFolders.h"

std::string SourceRoot() { return QMV40_ROOT; }

std::string TestDataFolder() { return SourceRoot() + "/tests/data"; }

std::string ScenariosFolder() { return SourceRoot() + "/scenarios"; }
