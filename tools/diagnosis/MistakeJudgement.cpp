#include "tools/diagnosis/MistakeJudgement.h"

#include "tools/model/Angles.h"

#include <algorithm>

namespace qmv40::diagnosis {

namespace {

using ErrorKind = fit::ModelError::Kind;
using Name = FindingKind;
using model::Vector3;

/// Degrees to the nearest whole number of index steps.
double OffSteps(double degrees) { return std::remainder(degrees, thresholds::indexStep); }

/// The largest distance by which an error moves one of its points.
double DistanceBy(const captures::CapturedSets& sets, const fit::HeadModel& model, const fit::ModelError& error) {
    fit::HeadModel with = model;
    fit::HeadModel without = model;
    with.errors = {error};
    without.errors.clear();
    double farthest = 0.0;
    for (std::size_t i = error.first; i < error.last; ++i) {
        const captures::CapturedPoint& point = sets.points[i];
        farthest = std::max(farthest, model::SafeLength(with.Position(point, i) - without.Position(point, i)));
    }
    return farthest;
}

class Mistake {
public:
    Mistake(const CaptureUnderTest& capture, const fit::HeadModel& theModel, const fit::ModelError& theError)
        : sets(capture.sets), model(theModel), error(theError), unlocking(capture.unlocking), count(sets.points.size()),
          distance(DistanceBy(sets, model, error)) {}

    Finding Judged() const {
        if (error.drift) return Drifting();
        switch (error.kind) {
        case ErrorKind::Place:
            return error.isFixed ? Locked() : Moved();
        case ErrorKind::OtherTip:
            return OtherTip();
        case ErrorKind::LeaningHead:
        case ErrorKind::AxesNotSquare:
        case ErrorKind::AxesApart:
            return Tilted(Lean());
        case ErrorKind::TiltAngle:
        case ErrorKind::SwivelAngle:
            break;
        }
        return Angle();
    }

private:
    static Severity BySize(double size, double least) { return size >= least ? Severity::Fault : Severity::Warning; }
    double Lean() const { return model::ToDegrees(std::hypot(error.values[0], error.values[1])); }
    bool IsSingle() const { return error.last - error.first == 1; }
    bool IsOfASet() const { return sets.IsOfASet(error.first); }
    bool IsWholeSet() const {
        return IsOfASet() ? IsBetweenTheSets() : error.first == sets.aCount && error.last == count;
    }
    bool IsBetweenTheSets() const { return error.first == 0 && error.last == sets.aCount; }
    std::vector<std::size_t> Points() const { return captures::PointRange(error.first, error.last); }

    /// True when the interval holds the points before a change.
    bool IsBefore() const {
        if (error.drift) return false;
        return error.first == 0 || (error.first == sets.aCount && error.last < count);
    }
    /// The points of the same set that were captured after the change; of a change between the sets, the B set.
    std::vector<std::size_t> PointsAfter() const {
        if (!IsBefore()) return Points();
        return captures::PointRange(error.last, error.last < sets.aCount ? sets.aCount : count);
    }
    double Sign() const { return IsBefore() ? -1.0 : 1.0; }

    /// Points that were captured locked are off by minus `unlocking`. Points that are off by plus `unlocking` are the
    /// ones that were captured unlocked: then the other points were captured locked.
    Finding Locked() const {
        const bool isOutside = model::Dot(error.values, unlocking) > 0.0;
        return {Name::CapturedLocked, Severity::Fault, isOutside ? PointsOutside() : Points(), distance};
    }
    std::vector<std::size_t> PointsOutside() const {
        std::vector<std::size_t> points = captures::PointRange(0, error.first);
        const std::vector<std::size_t> more = captures::PointRange(error.last, count);
        points.insert(points.end(), more.begin(), more.end());
        return points;
    }

    Finding Moved() const {
        if (IsSingle()) return OffPlace();
        return {IsBetweenTheSets() ? Name::SetsApart : Name::SphereMoved,
                BySize(distance, thresholds::leastMove),
                IsBetweenTheSets() ? Points() : PointsAfter(),
                distance,
                0.0,
                std::nullopt,
                Sign() * error.values};
    }
    Finding OffPlace() const {
        const bool isWrong = distance >= thresholds::leastWrongPlace;
        return {isWrong ? Name::PointOff : Name::PointSuspicious, BySize(distance, thresholds::leastWrongPlace),
                Points(), distance};
    }

    /// A drift grows from point to point, so that the finding names no points.
    Finding Drifting() const {
        Finding finding = DriftByKind();
        finding.points.clear();
        finding.detail = 1;
        return finding;
    }
    Finding DriftByKind() const {
        switch (error.kind) {
        case ErrorKind::Place:
            return {Name::Drifts, BySize(distance, thresholds::leastMove), {}, distance, 0.0, std::nullopt,
                    error.values};
        case ErrorKind::SwivelAngle:
            return {
                Name::TurnedOnMount, BySize(std::abs(Degrees()), thresholds::leastWrongAngle), {}, Degrees(), distance};
        case ErrorKind::LeaningHead:
            return Tilted(Lean());
        default:
            return OtherTip();
        }
    }

    Finding OtherTip() const {
        const Vector3 change = Sign() * error.values;
        const Vector3 tip = IsBefore() ? model.tip + error.values : model.tip;
        const double longer = model::SafeLength(tip + change) - model::SafeLength(tip);
        const Vector3 aside = model::Perpendicular(change, model::SafeUnit(tip));
        const bool isLonger = std::abs(longer) > model::SafeLength(aside);
        return {isLonger ? Name::StylusChanged : Name::StylusBent, BySize(distance, thresholds::leastMove),
                PointsAfter(), isLonger ? longer : model::SafeLength(aside)};
    }

