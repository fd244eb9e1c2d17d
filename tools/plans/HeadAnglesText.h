#pragma once

#include "tools/model/HeadAngles.h"

#include <optional>
#include <string>

namespace qmv40::plans {

/// Two finite numbers with a comma between, such as 45,-90.
std::optional<model::HeadAngles> ParseHeadAngles(const std::string& text);

/// For people: "A 45, B -90".
std::string HeadAnglesText(const model::HeadAngles& angles);

} // namespace qmv40::plans
