#pragma once

#include "tools/settings/Finding.h"
#include "tools/text/Json.h"

#include <string>
#include <vector>

namespace qmv40::settings {

/// One fact about this machine: its name in a document, its name for a person, and its value (text, true or false, or
/// null when there is none).
struct Fact {
    std::string key;
    std::string label;
    text::Json value;
};

/// Where the component that this tool uses comes from, and where the machine sends other programs for it.
struct Installation {
    std::vector<Fact> component;
    std::vector<Fact> registration;
    std::vector<Finding> findings;
};

Installation ExamineInstallation();

/// The file of the running program.
std::string OwnFile();

} // namespace qmv40::settings
