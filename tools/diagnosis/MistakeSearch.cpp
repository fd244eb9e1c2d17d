#include "tools/diagnosis/MistakeSearch.h"

#include "tools/diagnosis/Screening.h"
#include "tools/diagnosis/Thresholds.h"
#include "tools/diagnosis/fit/Statistics.h"
#include "tools/model/Angles.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>

namespace qmv40::diagnosis {

namespace {

using ErrorKind = fit::ModelError::Kind;

double SumAboveRounding(double sumOfSquares, std::size_t points) {
    return std::max(sumOfSquares, 3.0 * static_cast<double>(points) * thresholds::leastVariance);
}

/// The p-value of an improvement when `candidates` explanations were tried.
double PValue(double sumBefore, double sumAfter, std::size_t unknowns, double degreesOfFreedom, std::size_t points,
              double candidates) {
    if (degreesOfFreedom < 1.0) return 1.0;
    const double noise = SumAboveRounding(sumAfter, points) / degreesOfFreedom;
    // An explanation without an unknown is compared like one with one unknown.
    const auto freedoms = static_cast<double>(std::max<std::size_t>(unknowns, 1));
    const double gain = (sumBefore - sumAfter) / freedoms;
    return fit::FTestUpperTail(gain / noise, freedoms, degreesOfFreedom) * candidates;
}

/// Minus twice the logarithm of the likelihood of the remaining residuals, with a penalty for the unknowns and for the
/// number of places at which the mistake could have been. The smallest score is the best.
double Score(double sumOfSquares, std::size_t unknowns, double alternatives, std::size_t points) {
    // A few points may fit better by chance than any machine measures. Therefore some observations with the noise of a
    // usual machine are added.
    constexpr double usualNoise = 0.003, usualObservations = 20.0;
    const double observations = 3.0 * static_cast<double>(points) + usualObservations;
    const double sum = sumOfSquares + usualObservations * usualNoise * usualNoise;
    return observations * std::log(sum / observations) +
           2.0 * (static_cast<double>(unknowns) * std::log(observations) + std::log(alternatives));
}

/// A mistake that is rarer counts like one with this many alternatives.
constexpr double rare = 10.0;

/// One round of the search.
class Round {
public:
    Round(const captures::CapturedSets& theSets, const fit::HeadFit& theCurrent, const model::Vector3& theUnlocking)
        : sets(theSets), current(theCurrent), candidates(ScreenedCandidates(theSets, theCurrent, theUnlocking)) {
        AddHead();
        AddWholeSets();
        tried = static_cast<double>(candidates.size());
    }

    /// The current fit with the candidate that explains most; empty when chance could explain as much.
    std::optional<fit::HeadFit> Best() {
        FitPromising();
        // The noise of machine and head alone is smaller than this.
        constexpr double usualNoise = 0.01;
        if (std::isfinite(bestScore) || std::sqrt(current.NoiseVariance()) > usualNoise) FitChanges();
        if (!std::isfinite(bestScore)) return std::nullopt;
        RefineDrift(best);
        return std::move(best);
    }

private:
    fit::HeadModel With(const std::vector<fit::ModelError>& errors) const {
        fit::HeadModel start = current.model;
        start.errors.insert(start.errors.end(), errors.begin(), errors.end());
        return start;
    }
    void AddFitted(const std::vector<fit::ModelError>& errors, double alternatives) {
        fit::HeadModel start = With(errors);
        const double likelySum = fit::FitHead(sets.points, start, 1).sumOfSquares;
        candidates.push_back({errors, likelySum, alternatives, std::move(start)});
    }
    std::vector<fit::ModelError> UnknownErrorsOfTheHead() const {
        std::vector<fit::ModelError> all;
        for (const ErrorKind kind : {ErrorKind::LeaningHead, ErrorKind::AxesNotSquare, ErrorKind::AxesApart}) {
            const auto isThisOne = [&](const fit::ModelError& error) {
                return error.kind == kind && error.IsOfTheHead(sets.points.size());
            };
            if (std::ranges::none_of(current.model.errors, isThisOne)) all.push_back({kind, 0, sets.points.size(), {}});
        }
        return all;
    }

    /// The three errors of the head: each one alone, and all together, because one can hide another.
    void AddHead() {
        const std::vector<fit::ModelError> all = UnknownErrorsOfTheHead();
        for (const fit::ModelError& each : all) AddFitted({each}, 1.0);
        if (all.size() > 1) AddFitted(all, 1.0);
    }

