#include "tools/diagnosis/MistakeSearch.h"

#include "tools/diagnosis/HeadSums.h"
#include "tools/diagnosis/Statistics.h"
#include "tools/diagnosis/Thresholds.h"
#include "tools/model/Angles.h"

#include <algorithm>
#include <numeric>
#include <optional>

namespace qmv40::diagnosis {

namespace {

using ErrorKind = ModelError::Kind;

/// Departures worth trying together, mostly a single one, with the sum of squares that they are likely to leave.
struct Candidate {
    std::vector<ModelError> errors;
    double likelySum;

    std::size_t Unknowns() const {
        return std::accumulate(errors.begin(), errors.end(), std::size_t{0},
                               [](std::size_t sum, const ModelError& each) { return sum + each.Unknowns(); });
    }
};

/// A run of points with an angle of its own.
struct Run {
    std::size_t first, last;
};

/// Trial angles, degrees: the index positions of the head.
constexpr int indexStep = 15;
constexpr int trials = 360 / indexStep;

double TrialAngle(int trial) { return model::ToRadians(indexStep * trial - 180.0); }

/// Where the parabola through three neighbouring sums is lowest: the share of the spacing, and the sum there.
struct Lowest {
    double at, sum;
};
Lowest LowestOf(double before, double here, double after) {
    const double curvature = before - 2.0 * here + after;
    if (!(curvature > 0.0)) return {0.0, here};
    const double at = std::clamp(0.5 * (before - after) / curvature, -2.0, 2.0);
    return {at, std::max(0.0, here + 0.5 * at * (after - before) + 0.5 * at * at * curvature)};
}

/// What the errors found so far have to do with the points, taken off them: what is left is to be explained by the
/// plain head or by further errors. About the points' mean, to keep the sums' digits.
std::vector<CapturedPoint> Corrected(std::span<const CapturedPoint> points, const HeadModel& model) {
    HeadModel plain = model;
    plain.errors.clear();
    std::vector<CapturedPoint> corrected(points.begin(), points.end());
    model::Vector3 mean;
    for (std::size_t i = 0; i < points.size(); ++i) {
        model::Vector3& position = corrected[i].position;
        position = position - (model.Position(points[i], i) - plain.Position(points[i], i));
        mean = mean + (1.0 / static_cast<double>(points.size())) * position;
    }
    for (CapturedPoint& point : corrected) point.position = point.position - mean;
    return corrected;
}

/// Finds candidates by the sums of the points, without fitting anything.
class Screening {
public:
    Screening(const CapturedSets& theSets, const HeadModel& model)
        : sets(theSets), points(Corrected(theSets.points, model)) {
        for (const CapturedPoint& point : points) {
            own.emplace_back(point, 0.0, 0.0);
            total += own.back();
        }
    }

    std::vector<Candidate> Candidates() {
        for (const ErrorKind kind : {ErrorKind::TiltAngle, ErrorKind::SwivelAngle}) {
            TryAngles(kind, {0, sets.aCount}, kind == ErrorKind::SwivelAngle);
            TryAngles(kind, {sets.aCount, points.size()}, kind == ErrorKind::TiltAngle);
        }
        TryPlaces();
        return std::move(candidates);
    }

private:
    double SumWith(const HeadSums& change) const {
        HeadSums sums = total;
        sums += change;
        return BestHead({&sums, 1}).sumOfSquares;
    }

    /// The runs of a set that may have an angle of its own: all points where asked for, single ones, those from one
    /// on, those up to one. Where two explain the same, the one that comes first here will be taken.
    static std::vector<Run> RunsOf(const Run& set, bool allOfThem) {
        std::vector<Run> runs;
        if (allOfThem) runs.push_back(set);
        for (std::size_t i = set.first; i < set.last; ++i) runs.push_back({i, i + 1});
        for (std::size_t i = set.first + 1; i + 1 < set.last; ++i) runs.push_back({i, set.last});
        for (std::size_t i = set.first + 2; i < set.last; ++i) runs.push_back({set.first, i});
        return runs;
    }

