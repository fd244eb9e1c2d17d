#include "check/ArcCheck.h"

#include "check/Tolerances.h"
#include "check/Vectors.h"

#include <algorithm>

namespace check {

namespace {

using K = FindingKind;

constexpr double wholeTurn = 360.0;

double LengthError(const ArcData& arc) {
    return std::abs(Length({arc.iRotationVector, arc.jRotationVector, arc.kRotationVector}) - 1.0);
}

/// Between lines: neither has a sense.
double AngleBetweenLines(const CMaVector& left, const CMaVector& right) {
    const double angle = AngleBetween(left, right);
    return std::min(angle, 180.0 - angle);
}

double DistanceToAxis(const CMaVector& point, const ArcData& arc) {
    return Length(Across(Way({arc.XOrigin, arc.YOrigin, arc.ZOrigin}, point), AxisOf(arc)));
}

/// The turn, or for a swing what it comes to within half a turn of the wanted one.
double WithinHalfATurn(double degrees, const WantedArc& wanted) {
    return wanted.isSwing ? wanted.turning.degrees + std::remainder(degrees - wanted.turning.degrees, wholeTurn)
                          : degrees;
}

std::optional<Finding> FindingOfAngle(const ArcData& arc, const WantedArc& wanted) {
    const CMaVector axis = AxisOf(arc);
    const double degrees = RightHandedDegrees(arc) * (axis % wanted.turning.axis < 0.0 ? -1.0 : 1.0);
    const double off = std::abs(WithinHalfATurn(degrees, wanted) - wanted.turning.degrees);
    if (!(off <= angleTolerance)) {
        const bool isOpposed = degrees * wanted.turning.degrees < 0.0;
        return Finding{isOpposed ? K::ArcTurnsTheWrongWay : K::ArcAngleOff, std::nullopt, off};
    }
    const double beyondHalf = std::abs(degrees) - wholeTurn / 2.0;
    if (wanted.isSwing && beyondHalf > angleTolerance) return Finding{K::SwingGoesTheLongWay, std::nullopt, beyondHalf};
    return std::nullopt;
}

} // namespace

std::vector<Finding> FindingsOfArc(const ArcData& arc, const CMaVector& start, const WantedArc& wanted) {
    std::vector<Finding> findings;
    const auto find = [&](K kind, double amount, double allowed) {
        if (!(amount <= allowed)) findings.push_back({kind, std::nullopt, amount});
    };
    if (!wanted.isSwing) find(K::ArcLeavesItsStart, Distance(start, wanted.start), lengthTolerance);
    if (LengthError(arc) > unitTolerance) findings.push_back({K::ArcLosesItsRadius, std::nullopt, std::nullopt});
    find(K::ArcAxisTilted, AngleBetweenLines(AxisOf(arc), wanted.turning.axis), angleTolerance);
    find(K::ArcCentreOff, DistanceToAxis(wanted.turning.centre, arc), lengthTolerance);
    if (const auto angle = FindingOfAngle(arc, wanted)) findings.push_back(*angle);
    return findings;
}

} // namespace check
