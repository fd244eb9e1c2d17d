#include "maths/ElementaryFunctions.h"

#include <cmath>

namespace qmv40 {

double Sine(double angle) noexcept { return std::sin(angle); }
double Cosine(double angle) noexcept { return std::cos(angle); }
double ArcTangent(double slope) noexcept { return std::atan(slope); }
double ArcTangent(double y, double x) noexcept { return std::atan2(y, x); }

} // namespace qmv40
