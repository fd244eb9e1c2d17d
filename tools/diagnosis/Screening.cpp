#include "tools/diagnosis/Screening.h"

#include "tools/diagnosis/Thresholds.h"
#include "tools/model/Angles.h"

#include <algorithm>
#include <limits>
#include <numeric>

namespace qmv40::diagnosis {

namespace {

using ErrorKind = fit::ModelError::Kind;

constexpr double infinite = std::numeric_limits<double>::infinity();

/// The number of trial angles: from 0 on, in index steps, to one step below a whole turn.
constexpr int trials = static_cast<int>(360.0 / thresholds::indexStep);

/// Radians.
double TrialAngle(int trial) { return model::ToRadians(thresholds::indexStep * trial); }

/// The place of the minimum of the parabola through three neighbouring sums, in units of the spacing.
double LowestOf(double before, double here, double after) {
    const double curvature = before - 2.0 * here + after;
    if (!(curvature > 0.0)) return 0.0;
    return std::clamp(0.5 * (before - after) / curvature, -2.0, 2.0);
}

/// The points without the errors found so far. The remaining residuals are to be explained by the head or by further
/// errors.
std::vector<captures::CapturedPoint> Corrected(std::span<const captures::CapturedPoint> points,
                                               const fit::HeadModel& model) {
    std::vector<captures::CapturedPoint> corrected(points.begin(), points.end());
    if (model.errors.empty()) return corrected;
    fit::HeadModel plain = model;
    plain.errors.clear();
    for (std::size_t i = 0; i < points.size(); ++i) {
        const model::Vector3 error = model.Position(points[i], i) - plain.Position(points[i], i);
        corrected[i].position = corrected[i].position - error;
    }
    return corrected;
}

class Screen {
public:
    Screen(const captures::CapturedSets& theSets, const fit::HeadFit& theCurrent, const model::Vector3& theUnlocking)
        : sets(theSets), current(theCurrent), unlocking(theUnlocking), points(Corrected(sets.points, current.model)),
          mean(captures::MeanPosition(points)), running(1) {
        // Relative to the mean of the points, so that the sums do not lose digits.
        for (captures::CapturedPoint& point : points) {
            point.position = point.position - mean;
            fit::HeadSums next = running.back();
            next += fit::HeadSums(point, 0.0, 0.0);
            running.push_back(next);
        }
    }

    std::vector<Candidate> All() {
        const std::size_t count = points.size();
        for (const Interval& set : {Interval{0, sets.aCount}, Interval{sets.aCount, count}}) {
            TryPoints(set);
            TryRuns(set);
            TrySwaps(set);
            TryLockedStretches(set);
        }
        TryChanges();
        TryPairs();
        return std::move(candidates);
    }

private:
    fit::HeadSums Sums(const Interval& run) const {
        fit::HeadSums sums = running[run.last];
        sums -= running[run.first];
        return sums;
    }
    fit::HeadSums Rest(const fit::HeadSums& run) const {
        fit::HeadSums rest = running.back();
        rest -= run;
        return rest;
    }
    static double SumOfSquares(fit::HeadSums rest, const fit::HeadSums& changed) {
        rest += changed;
        return fit::BestHead({&rest, 1}).sumOfSquares;
    }

    struct RatedPair {
        Interval pair;
        double sum;
    };
    /// The pair of numbers from `first` to the one before `last` with the smallest sum of squares; not finite when no
    /// pair has one.
    template <typename SumOf> static RatedPair BestPair(std::size_t first, std::size_t last, const SumOf& sumOf) {
        RatedPair best{{}, infinite};
        for (std::size_t i = first; i < last; ++i) {
            for (std::size_t j = i + 1; j < last; ++j) {
                const double sum = sumOf(i, j);
                if (!(sum >= best.sum)) best = {{i, j}, sum};
            }
        }
        return best;
    }

