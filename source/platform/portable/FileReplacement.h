#pragma once

#include <functional>
#include <string>
#include <vector>

namespace qmv40 {

/// Changes the content of a file (empty for one that does not exist).
using FileEdit = std::function<void(std::string& content)>;

/// Makes the edits in a file. All of them reach it in one step: at every moment the name leads to the old content or
/// to the new one. They are made in a copy beside the file. The copy has the permissions, access control list, extended
/// attributes and owner of the file, and replaces it.
/// Where that cannot be done (an unwritable folder, a full disk, a link, a mounted file, another
/// owner), the edits are made in the file itself, one after the other. The first failure ends this:
/// the failing edit is taken back, and those before it stay. A file that the edits leave as it was is not touched.
/// False when an edit is missing, or when the file cannot be read to its end.
bool EditFile(const std::string& name, const std::vector<FileEdit>& edits);

} // namespace qmv40
