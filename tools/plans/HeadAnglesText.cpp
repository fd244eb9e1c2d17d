#include "tools/plans/HeadAnglesText.h"

#include "tools/text/Numbers.h"

namespace qmv40::plans {

std::optional<model::HeadAngles> ParseHeadAngles(const std::string& text) {
    const auto numbers = text::ParseNumberPair(text);
    if (!numbers) return std::nullopt;
    return model::HeadAngles{numbers->first, numbers->second};
}

std::string HeadAnglesText(const model::HeadAngles& angles) {
    return "A " + text::ExactText(angles.a) + ", B " + text::ExactText(angles.b);
}

} // namespace qmv40::plans
