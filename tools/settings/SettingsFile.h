#pragma once

#include "tools/settings/HeadSettings.h"
#include "tools/text/OutputFile.h"

#include <array>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace qmv40::settings {

/// Numbers as the component reads them in one offset: all of one length, since no text may be longer than the one read
/// before it. Each reads back to the same bits. Throws UsageError when that takes more letters than are read.
std::vector<std::string> EquallyLongTexts(std::span<const double> values);

/// A settings file with these values, in the table's order. An offset of which one is given is written whole, the
/// others with their built-in values; what is not given at all is left out.
std::string SettingsFileText(const std::array<std::optional<double>, headSettingCount>& values);

/// A file that such a text may replace: one in the registry export format without another program's keys.
text::FileKind SettingsFileKind();

} // namespace qmv40::settings