    /// Every run of the set with every trial angle.
    void TryAngles(ErrorKind kind, const Run& set, bool allOfThem) {
        const std::vector<Run> runs = RunsOf(set, allOfThem);
        std::vector<std::vector<double>> sums(runs.size(), std::vector<double>(trials));
        for (int trial = 0; trial < trials; ++trial) {
            const std::vector<HeadSums> running = RunningChanges(kind, set, TrialAngle(trial));
            for (std::size_t i = 0; i < runs.size(); ++i) {
                HeadSums change = running[runs[i].last - set.first];
                change -= running[runs[i].first - set.first];
                sums[i][static_cast<std::size_t>(trial)] = SumWith(change);
            }
        }
        for (std::size_t i = 0; i < runs.size(); ++i) AddBestAngle(kind, runs[i], sums[i]);
    }

    /// By how much the sums change when the angles of the set's first points, 0 to all of them, change.
    std::vector<HeadSums> RunningChanges(ErrorKind kind, const Run& set, double angle) const {
        std::vector<HeadSums> running(1);
        for (std::size_t i = set.first; i < set.last; ++i) {
            HeadSums next = running.back();
            next += kind == ErrorKind::TiltAngle ? HeadSums(points[i], angle, 0.0) : HeadSums(points[i], 0.0, angle);
            next -= own[i];
            running.push_back(next);
        }
        return running;
    }

    /// From the best trial on, by parabolas through sums that lie closer and closer.
    void AddBestAngle(ErrorKind kind, const Run& run, const std::vector<double>& sums) {
        double angle = TrialAngle(static_cast<int>(std::ranges::min_element(sums) - sums.begin()));
        Lowest lowest{};
        for (const double spacing : {5.0, 0.5, 0.05}) {
            const double step = model::ToRadians(spacing);
            lowest = LowestOf(SumWith(Changed(kind, run, angle - step)), SumWith(Changed(kind, run, angle)),
                              SumWith(Changed(kind, run, angle + step)));
            angle += lowest.at * step;
        }
        candidates.push_back({{{kind, run.first, run.last, {angle}}}, lowest.sum});
    }

    HeadSums Changed(ErrorKind kind, const Run& run, double angle) const {
        return RunningChanges(kind, run, angle).back();
    }

    void TryPlaces() {
        HeadSums aSet;
        HeadSums bSet;
        for (std::size_t i = 0; i < points.size(); ++i) {
            (sets.IsOfASet(i) ? aSet : bSet) += own[i];
            HeadSums change;
            change -= own[i];
            candidates.push_back({{{ErrorKind::Place, i, i + 1, {}}}, SumWith(change)});
        }
        const HeadSums both[] = {aSet, bSet};
        candidates.push_back({{{ErrorKind::Place, 0, sets.aCount, {}}}, BestHead(both).sumOfSquares});
    }

