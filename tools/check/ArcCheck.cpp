#include "tools/check/ArcCheck.h"

#include "tools/model/Angles.h"
#include "tools/model/Tolerances.h"

#include <algorithm>

namespace qmv40::check {

namespace {

using K = FindingKind;

constexpr double wholeTurn = 360.0;

double LengthError(const ArcData& arc) { return std::abs(model::Length(plans::RotationVectorOf(arc)) - 1.0); }

/// The angle between two lines, which have no direction: 0 to 90 degrees.
double AngleBetweenLines(const model::Vector3& left, const model::Vector3& right) {
    const double angle = model::AngleBetween(left, right);
    return std::min(angle, 180.0 - angle);
}

double DistanceToAxis(const model::Vector3& point, const ArcData& arc) {
    return model::Length(model::Perpendicular(point - plans::OriginOf(arc), plans::AxisOf(arc)));
}

/// The turn of the arc. For a swing, the turn that leads to the same place and differs from the wanted one by at most
/// half a turn.
double WithinHalfATurn(double degrees, const WantedArc& wanted) {
    return wanted.isSwing ? wanted.turning.degrees + std::remainder(degrees - wanted.turning.degrees, wholeTurn)
                          : degrees;
}

std::optional<Finding> FindingOfAngle(const ArcData& arc, const WantedArc& wanted) {
    const model::Vector3 axis = plans::AxisOf(arc);
    const double degrees = plans::RightHandedDegrees(arc) * (model::Dot(axis, wanted.turning.axis) < 0.0 ? -1.0 : 1.0);
    const double off = std::abs(WithinHalfATurn(degrees, wanted) - wanted.turning.degrees);
    if (!(off <= model::angleTolerance)) {
        const bool isOpposed = degrees * wanted.turning.degrees < 0.0;
        return Finding{isOpposed ? K::ArcTurnsTheWrongWay : K::ArcAngleOff, std::nullopt, off};
    }
    const double beyondHalf = std::abs(degrees) - wholeTurn / 2.0;
    if (wanted.isSwing && beyondHalf > model::angleTolerance)
        return Finding{K::SwingGoesTheLongWay, std::nullopt, beyondHalf};
    return std::nullopt;
}

} // namespace

std::vector<Finding> FindingsOfArc(const ArcData& arc, const model::Vector3& start, const WantedArc& wanted) {
    std::vector<Finding> findings;
    const auto find = [&](K kind, double amount, double allowed) {
        if (!(amount <= allowed)) findings.push_back({kind, std::nullopt, amount});
    };
    if (!wanted.isSwing) find(K::ArcLeavesItsStart, model::Distance(start, wanted.start), model::lengthTolerance);
    if (LengthError(arc) > model::unitTolerance) findings.push_back({K::ArcLosesItsRadius, std::nullopt, std::nullopt});
    find(K::ArcAxisTilted, AngleBetweenLines(plans::AxisOf(arc), wanted.turning.axis), model::angleTolerance);
    find(K::ArcCentreOff, DistanceToAxis(wanted.turning.centre, arc), model::lengthTolerance);
    if (const auto angle = FindingOfAngle(arc, wanted)) findings.push_back(*angle);
    return findings;
}

} // namespace qmv40::check
