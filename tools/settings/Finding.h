#pragma once

#include "tools/text/Finding.h"

#include <cstddef>
#include <optional>

namespace qmv40::settings {

using text::Finding;
using text::Severity;

/// What a finding is about: a line of a file, counted from 1, and the name of a setting or of an entry. Both may be
/// unknown.
struct Subject {
    std::optional<std::size_t> line = std::nullopt;
    std::string name;
};

/// A finding about a file or about this machine. `problem` is a sentence without its full stop. When the subject has a
/// name, the sentence begins with it, and `problem` continues it. The document also has the members "line" and "about".
Finding FindingAbout(const Subject& subject, std::string name, Severity severity, const std::string& problem,
                     std::string remedy);

/// Sorts findings by their lines; those without a line come first.
void SortByLine(std::vector<Finding>& findings);

} // namespace qmv40::settings
