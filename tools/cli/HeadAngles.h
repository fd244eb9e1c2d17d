#pragma once

#include "check/HeadAngles.h"

#include <optional>
#include <string>

/// Two finite numbers with a comma between, such as 45,-90.
std::optional<HeadAngles> ParseHeadAngles(const std::string& text);

/// For people: "A 45, B -90".
std::string HeadAnglesText(const HeadAngles& angles);
