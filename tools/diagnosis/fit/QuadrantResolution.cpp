#include "tools/diagnosis/fit/QuadrantResolution.h"

#include "tools/model/Angles.h"

#include <algorithm>
#include <array>

namespace qmv40::diagnosis::fit {

namespace {

constexpr double margin = 10.0; // mm

/// The angle of -180 to 180 degrees that has this acute angle. `xInside`: no point is more than `margin` beyond the
/// head centre in X; `yInside`: the same in Y.
double InQuadrant(double acuteAngle, bool xInside, bool yInside) {
    const double angle = yInside ? 180.0 - acuteAngle : acuteAngle; // inside in Y: the component's quadrants 1 and 4
    return xInside ? angle : -angle;                                // inside in X: its quadrants 1 and 2
}

} // namespace

double RotationByQuadrant(const HeadModel& head, std::span<const double> tilts, double swivel) {
    HeadModel ideal = head;
    ideal.errors.clear();
    bool xInside = true;
    bool yInside = true;
    for (const double tilt : tilts) {
        const model::Vector3 arm = ideal.Position({tilt, swivel, {}}, 0) - ideal.poleSphere;
        if (arm.x > margin) xInside = false;
        if (arm.y > margin) yInside = false;
    }
    const double normalAlongY = std::sin(ideal.mounting + model::ToRadians(swivel));
    const double acuteAngle = model::ToDegrees(std::asin(std::min(1.0, std::abs(normalAlongY))));
    return InQuadrant(acuteAngle, xInside, yInside) - swivel;
}

bool QuadrantIsRight(const HeadModel& head, std::span<const double> tilts, double swivel) {
    constexpr double tolerance = 1e-6;
    return std::abs(model::Wrapped(RotationByQuadrant(head, tilts, swivel) - model::ToDegrees(head.mounting))) <
           tolerance;
}

std::optional<double> SwivelWithSafeQuadrant(const HeadModel& head, std::span<const double> tilts) {
    const auto isSafe = [&](double swivel) {
        return std::ranges::all_of(std::array{-5.0, -2.5, 0.0, 2.5, 5.0}, [&](double difference) {
            HeadModel turned = head;
            turned.mounting += model::ToRadians(difference);
            return QuadrantIsRight(turned, tilts, swivel);
        });
    };
    for (const double usual : {45.0, -45.0, 135.0, -135.0}) {
        if (isSafe(usual)) return usual;
    }
    for (int step = 0; step < 12; ++step) {
        for (const double swivel : {15.0 * step, -15.0 * step}) {
            if (isSafe(swivel)) return swivel;
        }
    }
    return std::nullopt;
}

HeadModel WithStraightStylus(const HeadModel& head) {
    HeadModel straight = head;
    straight.tip = {0.0, 0.0, -model::SafeLength(head.tip)};
    return straight;
}

} // namespace qmv40::diagnosis::fit