    const CapturedSets& sets;
    std::vector<CapturedPoint> points;
    std::vector<HeadSums> own;
    HeadSums total;
    std::vector<Candidate> candidates;
};

double SumAboveRounding(double sumOfSquares, std::size_t points) {
    return std::max(sumOfSquares, 3.0 * static_cast<double>(points) * thresholds::leastVariance);
}

/// How often chance alone would explain this much when `candidates` explanations are tried.
double Chance(double sumBefore, double sumAfter, std::size_t unknowns, double redundancy, std::size_t points,
              std::size_t candidates) {
    if (redundancy < 1.0) return 1.0;
    const double noise = SumAboveRounding(sumAfter, points) / redundancy;
    const double gain = (sumBefore - sumAfter) / static_cast<double>(unknowns);
    return ChanceOfRatio(gain / noise, static_cast<double>(unknowns), redundancy) * static_cast<double>(candidates);
}

/// `fit` explains so much more than `best` that it is worth its unknowns, where it has more, and is clearly better
/// where it has not: explanations that are equal but for rounding are the same, and the first one stands.
bool Replaces(const HeadFit& fit, const HeadFit& best) {
    const std::size_t points = fit.residuals.size();
    if (fit.model.Unknowns() > best.model.Unknowns()) {
        return Chance(best.sumOfSquares, fit.sumOfSquares, fit.model.Unknowns() - best.model.Unknowns(), fit.redundancy,
                      points, 1) < thresholds::falseAlarmRate;
    }
    constexpr double clearly = 0.9;
    return SumAboveRounding(fit.sumOfSquares, points) < clearly * SumAboveRounding(best.sumOfSquares, points);
}

/// Of the head itself there are three, cheap enough to be fitted without a look ahead: each for itself, and all
/// together, for they hide each other.
void AddHeadCandidates(const CapturedSets& sets, const HeadModel& model, std::vector<Candidate>& candidates) {
    Candidate all{{}, 0.0};
    for (const ErrorKind kind : {ErrorKind::LeaningHead, ErrorKind::AxesNotSquare, ErrorKind::AxesApart}) {
        const auto isKnown = [kind](const ModelError& error) { return error.kind == kind; };
        if (std::ranges::any_of(model.errors, isKnown)) continue;
        all.errors.push_back({kind, 0, sets.points.size(), {}});
        candidates.push_back({{all.errors.back()}, 0.0});
    }
    if (all.errors.size() > 1) candidates.push_back(std::move(all));
}

/// In the order of their numbers of unknowns.
std::vector<Candidate> CandidatesFor(const CapturedSets& sets, const HeadFit& current) {
    std::vector<Candidate> candidates = Screening(sets, current.model).Candidates();
    AddHeadCandidates(sets, current.model, candidates);
    std::ranges::stable_sort(candidates, {}, &Candidate::Unknowns);
    return candidates;
}

/// Candidates that could explain more than chance, the likeliest ones, in their order.
std::vector<Candidate> Promising(std::vector<Candidate> candidates, const CapturedSets& sets, const HeadFit& current) {
    // What is likely is a guess: it may be some way off.
    constexpr double generous = 1.0;
    constexpr std::size_t most = 14;
    const std::size_t count = candidates.size();
    std::erase_if(candidates, [&](const Candidate& candidate) {
        const std::size_t unknowns = candidate.Unknowns();
        const double redundancy = current.redundancy - static_cast<double>(unknowns);
        return Chance(current.sumOfSquares, candidate.likelySum, unknowns, redundancy, sets.points.size(), count) >
               generous;
    });
    if (candidates.size() <= most) return candidates;
    std::vector<double> sums(candidates.size());
    std::ranges::transform(candidates, sums.begin(), &Candidate::likelySum);
    std::ranges::nth_element(sums, sums.begin() + most - 1);
    std::erase_if(candidates,
                  [limit = sums[most - 1]](const Candidate& candidate) { return candidate.likelySum > limit; });
    return candidates;
}

/// The current fit with the candidate that explains most; nothing where chance could explain as much.
std::optional<HeadFit> OneMore(const CapturedSets& sets, const HeadFit& current) {
    const std::vector<Candidate> candidates = CandidatesFor(sets, current);
    std::optional<HeadFit> best;
    for (const Candidate& candidate : Promising(candidates, sets, current)) {
        HeadModel start = current.model;
        start.errors.insert(start.errors.end(), candidate.errors.begin(), candidate.errors.end());
        HeadFit fit = FitHead(sets.points, start);
        const double chance = Chance(current.sumOfSquares, fit.sumOfSquares, candidate.Unknowns(), fit.redundancy,
                                     sets.points.size(), candidates.size());
        if (!(chance < thresholds::falseAlarmRate)) continue;
        if (!best || Replaces(fit, *best)) best = std::move(fit);
    }
    return best;
}

} // namespace

HeadExplained ExplainHead(const CapturedSets& sets) {
    // The head itself may depart in three ways; a capture with more mistakes than this is better taken again.
    constexpr int mostRounds = 6;
    // The search takes time with the square of the points; so many are a scan, not a capture by hand.
    constexpr std::size_t mostPoints = 2000;
    HeadExplained explained;
    explained.plain = FitHead(sets.points);
    explained.fit = explained.plain;
    if (sets.points.size() > mostPoints) return explained;
    for (int i = 0; i < mostRounds; ++i) {
        std::optional<HeadFit> better = OneMore(sets, explained.fit);
        if (!better) break;
        explained.fit = std::move(*better);
    }
    return explained;
}

} // namespace qmv40::diagnosis
