#include "cli/HeadAngles.h"

#include "cli/Numbers.h"

std::optional<HeadAngles> ParseHeadAngles(const std::string& text) {
    const auto numbers = ParseNumberPair(text);
    if (!numbers) return std::nullopt;
    return HeadAngles{numbers->first, numbers->second};
}

std::string HeadAnglesText(const HeadAngles& angles) {
    return "A " + ExactText(angles.a) + ", B " + ExactText(angles.b);
}
