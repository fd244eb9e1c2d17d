#pragma once

#include <functional>
#include <string>
#include <vector>

namespace qmv40 {

/// Changes the content of a file (empty for one that does not exist).
using FileEdit = std::function<void(std::string& content)>;

/// Edits a file in one step: at every moment the file has the old content or the new one. The edits are made in a copy
/// beside the file. The copy has the permissions, access control list, extended attributes and owner of the file, and
/// replaces it. If that is impossible (an unwritable folder, a full disk, a link, a mounted file, another owner), the
/// edits are made in the file itself, one after the other. The first failure ends this: the failing edit is undone, and
/// those before it stay. If the edits change nothing, the file is not written. False if an edit was not made, or if the
/// file cannot be read to its end.
bool EditFile(const std::string& name, const std::vector<FileEdit>& edits);

} // namespace qmv40
