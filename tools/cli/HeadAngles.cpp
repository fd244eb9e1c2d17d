#include "cli/HeadAngles.h"

#include "cli/Numbers.h"
#include "cli/Text.h"

std::optional<HeadAngles> ParseHeadAngles(const std::string& text) {
    const std::size_t comma = text.find(',');
    if (comma == std::string::npos) return std::nullopt;
    const std::string_view both = text;
    const ParsedNumber a = ParseNumber(Trimmed(both.substr(0, comma)));
    const ParsedNumber b = ParseNumber(Trimmed(both.substr(comma + 1)));
    if (a.problem != nullptr || b.problem != nullptr) return std::nullopt;
    return HeadAngles{a.value, b.value};
}

std::string HeadAnglesText(const HeadAngles& angles) {
    return "A " + ExactText(angles.a) + ", B " + ExactText(angles.b);
}
