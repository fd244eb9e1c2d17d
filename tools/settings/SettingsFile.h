#pragma once

#include "tools/settings/HeadSettings.h"
#include "tools/text/OutputFile.h"

#include <array>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace qmv40::settings {

/// The numbers of one offset as texts of equal length: the component does not read a text that is longer than the one
/// before it. Each reads back to the same bits. Throws UsageError when that takes more characters than the component
/// reads.
std::vector<std::string> EquallyLongTexts(std::span<const double> values);

/// A settings file with these values, in the table's order. An offset with at least one value is written completely,
/// its other values being the built-in ones. An offset without any value is left out.
std::string SettingsFileText(const std::array<std::optional<double>, headSettingCount>& values);

/// A file that such a text may replace: a registry export without keys of another program.
text::FileKind SettingsFileKind();

} // namespace qmv40::settings
