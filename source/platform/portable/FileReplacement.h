#pragma once

#include <functional>
#include <string>

/// Lets `edit` change the content of a file (empty for one that does not exist) and replaces the file whole: at every
/// moment, whatever fails, the name stands for the old content or the new. A file that `edit` leaves as it was is not
/// touched. Permissions and, where possible, owner stay; a symbolic link stays one, and the file it leads to is
/// replaced. Programs that change files of one folder by this function take turns. False, and nothing changed, when the
/// file cannot be read to its end or written, as a file opened for writing could be.
bool RewriteFile(const std::string& name, const std::function<void(std::string& content)>& edit);