    void Add(std::vector<fit::ModelError> errors, std::span<const fit::HeadSums> groups, double alternatives) {
        Candidate candidate{std::move(errors), 0.0, alternatives, {}};
        const fit::BestHeadResult best = fit::BestHead(groups);
        candidate.likelySum = best.sumOfSquares;
        candidate.start = best.model;
        candidate.start.poleSphere = candidate.start.poleSphere + mean;
        candidate.start.errors = current.model.errors;
        candidate.start.errors.insert(candidate.start.errors.end(), candidate.errors.begin(), candidate.errors.end());
        candidates.push_back(std::move(candidate));
    }
    void AddOne(std::vector<fit::ModelError> errors, fit::HeadSums rest, const fit::HeadSums& changed,
                double alternatives) {
        rest += changed;
        Add(std::move(errors), {&rest, 1}, alternatives);
    }

    void TryPoints(const Interval& set) {
        const auto alternatives = static_cast<double>(points.size());
        for (std::size_t i = set.first; i < set.last; ++i) {
            TryAngles({i, i + 1}, alternatives);
            TryLocked({i, i + 1}, alternatives);
            const fit::HeadSums rest = Rest(Sums({i, i + 1}));
            Add({{ErrorKind::Place, i, i + 1, {}}}, {&rest, 1}, alternatives);
        }
    }

    void TryRuns(const Interval& set) {
        const double alternatives = 2.0 * static_cast<double>(points.size());
        TryAngles(set, 2.0);
        TryLocked(set, 2.0);
        for (std::size_t i = set.first + 1; i + 1 < set.last; ++i) TryAngles({i, set.last}, alternatives);
        for (std::size_t i = set.first + 2; i < set.last; ++i) TryAngles({set.first, i}, alternatives);
    }

    void TryAngles(const Interval& run, double alternatives) {
        TryAngle(ErrorKind::TiltAngle, run, alternatives);
        TryAngle(ErrorKind::SwivelAngle, run, alternatives);
    }

    static fit::HeadSums Turned(ErrorKind kind, const fit::HeadSums& sums, double angle) {
        return kind == ErrorKind::TiltAngle ? sums.Tilted(angle) : sums.Swivelled(angle);
    }

    /// A wrong held angle and wrong turning angles of the whole set look the same. The held angle is one number, so
    /// that it is the likelier mistake.
    double Rarity(ErrorKind kind, const Interval& run) const {
        const bool isOfASet = run.first < sets.aCount;
        const std::size_t ofSet = isOfASet ? sets.aCount : points.size() - sets.aCount;
        const bool isTurned = isOfASet == (kind == ErrorKind::TiltAngle);
        return isTurned && run.last - run.first == ofSet ? 4.0 : 1.0;
    }

    /// The run with another angle: by whole index steps, and by any angle.
    void TryAngle(ErrorKind kind, const Interval& run, double alternatives) {
        const fit::HeadSums own = Sums(run), rest = Rest(own);
        const auto sumAt = [&](double angle) { return SumOfSquares(rest, Turned(kind, own, angle)); };
        std::array<double, trials> sums{};
        for (int trial = 0; trial < trials; ++trial) sums[static_cast<std::size_t>(trial)] = sumAt(TrialAngle(trial));
        const auto steps = std::min_element(sums.begin() + 1, sums.end()) - sums.begin();
        fit::ModelError bySteps{kind,
                                run.first,
                                run.last,
                                {model::ToRadians(model::Wrapped(thresholds::indexStep * static_cast<double>(steps)))}};
        bySteps.isFixed = true;
        AddOne({bySteps}, rest, Turned(kind, own, bySteps.values[0]), Rarity(kind, run) * alternatives);

        // Refines the best trial by parabolas through sums at smaller and smaller spacing
        double angle = TrialAngle(static_cast<int>(std::ranges::min_element(sums) - sums.begin()));
        for (const double spacing : {5.0, 0.5, 0.05}) {
            const double step = model::ToRadians(spacing);
            angle += step * LowestOf(sumAt(angle - step), sumAt(angle), sumAt(angle + step));
        }
        const double wrapped = model::ToRadians(model::Wrapped(model::ToDegrees(angle)));
        // A head can turn on its mount. It rarely tilts, and then not about its A axis alone; a sphere that sinks while
        // the stylus points sideways looks the same.
        const double rarity = kind == ErrorKind::TiltAngle && run.last - run.first > 1 ? 1e4 : 1.0;
        const bool isBySteps =
            std::abs(std::remainder(model::ToDegrees(wrapped), thresholds::indexStep)) < thresholds::nearAStep;
        AddOne({{kind, run.first, run.last, {wrapped}}}, rest, Turned(kind, own, angle),
               (isBySteps ? Rarity(kind, run) : 1.0) * rarity * alternatives);
    }

