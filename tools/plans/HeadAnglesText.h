#pragma once

#include "tools/model/HeadAngles.h"

#include <optional>
#include <string>

namespace qmv40::plans {

/// Two finite numbers with a comma between, such as 45,-90.
std::optional<model::HeadAngles> ParseHeadAngles(const std::string& text);
/// What is wrong with any other text; it follows the text.
inline constexpr const char* notTwoAngles = "is not two angles in degrees such as 45,-90";

/// For people: "A 45, B -90".
std::string HeadAnglesText(const model::HeadAngles& angles);

} // namespace qmv40::plans
