#pragma once

#include "tools/text/Console.h"
#include "tools/text/Json.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace qmv40::settings {

/// Something that is wrong on this machine or in a file, and what to do about it.
struct Complaint {
    std::optional<std::size_t> line; ///< of the file, where there is one
    std::string about;               ///< the name of what is wrong; empty when the problem says it
    std::string problem;             ///< a sentence that begins with `about`, without its full stop
    std::string remedy;
};

/// For people: what is wrong and, below, what to do.
void PrintComplaints(const std::vector<Complaint>& complaints, std::ostream& out);

/// A list of {line, about, problem, remedy}.
text::Json ComplaintsJson(const std::vector<Complaint>& complaints);

} // namespace qmv40::settings