    void AddWholeSets() {
        for (const ErrorKind kind : {ErrorKind::LeaningHead, ErrorKind::OtherTip})
            AddFitted({{kind, 0, sets.aCount, {}}}, rare);
        AddFitted({{ErrorKind::LeaningHead, sets.aCount, sets.points.size(), {}}}, rare);
        AddDrifts();
    }

    /// Either set may have been captured first. While a machine warms up or a head settles on its mount, a capture
    /// takes several time constants. A number of time constants that is wrong by a factor of two still explains most of
    /// it.
    void AddDrifts() {
        for (const ErrorKind kind :
             {ErrorKind::Place, ErrorKind::SwivelAngle, ErrorKind::LeaningHead, ErrorKind::OtherTip}) {
            // Small errors of the head look like a head that tilts slowly, or like a stylus that bends slowly: these
            // drifts must explain more than the errors of the head do.
            const bool isLikeTheHead = kind == ErrorKind::LeaningHead || kind == ErrorKind::OtherTip;
            std::vector<fit::ModelError> errors;
            if (isLikeTheHead) errors = UnknownErrorsOfTheHead();
            errors.push_back({kind, 0, sets.points.size(), {}});
            for (const std::size_t start : {std::size_t{0}, sets.aCount}) {
                for (const double settling : {0.0, 1.5, 3.0, 6.0, 12.0, -3.0}) {
                    errors.back().drift = fit::Drift{settling, start};
                    AddFitted(errors, settling == 0.0 ? rare : 2.0 * rare);
                    // Noise that is larger along one machine axis looks like these too.
                    if (isLikeTheHead) candidates.back().doubt = 1e3;
                }
            }
        }
    }

    /// Finds the number of time constants that explains most. With another number, the rest that is not explained would
    /// look like a second mistake.
    void RefineDrift(fit::HeadFit& fit) const {
        if (!fit.model.errors.back().drift) return;
        for (const double step : {0.4, 0.2, 0.1, 0.05, 0.025}) {
            for (const double change : {-step, step}) {
                fit::HeadModel model = fit.model;
                double& settling = model.errors.back().drift->settling;
                settling += change * std::max(1.0, std::abs(settling));
                fit::HeadFit refined = fit::FitHead(sets.points, model);
                if (refined.sumOfSquares < fit.sumOfSquares) fit = std::move(refined);
            }
        }
    }

    void Fit(const Candidate& candidate) {
        fit::HeadFit fit = fit::FitHead(sets.points, candidate.start);
        const std::size_t points = sets.points.size();
        const double pValue = PValue(current.sumOfSquares, fit.sumOfSquares, candidate.Unknowns(), fit.degreesOfFreedom,
                                     points, tried * candidate.doubt);
        if (!(pValue < thresholds::falseAlarmRate)) return;
        const double score = Score(fit.sumOfSquares, candidate.Unknowns(), candidate.alternatives, points);
        if (!(score < bestScore)) return;
        best = std::move(fit);
        bestScore = score;
    }

    /// Fits the most likely of the candidates that could explain more than chance, in their order.
    void FitPromising() {
        constexpr std::size_t most = 16; // a fit takes much longer than the screening of a candidate
        const std::size_t points = sets.points.size();
        std::erase_if(candidates, [&](const Candidate& candidate) {
            const std::size_t unknowns = candidate.Unknowns();
            const double left = current.degreesOfFreedom - static_cast<double>(unknowns);
            return PValue(current.sumOfSquares, candidate.likelySum, unknowns, left, points, tried) > 1.0;
        });
        std::ranges::stable_sort(candidates, {}, [&](const Candidate& each) {
            return Score(each.likelySum, each.Unknowns(), each.alternatives, points);
        });
        for (const Candidate& candidate : std::span(candidates).first(std::min(candidates.size(), most)))
            Fit(candidate);
    }

