#include "tools/diagnosis/fit/CaptureModel.h"

#include "tools/model/Angles.h"

#include <algorithm>
#include <cmath>

namespace qmv40::diagnosis::fit {

namespace {

constexpr model::Vector3 unitVectors[] = {{1.0, 0.0, 0.0}, {0.0, 1.0, 0.0}, {0.0, 0.0, 1.0}};

/// The angles and offsets of one point, with all errors included.
struct Angles {
    Angles(const HeadModel& model, const CapturedPoint& point, std::size_t index)
        : tilt(model::ToRadians(point.a)), swivel(model.mounting + model::ToRadians(point.b)) {
        for (const ModelError& error : model.errors) {
            if (error.Concerns(index)) Take(error, index);
        }
    }

    void Take(const ModelError& error, std::size_t index) {
        const double share = error.ShareAt(index);
        const double values[] = {share * error.values[0], share * error.values[1], share * error.values[2]};
        switch (error.kind) {
        case ModelError::Kind::TiltAngle:
            tilt += values[0];
            break;
        case ModelError::Kind::SwivelAngle:
            swivel += values[0];
            break;
        case ModelError::Kind::Place:
            offset = offset + model::Vector3{values[0], values[1], values[2]};
            break;
        case ModelError::Kind::OtherTip:
            moreTip = moreTip + model::Vector3{values[0], values[1], values[2]};
            break;
        case ModelError::Kind::LeaningHead:
            leanX += values[0];
            leanY += values[1];
            break;
        case ModelError::Kind::AxesNotSquare:
            squareness += values[0];
            break;
        case ModelError::Kind::AxesApart:
            axisOffset += values[0];
            break;
        }
    }

    double tilt;
    double swivel;
    double leanX = 0.0;
    double leanY = 0.0;
    double squareness = 0.0;
    double axisOffset = 0.0;
    model::Vector3 offset;
    model::Vector3 moreTip;
};

/// The rotations of one point, from the head outward: each leads from one frame to the next.
class Pose {
public:
    explicit Pose(const Angles& angles)
        : tilt(-angles.tilt), squareness(angles.squareness), swivel(angles.swivel), leanY(angles.leanY),
          leanX(angles.leanX), axisOffset{0.0, angles.axisOffset, 0.0}, offset(angles.offset), moreTip(angles.moreTip) {
    }

    model::Vector3 Tilted(const model::Vector3& v) const { return model::AboutX(tilt, v); }
    model::Vector3 Squared(const model::Vector3& v) const { return model::AboutY(squareness, v); }
    model::Vector3 Swivelled(const model::Vector3& v) const { return model::AboutZ(swivel, v); }
    model::Vector3 LeantOnY(const model::Vector3& v) const { return model::AboutY(leanY, v); }
    model::Vector3 LeantOnX(const model::Vector3& v) const { return model::AboutX(leanX, v); }
    model::Vector3 Leant(const model::Vector3& v) const { return LeantOnX(LeantOnY(v)); }

    const model::Vector3& AxisOffset() const { return axisOffset; }
    const model::Vector3& Offset() const { return offset; }
    const model::Vector3& MoreTip() const { return moreTip; }

private:
    model::Rotation tilt, squareness, swivel, leanY, leanX;
    model::Vector3 axisOffset;
    model::Vector3 offset;
    model::Vector3 moreTip;
};

/// The vector from the pole to the stylus tip, in each frame.
struct TipInFrames {
    TipInFrames(const Pose& pose, const model::Vector3& tip)
        : tilted(pose.Tilted(tip + pose.MoreTip())), squared(pose.Squared(tilted)),
          swivelled(pose.Swivelled(squared + pose.AxisOffset())), leantOnY(pose.LeantOnY(swivelled)),
          leant(pose.LeantOnX(leantOnY)) {}