    /// The points were captured locked: they are off by the shift of unlocking, which was subtracted.
    static fit::ModelError Locked(const Interval& run, const model::Vector3& shift) {
        fit::ModelError error{ErrorKind::Place, run.first, run.last, -shift};
        error.isFixed = true;
        return error;
    }
    void TryLocked(const Interval& run, double alternatives) {
        if (model::SafeLength(unlocking) == 0.0) return;
        const fit::HeadSums own = Sums(run);
        AddOne({Locked(run, unlocking)}, Rest(own), own.Shifted(unlocking), alternatives);
    }

    /// Part of a set was captured locked. Only the best interval becomes a candidate.
    void TryLockedStretches(const Interval& set) {
        if (model::SafeLength(unlocking) == 0.0) return;
        const std::size_t count = set.last - set.first;
        const auto [best, least] = BestPair(set.first, set.last + 1, [&](std::size_t i, std::size_t j) {
            if (j - i < 2 || j - i == count) return infinite;
            const fit::HeadSums own = Sums({i, j});
            return SumOfSquares(Rest(own), own.Shifted(unlocking));
        });
        if (std::isfinite(least)) TryLocked(best, static_cast<double>(count));
    }

    double TurnedAngle(std::size_t i) const { return sets.IsOfASet(i) ? sets.points[i].a : sets.points[i].b; }

    /// Two points have each other's angle. Only the best pair becomes a candidate.
    void TrySwaps(const Interval& set) {
        const ErrorKind kind = sets.IsOfASet(set.first) ? ErrorKind::TiltAngle : ErrorKind::SwivelAngle;
        const std::size_t count = set.last - set.first;
        const auto [best, least] = BestPair(set.first, set.last, [&](std::size_t i, std::size_t j) {
            if (TurnedAngle(i) == TurnedAngle(j)) return infinite;
            fit::HeadSums sums = Without(i, j);
            sums += SumsWithAngleOf(kind, i, j);
            sums += SumsWithAngleOf(kind, j, i);
            const fit::BestHeadResult head = fit::BestHead({&sums, 1});
            // When the positions are evenly spaced, swapping other points fits as well for a stylus that points
            // sideways.
            return head.model.StylusHangs() ? head.sumOfSquares : infinite;
        });
        if (std::isfinite(least)) AddSwap(kind, best, 0.5 * static_cast<double>(count * count));
    }
    double Difference(std::size_t from, std::size_t to) const {
        return model::ToRadians(TurnedAngle(to) - TurnedAngle(from));
    }
    fit::HeadSums SumsWithAngleOf(ErrorKind kind, std::size_t i, std::size_t other) const {
        return Turned(kind, Sums({i, i + 1}), Difference(i, other));
    }
    void AddSwap(ErrorKind kind, const Interval& pair, double alternatives) {
        std::vector<fit::ModelError> errors;
        for (const auto& [i, other] : {std::pair{pair.first, pair.last}, std::pair{pair.last, pair.first}}) {
            fit::ModelError error{kind, i, i + 1, {Difference(i, other)}};
            error.isFixed = error.isSwap = true;
            errors.push_back(error);
        }
        fit::HeadSums sums = Without(pair.first, pair.last);
        sums += SumsWithAngleOf(kind, pair.first, pair.last);
        AddOne(std::move(errors), sums, SumsWithAngleOf(kind, pair.last, pair.first), alternatives);
    }

