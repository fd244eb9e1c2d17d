#pragma once

#include "interface/Records.h"
#include "tools/text/Numbers.h"

#include <string>

namespace qmv40::plans {

/// A position with units, for people.
inline std::string PositionLine(const XYZData& position) {
    constexpr int decimals = 4;
    return "  X " + text::FixedText(position.XPosition, decimals) + " mm   Y " +
           text::FixedText(position.YPosition, decimals) + " mm   Z " + text::FixedText(position.ZPosition, decimals) +
           " mm";
}

} // namespace qmv40::plans