    model::Vector3 tilted;
    model::Vector3 squared;
    model::Vector3 swivelled;
    model::Vector3 leantOnY;
    model::Vector3 leant;
};

/// The derivatives by the values of one error that concerns the point.
void ErrorDerivatives(const ModelError& error, std::size_t index, const Pose& pose, const TipInFrames& tip,
                      std::span<model::Vector3> out) {
    switch (error.kind) {
    case ModelError::Kind::TiltAngle:
        out[0] = pose.Leant(pose.Swivelled(pose.Squared(model::Cross(unitVectors[0], tip.tilted))));
        break;
    case ModelError::Kind::SwivelAngle:
        out[0] = -pose.Leant(model::Cross(unitVectors[2], tip.swivelled));
        break;
    case ModelError::Kind::Place:
        std::ranges::copy(unitVectors, out.begin());
        break;
    case ModelError::Kind::OtherTip:
        for (std::size_t i = 0; i < 3; ++i) {
            out[i] = -pose.Leant(pose.Swivelled(pose.Squared(pose.Tilted(unitVectors[i]))));
        }
        break;
    case ModelError::Kind::LeaningHead:
        out[0] = -model::Cross(unitVectors[0], tip.leant);
        out[1] = -pose.LeantOnX(model::Cross(unitVectors[1], tip.leantOnY));
        break;
    case ModelError::Kind::AxesNotSquare:
        out[0] = -pose.Leant(pose.Swivelled(model::Cross(unitVectors[1], tip.squared)));
        break;
    case ModelError::Kind::AxesApart:
        out[0] = -pose.Leant(pose.Swivelled(unitVectors[1]));
        break;
    }
    if (error.drift) {
        for (model::Vector3& derivative : out) derivative = error.ShareAt(index) * derivative;
    }
}

} // namespace

std::size_t ModelError::Unknowns() const {
    if (isFixed) return 0;
    if (kind == Kind::Place || kind == Kind::OtherTip) return 3;
    return kind == Kind::LeaningHead ? 2 : 1;
}

double ModelError::ShareAt(std::size_t point) const {
    if (!drift) return 1.0;
    const std::size_t count = last - first;
    const std::size_t place = (point + count - drift->start) % count;
    const double share = static_cast<double>(place) / static_cast<double>(std::max<std::size_t>(count - 1, 1));
    return drift->settling == 0.0 ? share : std::expm1(-drift->settling * share) / std::expm1(-drift->settling);
}

std::size_t HeadModel::Unknowns() const {
    std::size_t count = ownUnknowns;
    for (const ModelError& error : errors) count += error.Unknowns();
    return count;
}

bool HeadModel::StylusHangs() const {
    // Also a star stylus reaches down by this share of its length: by the part that holds it.
    constexpr double leastShare = 0.2;
    return tip.z < -leastShare * model::SafeLength(tip);
}

model::Vector3 HeadModel::Position(const CapturedPoint& point, std::size_t index) const {
    const Pose pose(Angles(*this, point, index));
    return pole - TipInFrames(pose, tip).leant + pose.Offset();
}

void HeadModel::Derivatives(const CapturedPoint& point, std::size_t index, std::span<model::Vector3> out) const {
    const Pose pose(Angles(*this, point, index));
    const TipInFrames tipInFrames(pose, tip);
    std::ranges::copy(unitVectors, out.begin());
    out[3] = -pose.Leant(model::Cross(unitVectors[2], tipInFrames.swivelled));
    for (std::size_t i = 0; i < 3; ++i) {
        out[4 + i] = -pose.Leant(pose.Swivelled(pose.Squared(pose.Tilted(unitVectors[i]))));
    }
    std::size_t at = ownUnknowns;
    for (const ModelError& error : errors) {
        const std::span<model::Vector3> own = out.subspan(at, error.Unknowns());
        if (own.empty()) continue;
        if (error.Concerns(index)) {
            ErrorDerivatives(error, index, pose, tipInFrames, own);
        } else {
            std::ranges::fill(own, model::Vector3{});
        }
        at += own.size();
    }
}

HeadModel HeadModel::Stepped(std::span<const double> step) const {
    HeadModel stepped = *this;
    stepped.pole = pole + model::Vector3{step[0], step[1], step[2]};
    stepped.mounting += step[3];
    stepped.tip = tip + model::Vector3{step[4], step[5], step[6]};
    std::size_t at = ownUnknowns;
    for (ModelError& error : stepped.errors) {
        for (std::size_t i = 0; i < error.Unknowns(); ++i) error.values[i] += step[at++];
    }
    return stepped;
}

} // namespace qmv40::diagnosis::fit
