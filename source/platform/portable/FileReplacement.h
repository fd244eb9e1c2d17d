#pragma once

#include <functional>
#include <string>
#include <vector>

namespace qmv40 {

/// Changes the content of a file (empty for one that does not exist).
using FileEdit = std::function<void(std::string& content)>;

/// Edits a file as ProfileWriter::Commit promises: in a copy that replaces the file or, if that is impossible, in the
/// file itself. The copy has the permissions, access control list, extended attributes and owner of the file. If the
/// edits change nothing, the file is not written. False if an edit was not made, or if the file cannot be read to its
/// end.
bool EditFile(const std::string& name, const std::vector<FileEdit>& edits);

} // namespace qmv40
