#include "diagnostics/HeadModel.h"

#include "diagnostics/Angles.h"

#include <algorithm>

namespace diagnostics {

namespace {

constexpr Vector3 axes[] = {{1.0, 0.0, 0.0}, {0.0, 1.0, 0.0}, {0.0, 0.0, 1.0}};

/// The angles and offsets that hold for one point, all departures counted in.
struct Angles {
    Angles(const HeadModel& model, const CapturedPoint& point, std::size_t index)
        : tilt(ToRadians(point.a)), swivel(model.mounting + ToRadians(point.b)) {
        for (const Departure& departure : model.departures) {
            if (departure.Concerns(index)) Take(departure);
        }
    }

    void Take(const Departure& departure) {
        const auto& values = departure.values;
        switch (departure.kind) {
        case Departure::Kind::TiltAngle:
            tilt += values[0];
            break;
        case Departure::Kind::SwivelAngle:
            swivel += values[0];
            break;
        case Departure::Kind::Place:
            offset = offset + Vector3{values[0], values[1], values[2]};
            break;
        case Departure::Kind::LeaningHead:
            leanX += values[0];
            leanY += values[1];
            break;
        case Departure::Kind::AxesNotSquare:
            outOfSquare += values[0];
            break;
        case Departure::Kind::AxesApart:
            gap += values[0];
            break;
        }
    }

    double tilt;
    double swivel;
    double leanX = 0.0;
    double leanY = 0.0;
    double outOfSquare = 0.0;
    double gap = 0.0;
    Vector3 offset;
};

/// The turns of one point, from the head outward: each takes a vector one frame further.
class Pose {
public:
    explicit Pose(const Angles& angles)
        : tilt(-angles.tilt), outOfSquare(angles.outOfSquare), swivel(angles.swivel), leanY(angles.leanY),
          leanX(angles.leanX), gap{0.0, angles.gap, 0.0}, offset(angles.offset) {}

    Vector3 Tilted(const Vector3& v) const { return AboutX(tilt, v); }
    Vector3 Squared(const Vector3& v) const { return AboutY(outOfSquare, v); }
    Vector3 Swivelled(const Vector3& v) const { return AboutZ(swivel, v); }
    Vector3 LeantOnY(const Vector3& v) const { return AboutY(leanY, v); }
    Vector3 LeantOnX(const Vector3& v) const { return AboutX(leanX, v); }
    Vector3 Leant(const Vector3& v) const { return LeantOnX(LeantOnY(v)); }

    const Vector3& Gap() const { return gap; }
    const Vector3& Offset() const { return offset; }

private:
    Turn tilt, outOfSquare, swivel, leanY, leanX;
    Vector3 gap;
    Vector3 offset;
};

/// The stylus tip from the pole, frame by frame.
struct TipOnItsWay {
    TipOnItsWay(const Pose& pose, const Vector3& tip)
        : tilted(pose.Tilted(tip)), squared(pose.Squared(tilted)), swivelled(pose.Swivelled(squared + pose.Gap())),
          leantOnY(pose.LeantOnY(swivelled)), leant(pose.LeantOnX(leantOnY)) {}

    Vector3 tilted;
    Vector3 squared;
    Vector3 swivelled;
    Vector3 leantOnY;
    Vector3 leant;
};

/// The derivatives of one departure that concerns the point.
void DepartureDerivatives(Departure::Kind kind, const Pose& pose, const TipOnItsWay& tip, std::span<Vector3> out) {
    switch (kind) {
    case Departure::Kind::TiltAngle:
        out[0] = pose.Leant(pose.Swivelled(pose.Squared(Cross(axes[0], tip.tilted))));
        break;
    case Departure::Kind::SwivelAngle:
        out[0] = -pose.Leant(Cross(axes[2], tip.swivelled));
        break;
    case Departure::Kind::Place:
        std::ranges::copy(axes, out.begin());
        break;
    case Departure::Kind::LeaningHead:
        out[0] = -Cross(axes[0], tip.leant);
        out[1] = -pose.LeantOnX(Cross(axes[1], tip.leantOnY));
        break;
    case Departure::Kind::AxesNotSquare:
        out[0] = -pose.Leant(pose.Swivelled(Cross(axes[1], tip.squared)));
        break;
    case Departure::Kind::AxesApart:
        out[0] = -pose.Leant(pose.Swivelled(axes[1]));
        break;
    }
}

} // namespace

std::size_t Departure::Unknowns() const {
    if (kind == Kind::Place) return 3;
    return kind == Kind::LeaningHead ? 2 : 1;
}

std::size_t HeadModel::Unknowns() const {
    std::size_t count = ownUnknowns;
    for (const Departure& departure : departures) count += departure.Unknowns();
    return count;
}

bool HeadModel::StylusHangs() const {
    // However far a star stylus reaches out: what holds it reaches down.
    constexpr double leastShare = 0.2;
    return tip.z < -leastShare * Length(tip);
}

Vector3 HeadModel::Position(const CapturedPoint& point, std::size_t index) const {
    const Pose pose(Angles(*this, point, index));
    return pole - TipOnItsWay(pose, tip).leant + pose.Offset();
}

void HeadModel::Derivatives(const CapturedPoint& point, std::size_t index, std::span<Vector3> out) const {
    const Pose pose(Angles(*this, point, index));
    const TipOnItsWay onItsWay(pose, tip);
    std::ranges::copy(axes, out.begin());
    out[3] = -pose.Leant(Cross(axes[2], onItsWay.swivelled));
    for (std::size_t i = 0; i < 3; ++i) {
        out[4 + i] = -pose.Leant(pose.Swivelled(pose.Squared(pose.Tilted(axes[i]))));
    }
    std::size_t at = ownUnknowns;
    for (const Departure& departure : departures) {
        const std::span<Vector3> own = out.subspan(at, departure.Unknowns());
        if (departure.Concerns(index)) {
            DepartureDerivatives(departure.kind, pose, onItsWay, own);
        } else {
            std::ranges::fill(own, Vector3{});
        }
        at += own.size();
    }
}

HeadModel HeadModel::Stepped(std::span<const double> step) const {
    HeadModel stepped = *this;
    stepped.pole = pole + Vector3{step[0], step[1], step[2]};
    stepped.mounting += step[3];
    stepped.tip = tip + Vector3{step[4], step[5], step[6]};
    std::size_t at = ownUnknowns;
    for (Departure& departure : stepped.departures) {
        for (std::size_t i = 0; i < departure.Unknowns(); ++i) departure.values[i] += step[at++];
    }
    return stepped;
}

} // namespace diagnostics