    /// From a point on, the head was tilted or had another stylus. Each of these needs a step of a fit, so they are
    /// tried only when something is surely wrong. Of many changes at most 60 are tried, evenly spread, and then the
    /// best one and its neighbours are fitted.
    void FitChanges() {
        const std::vector<Interval> changes = ChangesBetweenPoints(sets);
        const std::size_t stride = 1 + changes.size() / 60;
        for (const ErrorKind kind : {ErrorKind::LeaningHead, ErrorKind::OtherTip}) {
            std::size_t nearest = 0;
            double least = std::numeric_limits<double>::infinity();
            for (std::size_t i = 1; i < changes.size(); i += stride) {
                const double sum =
                    fit::FitHead(sets.points, With({{kind, changes[i].first, changes[i].last, {}}}), 1).sumOfSquares;
                if (sum >= least) continue;
                least = sum;
                nearest = i;
            }
            if (nearest == 0) continue;
            for (std::size_t i = nearest - std::min(stride - 1, nearest - 1);
                 i < std::min(nearest + stride, changes.size()); ++i) {
                const fit::ModelError error{kind, changes[i].first, changes[i].last, {}};
                // A sphere that moved while the stylus points sideways looks like a bent stylus, and is likelier.
                const double rarity = kind == ErrorKind::OtherTip ? rare * rare : rare;
                Fit({{error}, 0.0, rarity * static_cast<double>(changes.size()), With({error})});
            }
        }
    }

    const captures::CapturedSets& sets;
    const fit::HeadFit& current;
    std::vector<Candidate> candidates;
    double tried = 0.0;
    fit::HeadFit best; ///< of the candidates that were fitted
    double bestScore = std::numeric_limits<double>::infinity();
};

/// True when the remaining residuals are those of a machine's noise.
bool IsNoise(const fit::HeadFit& fit) { return std::sqrt(fit.NoiseVariance()) < thresholds::noiseCeiling; }

/// True when a real head can have the errors of the fitted one.
bool IsBelievable(const fit::HeadModel& model, std::size_t points) {
    constexpr double mostRadians = 0.1, mostOffset = 5.0; // mm
    return model.StylusHangs() && std::ranges::all_of(model.errors, [&](const fit::ModelError& error) {
               const double most = error.kind == ErrorKind::AxesApart ? mostOffset : mostRadians;
               return !error.IsOfTheHead(points) || std::hypot(error.values[0], error.values[1]) < most;
           });
}

/// A rewriting is accepted when the head without errors then fits, far better than before and better than any other
/// explanation. It need not fit better than a head whose stylus does not hang or whose errors no real head can have.
void TryRewritings(const captures::CapturedSets& sets, const model::Vector3& unlocking, HeadExplained& explained) {
    const double written = explained.plain.NoiseVariance();
    if (IsNoise(explained.plain) && explained.plain.model.StylusHangs()) return;
    const std::size_t points = sets.points.size();
    const auto scoreOf = [&](const fit::HeadFit& fit, double alternatives) {
        std::size_t unknowns = fit.model.Unknowns() - fit::HeadModel::ownUnknowns;
        return Score(fit.sumOfSquares, unknowns, alternatives, points);
    };
    double best = IsBelievable(explained.fit.model, points) ? scoreOf(explained.fit, static_cast<double>(points))
                                                            : std::numeric_limits<double>::infinity();
    const std::vector<Rewritten> all = AllRewritings(sets, unlocking);
    for (const Rewritten& each : all) {
        fit::HeadFit fit = fit::FitHead(each.sets.points);
        if (!IsNoise(fit) || !fit.model.StylusHangs()) continue;
        const double variance = std::max(fit.NoiseVariance(), thresholds::leastVariance);
        const bool isFarBetter = fit::FTestUpperTail(written / variance, explained.plain.degreesOfFreedom,
                                                     fit.degreesOfFreedom) < thresholds::falseAlarmRate;
        if (!isFarBetter && explained.plain.model.StylusHangs()) continue;
        const double score = scoreOf(fit, static_cast<double>(all.size()));
        if (score >= best) continue;
        best = score;
        fit::FindVariances(each.sets.points, fit);
        explained.fit = std::move(fit);
        explained.rewriting = each.rewriting;
    }
}

} // namespace

HeadExplained SearchMistakes(const captures::CapturedSets& sets, const model::Vector3& unlocking) {
    // Three errors of the head and three mistakes. A capture with more mistakes is to be repeated.
    constexpr int mostRounds = 6;
    HeadExplained explained;
    explained.plain = fit::FitHead(sets.points);
    explained.fit = explained.plain;
    for (int i = 0; i < mostRounds; ++i) {
        std::optional<fit::HeadFit> better = Round(sets, explained.fit, unlocking).Best();
        if (!better) break;
        explained.fit = std::move(*better);
    }
    fit::FindVariances(sets.points, explained.fit);
    TryRewritings(sets, unlocking, explained);
    return explained;
}

} // namespace qmv40::diagnosis