    Finding Tilted(double degrees) const {
        return {Name::HeadTilted, BySize(std::abs(degrees), thresholds::leastWrongAngle), PointsAfter(), degrees,
                distance};
    }

    // Angles

    bool IsTurningAngle() const { return IsOfASet() == (error.kind == ErrorKind::TiltAngle); }
    double Degrees() const { return model::Wrapped(model::ToDegrees(error.values[0])); }
    bool IsBySteps() const {
        return std::abs(Degrees()) > thresholds::indexStep / 2.0 &&
               std::abs(OffSteps(Degrees())) < thresholds::nearAStep;
    }
    double Written(std::size_t i) const {
        return error.kind == ErrorKind::TiltAngle ? sets.points[i].a : sets.points[i].b;
    }
    /// The written angle of this point is no index position, but those of all other points of its set are. It was
    /// captured at an index position.
    bool IsASlipOfThePen() const {
        const auto isOffSteps = [](double degrees) { return std::abs(OffSteps(degrees)) > 1e-9; };
        for (std::size_t i = IsOfASet() ? 0 : sets.aCount; i < (IsOfASet() ? sets.aCount : count); ++i) {
            if (!error.Concerns(i) && isOffSteps(Written(i))) return false;
        }
        return isOffSteps(Written(error.first)) &&
               std::abs(OffSteps(Written(error.first) + Degrees())) < thresholds::nearAStep;
    }

    Finding Angle() const {
        if (error.isSwap) return {Name::AnglesSwapped, Severity::Fault, Points()};
        if (IsBySteps()) return {KindBySteps(), Severity::Fault, Points(), Degrees(), distance};
        if (IsSingle()) {
            if (IsTurningAngle() && IsASlipOfThePen()) {
                return {Name::AngleMistyped, Severity::Fault, Points(), Degrees(), distance};
            }
            return OffPlace();
        }
        if (error.kind == ErrorKind::SwivelAngle) {
            return {Name::TurnedOnMount, BySize(std::abs(Degrees()), thresholds::leastWrongAngle), PointsAfter(),
                    Sign() * Degrees(), distance};
        }
        return Tilted(Sign() * Degrees());
    }
    FindingKind KindBySteps() const {
        if (IsWholeSet()) return Name::SetAngleWrong;
        return IsTurningAngle() ? Name::AngleMistyped : Name::OtherAxisMoved;
    }

    const captures::CapturedSets& sets;
    const fit::HeadModel& model;
    const fit::ModelError& error;
    Vector3 unlocking;
    std::size_t count;
    double distance;
};

} // namespace

std::optional<Finding> JudgeMistake(const CaptureUnderTest& capture, const fit::HeadModel& model, std::size_t index) {
    const fit::ModelError& error = model.errors[index];
    if (error.IsOfTheHead(capture.sets.points.size())) return std::nullopt;
    Finding finding = Mistake(capture, model, error).Judged();
    if (!error.isSwap) return finding;
    // The two errors of a swap follow each other.
    const auto before = std::span(model.errors).first(index);
    if (std::ranges::count(before, true, &fit::ModelError::isSwap) % 2 == 1) return std::nullopt;
    finding.points.push_back(model.errors[index + 1].first);
    return finding;
}

Finding JudgeRewriting(const Rewriting& rewriting, const captures::CapturedSets& sets, const fit::HeadModel& model) {
    Finding finding{rewriting.kind, Severity::Fault, {}, 0.0, 0.0, std::nullopt, {}, rewriting.detail};
    if (rewriting.sets == Rewriting::Sets::ASet) finding.points = captures::PointRange(0, sets.aCount);
    if (rewriting.sets == Rewriting::Sets::BSet) finding.points = captures::PointRange(sets.aCount, sets.points.size());
    if (rewriting.kind == Name::UnitsWrong) {
        finding.figure = model::SafeLength(model.tip);
        finding.reference = rewriting.factor;
    }
    if (rewriting.kind != Name::SwivelReversed) return finding;
    finding.figure = rewriting.sets == Rewriting::Sets::Both ? 0.0 : 1.0;
    if (rewriting.sets != Rewriting::Sets::Both) return finding;
    // When B was turned the other way, the fitted mounting is the real one. With a mirrored Y it differs by half a
    // turn, with X and Y exchanged by a quarter turn.
    const double mounting = std::abs(model::Wrapped(model::ToDegrees(model.mounting)));
    if (mounting <= 45.0) return finding;
    finding.kind = mounting > 135.0 ? Name::AxisMirrored : Name::AxesExchanged;
    finding.detail = 1; // Y, or X with Y
    return finding;
}

bool MistakesAreTooMany(const captures::CapturedSets& sets, const fit::HeadModel& model) {
    int runs = 0, points = 0, ofSwaps = 0;
    for (const fit::ModelError& error : model.errors) {
        if (error.IsOfTheHead(sets.points.size())) continue;
        const bool isRun = error.last - error.first > 1;
        const double least = isRun ? thresholds::leastMove : thresholds::leastWrongPlace;
        if (DistanceBy(sets, model, error) < least) continue;
        ++(isRun ? runs : error.isSwap ? ofSwaps : points);
    }
    return runs > 1 || runs + points + (ofSwaps + 1) / 2 > 3; // a swap has two errors
}

} // namespace qmv40::diagnosis
