#pragma once

#include <string>

namespace qmv40::text {

/// A number as the component reads it from a stored text: the longest beginning that is a number, otherwise 0.
struct LenientNumber {
    double value;
    bool isNumber;      ///< the text begins with a finite number
    std::string oddity; ///< "'1,5' reads as 1: the decimal mark is a point"; empty when nothing is odd
};

LenientNumber ReadLenientNumber(const std::string& text);

} // namespace qmv40::text
