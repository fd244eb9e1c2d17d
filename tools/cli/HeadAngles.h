#pragma once

#include <optional>
#include <string>

/// Where the head stands or is to stand, degrees.
struct HeadAngles {
    double a;
    double b;
};

/// Two finite numbers with a comma between, such as 45,-90.
std::optional<HeadAngles> ParseHeadAngles(const std::string& text);

/// For people: "A 45, B -90".
std::string HeadAnglesText(const HeadAngles& angles);
