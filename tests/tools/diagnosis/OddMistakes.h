#pragma once

#include "tests/tools/diagnosis/HumanMistakes.h"

/// Rarer circumstances and mistakes, two at once, and things that no finding has a name for. Any finding counts as the
/// right one.
const std::vector<HumanKind>& OddMistakes();
