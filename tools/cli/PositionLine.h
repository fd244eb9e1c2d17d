#pragma once

#include "cli/Numbers.h"
#include "interface/Records.h"

#include <string>

/// A position for people, units beside the numbers.
inline std::string PositionLine(const XYZData& position) {
    constexpr int decimals = 4;
    return "  X " + FixedText(position.XPosition, decimals) + " mm   Y " + FixedText(position.YPosition, decimals) +
           " mm   Z " + FixedText(position.ZPosition, decimals) + " mm";
}
