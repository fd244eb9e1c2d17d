#pragma once

#include "tools/settings/Complaint.h"
#include "tools/text/Json.h"

#include <string>
#include <vector>

namespace qmv40::settings {

/// One fact about this machine: what it is called in a document and for a person, and its value (text, true or false,
/// or null where there is nothing).
struct Fact {
    std::string key;
    std::string label;
    text::Json value;
};

/// Where the component that this tool uses comes from, and what the machine says about it to other programs.
struct Installation {
    std::vector<Fact> component;
    std::vector<Fact> registration;
    std::vector<Complaint> complaints;
};

Installation ExamineInstallation();

/// The file of this program.
std::string OwnFile();

} // namespace qmv40::settings
