#pragma once

#include "tests/tools/diagnosis/HumanMistakes.h"

/// Rarer circumstances and mistakes, two at once, and things that no finding has a name for. Whatever is found will do.
const std::vector<HumanKind>& OddMistakes();
