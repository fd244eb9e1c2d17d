#pragma once

#include "tools/model/Vector3.h"
#include "tools/text/Numbers.h"

#include <string>

namespace qmv40::plans {

/// A position with units, for people.
inline std::string PositionLine(const model::Vector3& position) {
    constexpr int decimals = 4;
    return "  X " + text::FixedText(position.x, decimals) + " mm   Y " + text::FixedText(position.y, decimals) +
           " mm   Z " + text::FixedText(position.z, decimals) + " mm";
}

} // namespace qmv40::plans
