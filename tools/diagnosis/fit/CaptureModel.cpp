#include "tools/diagnosis/fit/CaptureModel.h"

#include "tools/model/Angles.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace qmv40::diagnosis::fit {

namespace {

constexpr model::Vector3 unitVectors[] = {{1.0, 0.0, 0.0}, {0.0, 1.0, 0.0}, {0.0, 0.0, 1.0}};

/// The rotations of one point, from the head outward: each leads from one frame to the next. Its errors are included.
class Pose {
    using Kind = ModelError::Kind;
    using Sums = std::array<model::Vector3, static_cast<std::size_t>(Kind::AxesApart) + 1>;

public:
    Pose(const HeadModel& model, const captures::CapturedPoint& point, std::size_t index)
        : sums(SumsOf(model, point, index)), tilt(-Sum(Kind::TiltAngle).x), squareness(Sum(Kind::AxesNotSquare).x),
          swivel(Sum(Kind::SwivelAngle).x), leanY(Sum(Kind::LeaningHead).y), leanX(Sum(Kind::LeaningHead).x) {}

    model::Vector3 Tilted(const model::Vector3& v) const { return model::AboutX(tilt, v); }
    model::Vector3 Squared(const model::Vector3& v) const { return model::AboutY(squareness, v); }
    model::Vector3 Swivelled(const model::Vector3& v) const { return model::AboutZ(swivel, v); }
    model::Vector3 LeantOnY(const model::Vector3& v) const { return model::AboutY(leanY, v); }
    model::Vector3 LeantOnX(const model::Vector3& v) const { return model::AboutX(leanX, v); }
    model::Vector3 Leant(const model::Vector3& v) const { return LeantOnX(LeantOnY(v)); }

    model::Vector3 AxisOffset() const { return {0.0, Sum(Kind::AxesApart).x, 0.0}; }
    const model::Vector3& Offset() const { return Sum(Kind::Place); }
    const model::Vector3& MoreTip() const { return Sum(Kind::OtherTip); }

private:
    /// For each kind of error the sum of its values, and for the two angles also the angles without errors.
    static Sums SumsOf(const HeadModel& model, const captures::CapturedPoint& point, std::size_t index) {
        Sums sums;
        sums[static_cast<std::size_t>(Kind::TiltAngle)].x = model::ToRadians(point.a);
        sums[static_cast<std::size_t>(Kind::SwivelAngle)].x = model.mounting + model::ToRadians(point.b);
        for (const ModelError& error : model.errors) {
            if (!error.Concerns(index)) continue;
            model::Vector3& sum = sums[static_cast<std::size_t>(error.kind)];
            sum = sum + error.ShareAt(index) * error.values;
        }
        return sums;
    }
    const model::Vector3& Sum(Kind kind) const { return sums[static_cast<std::size_t>(kind)]; }

    Sums sums;
    model::Rotation tilt, squareness, swivel, leanY, leanX;
};

/// The vector from the head's centre to the stylus tip, in each frame.
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

/// The derivatives of a point's position by the values of an error of this kind.
void DerivativesBy(ModelError::Kind kind, const Pose& pose, const TipInFrames& tip, std::span<model::Vector3> out) {
    switch (kind) {
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

model::Vector3 HeadModel::Position(const captures::CapturedPoint& point, std::size_t index) const {
    const Pose pose(*this, point, index);
    return poleSphere - TipInFrames(pose, tip).leant + pose.Offset();
}

void HeadModel::Derivatives(const captures::CapturedPoint& point, std::size_t index,
                            std::span<model::Vector3> out) const {
    const Pose pose(*this, point, index);
    const TipInFrames tipInFrames(pose, tip);
    // Pole sphere, mounting and tip have the same derivatives as errors of them
    DerivativesBy(ModelError::Kind::Place, pose, tipInFrames, out.first(3));
    DerivativesBy(ModelError::Kind::SwivelAngle, pose, tipInFrames, out.subspan(3, 1));
    DerivativesBy(ModelError::Kind::OtherTip, pose, tipInFrames, out.subspan(4, 3));
    std::size_t at = ownUnknowns;
    for (const ModelError& error : errors) {
        const std::span<model::Vector3> own = out.subspan(at, error.Unknowns());
        if (own.empty()) continue;
        at += own.size();
        std::ranges::fill(own, model::Vector3{});
        if (!error.Concerns(index)) continue;
        DerivativesBy(error.kind, pose, tipInFrames, own);
        if (!error.drift) continue;
        const double share = error.ShareAt(index);
        for (model::Vector3& derivative : own) derivative = share * derivative;
    }
}

HeadModel HeadModel::Stepped(std::span<const double> step) const {
    HeadModel stepped = *this;
    stepped.poleSphere = poleSphere + model::Vector3{step[0], step[1], step[2]};
    stepped.mounting += step[3];
    stepped.tip = tip + model::Vector3{step[4], step[5], step[6]};
    std::size_t at = ownUnknowns;
    for (ModelError& error : stepped.errors) {
        for (std::size_t i = 0; i < error.Unknowns(); ++i) error.values[i] += step[at++];
    }
    return stepped;
}

} // namespace qmv40::diagnosis::fit