    /// The sums of all points except two.
    fit::HeadSums Without(std::size_t i, std::size_t j) const {
        fit::HeadSums rest = Rest(Sums({i, i + 1}));
        rest -= Sums({j, j + 1});
        return rest;
    }

    /// Two points are off their places: together they may look like another mistake. Only the best pair becomes a
    /// candidate.
    void TryPairs() {
        constexpr std::size_t most = 80; // the time grows with the square of the number
        const std::size_t count = points.size();
        if (count > most) return;
        const Interval best = BestPair(0, count, [&](std::size_t i, std::size_t j) {
                                  const fit::HeadSums rest = Without(i, j);
                                  return fit::BestHead({&rest, 1}).sumOfSquares;
                              }).pair;
        const fit::HeadSums rest = Without(best.first, best.last);
        Add({{ErrorKind::Place, best.first, best.first + 1, {}}, {ErrorKind::Place, best.last, best.last + 1, {}}},
            {&rest, 1}, 0.5 * static_cast<double>(count * count));
    }

    /// From one point on, the sphere or the machine's zero has moved, or the head was locked before or after it.
    void TryChanges() {
        const std::vector<Interval> changes = ChangesBetweenPoints(sets);
        for (const Interval& run : changes) {
            const bool isWholeSet = run.first == 0 && run.last == sets.aCount;
            const double alternatives = isWholeSet ? 1.0 : static_cast<double>(changes.size());
            const fit::HeadSums own = Sums(run);
            const fit::HeadSums groups[] = {Rest(own), own};
            Add({{ErrorKind::Place, run.first, run.last, {}}}, groups, alternatives);
            TryLockedOutside(run, alternatives);
        }
    }
    /// All other points were captured locked, which equals these points being off in the opposite direction.
    void TryLockedOutside(const Interval& run, double alternatives) {
        if (model::SafeLength(unlocking) == 0.0) return;
        const fit::HeadSums own = Sums(run);
        AddOne({Locked(run, -unlocking)}, Rest(own), own.Shifted(-unlocking), alternatives);
    }

    const captures::CapturedSets& sets;
    const fit::HeadFit& current;
    model::Vector3 unlocking;
    std::vector<captures::CapturedPoint> points;
    model::Vector3 mean;
    std::vector<fit::HeadSums> running; ///< at i: the sums of the first i points
    std::vector<Candidate> candidates;
};

} // namespace

std::size_t Candidate::Unknowns() const {
    return std::accumulate(errors.begin(), errors.end(), std::size_t{0},
                           [](std::size_t sum, const fit::ModelError& each) { return sum + each.Unknowns(); });
}

std::vector<Candidate> ScreenedCandidates(const captures::CapturedSets& sets, const fit::HeadFit& current,
                                          const model::Vector3& unlocking) {
    return Screen(sets, current, unlocking).All();
}

std::vector<Interval> ChangesBetweenPoints(const captures::CapturedSets& sets) {
    const std::size_t a = sets.aCount, count = sets.points.size();
    std::vector<Interval> changes{{0, a}};
    for (std::size_t i = 2; i < a; ++i) changes.push_back({0, i});         // in the A set, and the B set after it
    for (std::size_t i = 1; i + 1 < a; ++i) changes.push_back({i, a});     // in the A set, the B set before it
    for (std::size_t i = a + 2; i < count; ++i) changes.push_back({a, i}); // in the B set, and the A set after it
    for (std::size_t i = a + 1; i + 1 < count; ++i) changes.push_back({i, count}); // in the B set, the A set before it
    return changes;
}

} // namespace qmv40::diagnosis
