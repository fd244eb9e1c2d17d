#pragma once

#include <string>

namespace qmv40::text {

/// A number as the component reads it from a stored text: as much as begins one, and 0 where nothing does.
struct LooseNumber {
    double value;
    bool isNumber;      ///< the text begins with a finite number
    std::string oddity; ///< why it is not what it looks like: completes a sentence; empty when all is well
};

LooseNumber ReadLooseNumber(const std::string& text);

} // namespace qmv40::text
